#include <gtest/gtest.h>
#include <kitbag/files/clipboard.h>

namespace {

TEST(Clipboard, PassesTextOnAsFarAsTheCodePageGoes) {
    // All tests share the clipboard; this one's turn ends with its process.
    ::WaitForSingleObject(::CreateMutexA(nullptr, FALSE, "Kitbag tests: clipboard"), INFINITE);
    BSTR pasted = nullptr;
    EXPECT_TRUE(KB_CopyText(L"t\xe9 \x4e2d") && KB_PasteText(&pasted));
    EXPECT_TRUE(::OpenClipboard(nullptr)) << "closed by both calls";
    ::EmptyClipboard();
    ::CloseClipboard();
    EXPECT_FALSE(KB_PasteText(&pasted));
    EXPECT_STREQ(L"t\xe9 ?", pasted) << "untouched where there is no text";
    ::SysFreeString(pasted);
}

}  // namespace
