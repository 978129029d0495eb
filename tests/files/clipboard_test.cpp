#include <kitbag/files/clipboard.h>
#include <tests/support/import_patch.h>
#include <tests/support/printing.h>

#include <memory>

namespace {

using namespace kitbag::test;

BOOL WINAPI OpenPatiently(HWND owner) {
    // Wine's desktop opens it, too, now and then.
    while (!::OpenClipboard(owner)) ::Sleep(1);
    return TRUE;
}

/// The clipboard is one for all tests that run at a time: each of these has its turn.
struct Clipboard : testing::Test {
    Clipboard() {
        ::WaitForSingleObject(turn_, INFINITE);
        Put(CF_TEXT, "before");
    }
    ~Clipboard() override {
        Put(0);
        ::ReleaseMutex(turn_);
        ::CloseHandle(turn_);
    }

    /// Replaces what is there by a text, its terminator included, in a format; or by nothing.
    static void Put(UINT format, const std::string& text = {}) {
        OpenPatiently(nullptr);
        ::EmptyClipboard();
        if (format != 0) ::SetClipboardData(format, BlockOf(text + '\0'));
        ::CloseClipboard();
    }
    static HGLOBAL BlockOf(const std::string& bytes) {
        HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, bytes.size());
        bytes.copy(static_cast<char*>(::GlobalLock(block)), bytes.size());
        ::GlobalUnlock(block);
        return block;
    }

    /// What is pasted; "untouched" where the answer is false and the output was left alone.
    static std::wstring Pasted() {
        const BSTR before = ::SysAllocString(L"untouched");
        BSTR text = before;
        const bool isPasted = KB_PasteText(&text);
        EXPECT_EQ(isPasted, text != before);
        const std::wstring pasted(text, ::SysStringLen(text));
        ::SysFreeString(before);
        if (text != before) ::SysFreeString(text);
        return pasted;
    }

 private:
    HANDLE turn_ = ::CreateMutexA(nullptr, FALSE, "Kitbag tests: clipboard");
    ImportPatch open_{"OpenClipboard", OpenPatiently};
};

constexpr auto kUntouched = L"untouched";

TEST_F(Clipboard, PassesTextOnAsFarAsTheCodePageGoes) {
    EXPECT_TRUE(KB_CopyText(L"t\xe9 \x4e2d"));
    EXPECT_EQ(L"t\xe9 ?", Pasted());
    EXPECT_TRUE(KB_CopyText(L""));
    EXPECT_EQ(L"", Pasted());
    const std::wstring longText(70000, L'x');
    EXPECT_TRUE(KB_CopyText(longText.c_str()));
    EXPECT_EQ(longText, Pasted());
}

TEST_F(Clipboard, IsEmptiedBeforeATextIsCopied) {
    Put(CF_PRIVATEFIRST, "another program's");
    EXPECT_TRUE(KB_CopyText(L"text"));
    EXPECT_FALSE(::IsClipboardFormatAvailable(CF_PRIVATEFIRST));
}

TEST_F(Clipboard, IsEmptyWhereATextCouldNotBePlaced) {
    {
        const ImportPatch memory(
            "GlobalAlloc", +[](UINT, SIZE_T) WINAPI -> HGLOBAL { return {}; });
        EXPECT_FALSE(KB_CopyText(L"text"));
    }
    EXPECT_EQ(kUntouched, Pasted()) << "no memory";
    Put(CF_TEXT, "before");
    const ImportPatch set(
        "SetClipboardData", +[](UINT, HANDLE) WINAPI -> HANDLE { return {}; });
    EXPECT_FALSE(KB_CopyText(L"text"));
    EXPECT_EQ(kUntouched, Pasted()) << "refused";
}

TEST_F(Clipboard, IsLeftAloneWithoutATextOrWhileAnotherProgramHoldsIt) {
    EXPECT_FALSE(KB_CopyText(nullptr));
    EXPECT_FALSE(KB_PasteText(nullptr));
    auto open = std::make_unique<ImportPatch>(
        "OpenClipboard", +[](HWND) WINAPI -> BOOL { return FALSE; });
    EXPECT_FALSE(KB_CopyText(L"text"));
    EXPECT_EQ(kUntouched, Pasted());
    open.reset();
    EXPECT_EQ(L"before", Pasted());
}

TEST_F(Clipboard, GivesNoTextWhereThereIsNone) {
    Put(CF_PRIVATEFIRST, "no text");
    EXPECT_EQ(kUntouched, Pasted()) << "another format";
    Put(0);
    EXPECT_EQ(kUntouched, Pasted()) << "empty";
    Put(CF_TEXT, "before");
    {
        const ImportPatch get(
            "GetClipboardData", +[](UINT) WINAPI -> HANDLE { return nullptr; });
        EXPECT_EQ(kUntouched, Pasted()) << "taken away meanwhile";
    }
    {
        const ImportPatch lock(
            "GlobalLock", +[](HGLOBAL) WINAPI -> void* { return nullptr; });
        EXPECT_EQ(kUntouched, Pasted()) << "not to be locked";
    }
    const ImportPatch memory(
        "SysAllocStringLen", +[](const OLECHAR*, UINT) WINAPI -> BSTR { return nullptr; });
    EXPECT_EQ(kUntouched, Pasted()) << "no memory";
}

TEST_F(Clipboard, GivesATextUpToItsTerminatorOrTheEndOfItsBlock) {
    Put(CF_TEXT, std::string("one\0two", 7));
    EXPECT_EQ(L"one", Pasted());
    static HGLOBAL block;
    block = BlockOf(std::string(64, 'x'));
    const ImportPatch get(
        "GetClipboardData", +[](UINT) WINAPI -> HANDLE { return block; });
    EXPECT_EQ(std::wstring(64, L'x'), Pasted());
    ::GlobalFree(block);
}

TEST_F(Clipboard, IsClosedInEveryCase) {
    const ImportPatch memory(
        "GlobalAlloc", +[](UINT, SIZE_T) WINAPI -> HGLOBAL { return {}; });
    const ImportPatch lock(
        "GlobalLock", +[](HGLOBAL) WINAPI -> void* { return nullptr; });
    EXPECT_EQ(kUntouched, Pasted());
    EXPECT_FALSE(::CloseClipboard()) << "by a failing paste";
    EXPECT_FALSE(KB_CopyText(L"text"));
    EXPECT_FALSE(::CloseClipboard()) << "by a failing copy";
}

}  // namespace
