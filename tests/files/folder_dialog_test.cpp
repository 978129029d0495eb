#include <kitbag/files/folder_dialog.h>
#include <tests/support/import_patch.h>
#include <tests/support/shell_links.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/text_forms.h>

#include <algorithm>
#include <cctype>
#include <thread>
#include <vector>

namespace {

using kitbag::test::ImportPatch;
using kitbag::test::Pick;
using kitbag::test::Text;

/// This process's dialog, once it is to be seen.
HWND OpenDialog() {
    HWND dialog = nullptr;
    while ((dialog = ::FindWindowExA(nullptr, dialog, "#32770", nullptr)) != nullptr) {
        DWORD process = 0;
        ::GetWindowThreadProcessId(dialog, &process);
        if (process == ::GetCurrentProcessId() && ::IsWindowVisible(dialog)) break;
    }
    return dialog;
}

/// Answers the dialog that the calls make, as a user would; gives up after a minute.
template <class Calls>
void AnswerDialog(WPARAM button, Calls&& calls) {
    std::thread user([button] {
        HWND dialog = nullptr;
        for (int i = 0; i < 600 && !dialog; ++i, ::Sleep(100)) dialog = OpenDialog();
        ::PostMessageA(dialog, WM_COMMAND, button, 0);
    });
    calls();
    user.join();
}

/// A message to the dialog. The selection's text is in the caller's form, whatever its code says.
struct Sent {
    UINT message;
    WPARAM flag;
    std::wstring text;
    bool operator==(const Sent&) const = default;
};
std::vector<Sent> sent;

template <class Ch>
LRESULT WINAPI Record(HWND, UINT message, WPARAM flag, LPARAM text) {
    const std::basic_string<Ch> characters(reinterpret_cast<const Ch*>(text));
    sent.push_back({message, flag, {characters.begin(), characters.end()}});
    return 0;
}

template <class Ch, class Dialog>
ITEMIDLIST* WINAPI PlayEvents(Dialog* dialog) {
    EXPECT_EQ(nullptr, dialog->hwndOwner);
    EXPECT_EQ(UINT{BIF_RETURNONLYFSDIRS | BIF_STATUSTEXT}, dialog->ulFlags);
    EXPECT_EQ(Text<Ch>(T("Where?")), dialog->lpszTitle);
    dialog->lpfn(nullptr, BFFM_INITIALIZED, 0, dialog->lParam);
    dialog->lpfn(nullptr, BFFM_INITIALIZED, 0, 0);
    ITEMIDLIST* windows = nullptr;
    EXPECT_EQ(S_OK, ::SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, &windows));
    EXPECT_EQ(0, dialog->lpfn(nullptr, BFFM_SELCHANGED, reinterpret_cast<LPARAM>(windows),
                              dialog->lParam));
    return windows;
}

template <class Ch>
class FolderDialog : public testing::Test {
    kitbag::test::Com com_;
};
TYPED_TEST_SUITE(FolderDialog, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(FolderDialog, IsAskedInTheSameMessagesByBothForms) {
    using Ch = TypeParam;
    const auto dialog = Pick<Ch>(PlayEvents<char, BROWSEINFOA>, PlayEvents<wchar_t, BROWSEINFOW>);
    const ImportPatch show(Pick<Ch>("SHBrowseForFolderA", "SHBrowseForFolderW"), dialog);
    const ImportPatch send(Pick<Ch>("SendMessageA", "SendMessageW"), Record<Ch>);
    sent.clear();
    ::SetCurrentDirectoryA("C:\\users");
    Ch path[MAX_PATH] = {'C', ':', '\\', '\0'};
    EXPECT_TRUE(KB(BrowseForFolder)(path, T("Where?")));
    EXPECT_EQ(Text<Ch>(T("C:\\windows")), path);
    EXPECT_EQ((std::vector<Sent>{{BFFM_SETSELECTIONA, TRUE, L"C:\\"},
                                 {BFFM_SETSELECTIONA, TRUE, L"C:\\users"},
                                 {BFFM_SETSTATUSTEXTA, FALSE, L"C:\\windows"}}),
              sent);

    EXPECT_FALSE(KB(BrowseForFolder)(nullptr, T("Where?")));
    EXPECT_FALSE(KB(BrowseForFolder)(Text<Ch>(260, Ch{'x'}).data(), T("Where?")));
    EXPECT_EQ(3u, sent.size());
}

/// Without a display no window can be made.
bool HasDisplay() {
    const HWND window =
        ::CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    return window && ::DestroyWindow(window);
}

TYPED_TEST(FolderDialog, IsShownToTheUser) {
    using Ch = TypeParam;
    if (!HasDisplay()) GTEST_SKIP() << "no display";
    const kitbag::test::TemporaryFolder folder;
    // In other letters than the dialog's answer.
    const Text<Ch> given = Pick<Ch>(folder.Path().string(), folder.Path().wstring());
    Ch path[MAX_PATH] = {};
    std::ranges::transform(given, path, [](Ch c) { return static_cast<Ch>(std::toupper(c)); });
    const Text<Ch> before = path;
    AnswerDialog(IDCANCEL, [&] { EXPECT_FALSE(KB(BrowseForFolder)(path, T("Where?"))); });
    EXPECT_EQ(before, path);
    AnswerDialog(IDOK, [&] { EXPECT_TRUE(KB(BrowseForFolder)(path, nullptr)); });
    // Of the 16-bit form's text the dialog sees one letter, so it opens on the desktop.
    EXPECT_EQ(Pick<Ch>(true, false), given == path) << path;
    EXPECT_NE(before, path);
}

}  // namespace
