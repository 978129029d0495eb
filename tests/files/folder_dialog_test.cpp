#include <kitbag/files/folder_dialog.h>
#include <tests/support/import_patch.h>
#include <tests/support/printing.h>
#include <tests/support/temporary_folder.h>

#include <functional>

namespace {

using namespace kitbag::test;

template <class Ch>
using String = std::basic_string<Ch>;
template <class Ch>
using Dialog = std::conditional_t<std::is_same_v<Ch, char>, BROWSEINFOA, BROWSEINFOW>;

/// A message to the dialog: its code, its flag and its text.
template <class Ch>
using Message = std::tuple<UINT, WPARAM, String<Ch>>;
template <class Ch>
std::vector<Message<Ch>> messages;

template <class Ch>
LRESULT WINAPI Record(HWND, UINT code, WPARAM flag, LPARAM text) {
    messages<Ch>.emplace_back(code, flag, reinterpret_cast<const Ch*>(text));
    return 0;
}

/// What happens while the dialog is shown, which the user then leaves without a choice.
template <class Ch>
std::function<void(const Dialog<Ch>&)> shown;
template <class Ch>
ITEMIDLIST* WINAPI Show(Dialog<Ch>* dialog) {
    shown<Ch>(*dialog);
    return nullptr;
}

template <class Ch>
struct FolderDialog : testing::Test, Com {
    FolderDialog() { messages<Ch>.clear(); }

    /// Leaves the answer and the buffer.
    bool Browse(const String<Ch>& path, const Ch* title = nullptr) {
        path_ = path;
        path_.resize(MAX_PATH);
        const bool isChosen = Exports<Ch>::BrowseForFolder(path_.data(), title);
        path_ = path_.c_str();
        return isChosen;
    }
    bool BrowseFake(std::function<void(const Dialog<Ch>&)> whileShown) {
        const ImportPatch show(Pick<Ch>("SHBrowseForFolderA", "SHBrowseForFolderW"), Show<Ch>);
        const ImportPatch send(Pick<Ch>("SendMessageA", "SendMessageW"), Record<Ch>);
        shown<Ch> = std::move(whileShown);
        return Browse(Text<Ch>("C:\\a"_t), "Title"_t);
    }

    String<Ch> path_;
};
TYPED_TEST_SUITE(FolderDialog, TextForms, TextFormName);

TYPED_TEST(FolderDialog, ShowsFoldersOfTheFileSystemUnderATitleAndAStatusText) {
    using Ch = TypeParam;
    EXPECT_FALSE(this->BrowseFake([&](const Dialog<Ch>& dialog) {
        EXPECT_EQ(5u, dialog.ulFlags);
        EXPECT_EQ("Title"_t, String<Ch>(dialog.lpszTitle));
        EXPECT_EQ(nullptr, dialog.hwndOwner);
        EXPECT_EQ(nullptr, dialog.pidlRoot) << "the desktop";
        EXPECT_EQ(nullptr, dialog.pszDisplayName);
        EXPECT_EQ(reinterpret_cast<LPARAM>(this->path_.data()), dialog.lParam);
    })) << "without a choice";
    EXPECT_EQ("C:\\a"_t, this->path_);
}

TYPED_TEST(FolderDialog, IsToldInThe8BitMessagesWhatToSelectAndToShow) {
    using Ch = TypeParam;
    Ch current[MAX_PATH];
    Pick<Ch>(::GetCurrentDirectoryA, ::GetCurrentDirectoryW)(MAX_PATH, current);
    this->BrowseFake([&](const Dialog<Ch>& dialog) {
        const auto event = [&](UINT code, const void* item, LPARAM data) {
            EXPECT_EQ(0, dialog.lpfn(nullptr, code, reinterpret_cast<LPARAM>(item), data)) << code;
        };
        ITEMIDLIST *folder = ::ILCreateFromPathA("C:\\windows"), *noFolder = nullptr;
        ::SHGetSpecialFolderLocation(nullptr, CSIDL_CONTROLS, &noFolder);
        event(BFFM_INITIALIZED, nullptr, dialog.lParam);
        event(BFFM_INITIALIZED, nullptr, 0);
        event(BFFM_SELCHANGED, folder, dialog.lParam);
        event(BFFM_SELCHANGED, noFolder, dialog.lParam);
        event(BFFM_VALIDATEFAILEDA, nullptr, dialog.lParam);
        ::ILFree(folder);
        ::ILFree(noFolder);
    });
    EXPECT_EQ((std::vector<Message<Ch>>{{BFFM_SETSELECTIONA, TRUE, Text<Ch>("C:\\a"_t)},
                                        {BFFM_SETSELECTIONA, TRUE, current},
                                        {BFFM_SETSTATUSTEXTA, 0, Text<Ch>("C:\\windows"_t)}}),
              messages<Ch>);
}

TYPED_TEST(FolderDialog, IsNotShownWithoutABufferOrAnAllocator) {
    using Ch = TypeParam;
    const ImportPatch show(Pick<Ch>("SHBrowseForFolderA", "SHBrowseForFolderW"), Show<Ch>);
    int count = 0;
    shown<Ch> = [&](const Dialog<Ch>&) { ++count; };
    EXPECT_FALSE(Exports<Ch>::BrowseForFolder(nullptr, nullptr));
    String<Ch> path(MAX_PATH, 'x');
    EXPECT_FALSE(Exports<Ch>::BrowseForFolder(path.data(), nullptr)) << "260 characters";
    EXPECT_EQ(0, count);
    EXPECT_FALSE(this->Browse(String<Ch>(MAX_PATH - 1, 'x')));
    EXPECT_EQ(1, count) << "259 characters";
    const ImportPatch allocator(
        "SHGetMalloc", +[](IMalloc**) WINAPI -> HRESULT { return E_FAIL; });
    EXPECT_FALSE(this->Browse({}));
    EXPECT_EQ(1, count);
}

// The dialog itself. The user presses the button when the dialog shows the folder as selected; the
// 16-bit form's text goes with an 8-bit message, so there the user selects the folder, too.

std::wstring wanted, selected;
WPARAM button;

void CALLBACK GiveUp(HWND dialog, UINT, UINT_PTR, DWORD) {
    ADD_FAILURE() << "the folder was never selected, but at last "
                  << testing::PrintToString(selected);
    ::PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
}

template <class Ch>
LRESULT WINAPI Use(HWND dialog, UINT message, WPARAM flag, LPARAM text) {
    constexpr UINT onlyAHangTakesLonger = 50000;
    if (message == BFFM_SETSELECTIONA) {
        ::SetTimer(dialog, 1, onlyAHangTakesLonger, GiveUp);
        if (std::is_same_v<Ch, wchar_t>) message = BFFM_SETSELECTIONW;
    } else {
        const String<Ch> shownText = reinterpret_cast<const Ch*>(text);
        selected.assign(shownText.begin(), shownText.end());
        if (selected == wanted) ::PostMessageA(dialog, WM_COMMAND, button, 0);
    }
    return ::SendMessageA(dialog, message, flag, text);
}

TYPED_TEST(FolderDialog, OpensOnTheFolderAndGivesTheChosenOne) {
    using Ch = TypeParam;
    const ImportPatch send(Pick<Ch>("SendMessageA", "SendMessageW"), Use<Ch>);
    // No other test changes what this lies in: Wine's dialog does not find a folder whose parents
    // change while it looks.
    wanted = L"C:\\users";
    String<Ch> path(wanted.begin(), wanted.end());
    path[0] = 'c';  // the dialog has it in upper case
    button = IDCANCEL;
    EXPECT_FALSE(this->Browse(path));
    EXPECT_EQ(path, this->path_);
    button = IDOK;
    EXPECT_TRUE(this->Browse(path));
    EXPECT_EQ(String<Ch>(wanted.begin(), wanted.end()), this->path_);
}

TYPED_TEST(FolderDialog, GivesNoFolderWhereTheChoiceHasNoPath) {
    using Ch = TypeParam;
    const ImportPatch noPath(
        Pick<Ch>("SHGetPathFromIDListA", "SHGetPathFromIDListW"),
        +[](const ITEMIDLIST*, Ch*) WINAPI -> BOOL { return FALSE; });
    const ImportPatch show(
        Pick<Ch>("SHBrowseForFolderA", "SHBrowseForFolderW"),
        +[](Dialog<Ch>*) WINAPI -> ITEMIDLIST* { return ::ILCreateFromPathA("C:\\windows"); });
    EXPECT_FALSE(this->Browse(Text<Ch>("C:\\a"_t)));
    EXPECT_EQ("C:\\a"_t, this->path_);
}

}  // namespace
