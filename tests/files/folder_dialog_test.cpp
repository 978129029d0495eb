#include <kitbag/files/folder_dialog.h>
#include <tests/support/text_folder.h>

#include <thread>

namespace {

/// Presses a button of the dialog that the calls show, as the user would.
template <class Calls>
void AnswerDialog(WPARAM button, Calls&& calls) {
    std::thread user([button, dialogThread = ::GetCurrentThreadId()] {
        GUITHREADINFO shown{};
        shown.cbSize = sizeof shown;
        for (int i = 0; i < 600 && !shown.hwndActive; ++i, ::Sleep(100))
            ::GetGUIThreadInfo(dialogThread, &shown);
        ::PostMessageA(shown.hwndActive, WM_COMMAND, button, 0);
    });
    calls();
    user.join();
}

template <class Ch>
struct FolderDialog : testing::Test, kitbag::test::Com, kitbag::test::TextFolder<Ch> {};
TYPED_TEST_SUITE(FolderDialog, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(FolderDialog, OpensOnTheFolderAndAnswersTheChoice) {
    using Ch = TypeParam;
    // Without a display no window can be made.
    const HWND window = ::CreateWindowA("STATIC", "", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, 0);
    if (!::DestroyWindow(window)) GTEST_SKIP() << "no display";
    const auto folder = this->In("");
    Ch path[MAX_PATH] = {};
    folder.copy(path, folder.size() - 1);
    path[0] = 'c';  // the dialog's answer has it in upper case
    AnswerDialog(IDCANCEL, [&] { EXPECT_FALSE(KB(BrowseForFolder)(path, T("Where?"))); });
    EXPECT_EQ('c', path[0]);
    AnswerDialog(IDOK, [&] { EXPECT_TRUE(KB(BrowseForFolder)(path, nullptr)); });
    EXPECT_EQ('C', path[0]);
    // The 16-bit form's text goes with an 8-bit message: the dialog stays on the desktop.
    EXPECT_EQ(sizeof(Ch) == 1, folder == path + kitbag::test::Text<Ch>(T("\\")));
    EXPECT_FALSE(KB(BrowseForFolder)(nullptr, T("Where?")));
    EXPECT_FALSE(KB(BrowseForFolder)(kitbag::test::Text<Ch>(260, 'x').data(), T("Where?")));
}

}  // namespace
