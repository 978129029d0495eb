#include <gtest/gtest.h>
#include <kitbag/files/clipboard.h>
#include <oleauto.h>
#include <tests/support/import_patch.h>

#include <cstring>
#include <string>

namespace {

using kitbag::test::ImportPatch;

/// What is pasted; "none" where the answer is false and the BSTR as it was.
std::wstring Paste() {
    wchar_t before[] = L"before";
    BSTR text = before;
    if (!KB_PasteText(&text)) return text == before ? L"none" : L"touched";
    const std::wstring pasted(text, ::SysStringLen(text));
    ::SysFreeString(text);
    return pasted;
}

void FillClipboard(UINT format) {
    ::OpenClipboard(nullptr);
    ::EmptyClipboard();
    if (format) ::SetClipboardData(format, ::GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 8));
    ::CloseClipboard();
}

/// There is one clipboard for all tests that run at the same time.
class Clipboard : public testing::Test {
 protected:
    Clipboard() { ::WaitForSingleObject(turn_, INFINITE); }
    ~Clipboard() override {
        ::ReleaseMutex(turn_);
        ::CloseHandle(turn_);
    }

 private:
    HANDLE turn_ = ::CreateMutexA(nullptr, FALSE, "Kitbag tests: clipboard");
};

TEST_F(Clipboard, PassesTextOn) {
    for (const std::wstring& text :
         {std::wstring(L"Films\r\nof \xe9t\xe9"), std::wstring(), std::wstring(100000, L'x')}) {
        EXPECT_TRUE(KB_CopyText(text.c_str()));
        EXPECT_EQ(text, Paste());
    }
    EXPECT_TRUE(
        KB_CopyText(L"a\x4e2d"
                    L"b"));
    EXPECT_EQ(L"a?b", Paste());
    EXPECT_FALSE(KB_CopyText(nullptr));
    EXPECT_EQ(L"a?b", Paste());
    EXPECT_FALSE(KB_PasteText(nullptr));
}

TEST_F(Clipboard, WithoutTextAnswersFalse) {
    for (const UINT format : {0u, ::RegisterClipboardFormatA("Kitbag tests")}) {
        FillClipboard(format);
        EXPECT_EQ(L"none", Paste());
    }
}

BOOL WINAPI RefuseToOpen(HWND) { return FALSE; }
HGLOBAL WINAPI RefuseMemory(UINT, SIZE_T) { return nullptr; }

TEST_F(Clipboard, AnswersFalseWhereTheSystemDoes) {
    ASSERT_TRUE(KB_CopyText(L"before"));
    {
        const ImportPatch refusal("OpenClipboard", RefuseToOpen);
        EXPECT_FALSE(KB_CopyText(L"new"));
        EXPECT_EQ(L"none", Paste());
    }
    EXPECT_EQ(L"before", Paste());
    {
        const ImportPatch refusal("GlobalAlloc", RefuseMemory);
        EXPECT_FALSE(KB_CopyText(L"new"));
    }
    EXPECT_EQ(L"none", Paste()) << "emptied all the same";
    EXPECT_TRUE(::OpenClipboard(nullptr)) << "closed on every path";
    ::CloseClipboard();
}

HGLOBAL unterminated;
HANDLE WINAPI GiveUnterminated(UINT) { return unterminated; }

TEST_F(Clipboard, ReadsNoFurtherThanItsBlock) {
    ASSERT_TRUE(KB_CopyText(L"before"));
    unterminated = ::GlobalAlloc(GMEM_MOVEABLE, 3);
    std::memcpy(::GlobalLock(unterminated), "abc", 3);
    ::GlobalUnlock(unterminated);
    const ImportPatch data("GetClipboardData", GiveUnterminated);
    EXPECT_EQ(L"abc", Paste());
    ::GlobalFree(unterminated);
    unterminated = nullptr;
    EXPECT_EQ(L"none", Paste());
}

}  // namespace
