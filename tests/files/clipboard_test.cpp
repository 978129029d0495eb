#include <comutil.h>
#include <gtest/gtest.h>
#include <kitbag/files/clipboard.h>

namespace {

TEST(Clipboard, PassesTextOn) {
    // There is one clipboard for all tests that run at the same time; this one's turn ends with its
    // process.
    ::WaitForSingleObject(::CreateMutexA(nullptr, FALSE, "Kitbag tests: clipboard"), INFINITE);
    for (const wchar_t* text : {L"", L"\xe9\r\nt\xe9", L"not in the code page: \x4e2d"}) {
        _bstr_t pasted;
        EXPECT_TRUE(KB_CopyText(text));
        EXPECT_TRUE(KB_PasteText(pasted.GetAddress()));
        EXPECT_STREQ(text[0] == L'n' ? L"not in the code page: ?" : text, pasted);
    }
    EXPECT_TRUE(::OpenClipboard(nullptr)) << "closed by all calls";
    ::EmptyClipboard();
    ::CloseClipboard();
    BSTR untouched = nullptr;
    EXPECT_FALSE(KB_PasteText(&untouched));
    EXPECT_EQ(nullptr, untouched);
}

}  // namespace
