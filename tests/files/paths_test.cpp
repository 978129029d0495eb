#include <kitbag/files/folder_dialog.h>
#include <kitbag/files/paths.h>
#include <kitbag/files/shell_link.h>
#include <tests/support/import_patch.h>
#include <tests/support/text_folder.h>

#include <algorithm>
#include <string_view>
#include <thread>

namespace {

using kitbag::test::Pick;
using kitbag::test::Text;

template <class Ch>
struct Paths : testing::Test, kitbag::test::Com, kitbag::test::TextFolder<Ch> {};
TYPED_TEST_SUITE(Paths, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(Paths, AreCreatedUpToTheLastSeparator) {
    using Ch = TypeParam;
    EXPECT_TRUE(KB(CreatePath)(this->In("a\\b/c.txt").c_str()));
    EXPECT_TRUE(this->Has("a\\b") && !this->Has("a\\b\\c.txt"));
    this->Write("file");
    EXPECT_FALSE(KB(CreatePath)(this->In("file\\d\\").c_str()));
    EXPECT_FALSE(KB(CreatePath)(nullptr));
    for (const std::size_t length : {259u, 260u}) {
        Text<Ch> path = this->In(std::to_string(length)) + T("\\");
        path.resize(length, Ch{'x'});
        EXPECT_EQ(length < 260, KB(CreatePath)(path.c_str()));
        EXPECT_EQ(length < 260, this->Has(std::to_string(length)));
    }
    const auto file = this->In("file"), copy = this->In("e\\f\\copy");
    for (const bool isFirst : {true, false})
        EXPECT_EQ(isFirst, KB(CopyFileDeep)(file.c_str(), copy.c_str(), true));
    EXPECT_TRUE(KB(CopyFileDeep)(file.c_str(), copy.c_str(), false));
}

HANDLE WINAPI ExpectRoot(const char* pattern, WIN32_FIND_DATAA*) {
    EXPECT_STREQ("\\*", pattern);
    return INVALID_HANDLE_VALUE;
}

TYPED_TEST(Paths, AreDeletedAsFarAsTheSystemAllows) {
    using Ch = TypeParam;
    for (const char* file : {"tree\\a\\b\\c", "tree\\d\\e", "tree\\f"}) this->Write(file);
    const auto kept = (*this / "tree\\a\\b\\c").string();
    ::SetFileAttributesA(kept.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(FALSE, KB(DeleteDirectory)(this->In("tree").c_str()));
    EXPECT_TRUE(this->Has("tree\\a\\b\\c") && !this->Has("tree\\d"));
    ::SetFileAttributesA(kept.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_NE(FALSE, KB(DeleteDirectory)(this->In("tree\\").c_str()));
    EXPECT_FALSE(this->Has("tree"));
    // Never for real: this empties the root of the current drive.
    const kitbag::test::ImportPatch search("FindFirstFileA", ExpectRoot);
    for (const char* none : {"", static_cast<const char*>(nullptr)})
        EXPECT_EQ(FALSE, KB_DeleteDirectoryA(none));
}

TYPED_TEST(Paths, AreReadFromLinksIn8BitsInBothForms) {
    using Ch = TypeParam;
    const std::string longest(258 - this->Path().string().size(), 'x'), tooLong = longest + 'x';
    for (const auto& link : {longest, tooLong}) this->WriteLink(link, "C:\\windows");
    this->Write("text", "no link");
    for (const auto& name : {longest, tooLong, std::string("text"), std::string("missing")}) {
        SCOPED_TRACE(name);
        Ch target[MAX_PATH] = {'#'}, description[MAX_PATH] = {'#'};
        const bool isGood = name == longest;
        EXPECT_EQ(isGood, KB(GetLinkInfo)(this->In(name).c_str(), target, description));
        EXPECT_STRCASEEQ(isGood ? "C:\\windows" : "", reinterpret_cast<char*>(target));
        EXPECT_STREQ(isGood ? "A description" : "", reinterpret_cast<char*>(description));
    }
}

/// Presses a button of the dialog that the calling thread is about to show, as the user would, once
/// its status line begins with the text; cancels where that never comes.
std::jthread Press(WPARAM button, const std::string& text) {
    constexpr int kStatusLine = 0x3743;
    return std::jthread([button, text, dialogThread = ::GetCurrentThreadId()] {
        GUITHREADINFO shown{};
        shown.cbSize = sizeof shown;
        char status[MAX_PATH] = {};
        const auto isReady = [&] {
            return shown.hwndActive && std::string_view(status).starts_with(text);
        };
        for (int i = 0; i < 500 && !isReady(); ++i, ::Sleep(100)) {
            ::GetGUIThreadInfo(dialogThread, &shown);
            ::GetDlgItemTextA(shown.hwndActive, kStatusLine, status, MAX_PATH);
        }
        ::PostMessageA(shown.hwndActive, WM_COMMAND, isReady() ? button : IDCANCEL, 0);
    });
}

TYPED_TEST(Paths, AreChosenInADialogThatOpensOnTheFolder) {
    using Ch = TypeParam;
    // Without a display no window can be made.
    const HWND window = ::CreateWindowA("STATIC", "", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, 0);
    if (!::DestroyWindow(window)) GTEST_SKIP() << "no display";
    // The 16-bit form's text goes with an 8-bit message: nothing is selected, and the dialog
    // answers with the desktop.
    const std::string folder = this->Path().string(), selected = Pick<Ch>(folder, "");
    Ch path[MAX_PATH] = {};
    std::ranges::copy(folder, path);
    path[0] = 'c';  // the dialog has it in upper case
    for (const auto& [button, isChosen] :
         {std::pair<WPARAM, bool>{IDCANCEL, false}, {IDOK, true}}) {
        const std::jthread user = Press(button, isChosen ? selected : "");
        EXPECT_EQ(isChosen, KB(BrowseForFolder)(path, isChosen ? nullptr : T("Where?")));
        EXPECT_EQ(isChosen ? 'C' : 'c', path[0]);
    }
    EXPECT_EQ(selected == folder, std::ranges::equal(folder, std::basic_string_view<Ch>(path)));
}

}  // namespace
