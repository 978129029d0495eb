#include <kitbag/files/file_names.h>
#include <kitbag/files/folder_dialog.h>
#include <kitbag/files/paths.h>
#include <kitbag/files/shell_link.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>

#include <random>
#include <regex>

namespace {

using namespace kitbag::test;

template <class Ch>
struct Paths : testing::Test, Com, TextFolder<Ch> {};
TYPED_TEST_SUITE(Paths, TextForms, TextFormName);

// What the rules single out; the rules, as patterns.
const std::string pieces[] = {"con", "AUX.", "Com1", "COM0",   "lpt9",    "\xe9",        "C:",
                              "\\",  "\\\\", "/",    "clock$", "09!#$&'", "()%@^azA_}~{"};
const std::regex computerName(R"((\\\\)?[A-Za-z0-9!#$%&'()\-.@^_{}~]{1,14}(\\(.|[\r\n])*)?)");
const std::regex toRepair(R"(^[ .]|[ .]$|[\x01-\x1f?"/\\<>*|:])");
const std::regex device(R"((con|aux|com[1-9]|lpt[1-9]|prn|nul|clock\$)(\..*)?)", std::regex::icase);

TYPED_TEST(Paths, HaveTheirNamesCheckedAndRepaired) {
    using Ch = TypeParam;
    std::mt19937 random;
    for (int i = 0; i < 9999; ++i) {
        std::string name;
        while (random() % 4)
            name += random() % 4 ? pieces[random() % std::size(pieces)]
                                 : std::string(1, static_cast<char>(1 + random() % 127));
        const bool repair = random() % 2, isPath = random() % 2,
                   hasParts = isPath || name.find(':') == 1 || name.starts_with("\\\\");
        const char separator = name.find('\\') == name.npos ? '/' : '\\';
        const auto begin = hasParts ? name.find_last_of(separator) + 1 : 0;
        const auto part = name.substr(begin), fixed = std::regex_replace(part, toRepair, "_"),
                   result = repair ? name.substr(0, begin) + fixed : name;
        const bool isDevice = std::regex_match(fixed, device),
                   isGood = !name.empty() && (repair || part == fixed) && !isDevice;

        Text<Ch> text(name.begin(), name.end());
        EXPECT_EQ(std::regex_match(name, computerName),
                  Exports<Ch>::ValidateComputerName(text.c_str()));
        const auto validate =
            random() % 2 ? Exports<Ch>::ValidateFilename : Exports<Ch>::ValidatePath;
        EXPECT_EQ(isGood, validate(text.data(), repair, isPath)) << name;
        EXPECT_EQ(Text<Ch>(result.begin(), result.end()), text) << name;
    }
    EXPECT_FALSE(Exports<Ch>::ValidateFilename(nullptr, true, true) ||
                 Exports<Ch>::ValidateComputerName(nullptr));
}

TYPED_TEST(Paths, AreCreatedUpToTheLastSeparatorAndDeletedAsFarAsTheSystemAllows) {
    using Ch = TypeParam;
    for (const char* name : {"file", "tree\\d\\e"}) this->Write(name);
    const auto file = this->In("file"), copy = this->In("tree\\a/copy"), tree = this->In("tree");
    for (const bool keep : {false, true})
        EXPECT_EQ(!keep, Exports<Ch>::CopyFileDeep(file.c_str(), copy.c_str(), keep));
    EXPECT_FALSE(Exports<Ch>::CreatePath(nullptr) ||
                 Exports<Ch>::CreatePath((file + Text<Ch>("\\d\\"_t)).c_str()));
    const std::string longest(258 - this->Path().string().size(), 'x');
    EXPECT_TRUE(Exports<Ch>::CreatePath(this->In(longest).c_str()));
    EXPECT_FALSE(Exports<Ch>::CreatePath(this->In(longest + 'x').c_str()));
    const auto kept = (*this / "tree\\a\\copy").string();
    ::SetFileAttributesA(kept.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(FALSE, Exports<Ch>::DeleteDirectory(tree.c_str()));
    EXPECT_TRUE(this->Has("tree\\a\\copy") && !this->Has("tree\\d"));
    ::SetFileAttributesA(kept.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_NE(FALSE, Exports<Ch>::DeleteDirectory((tree + Text<Ch>("\\"_t)).c_str()));
}

TYPED_TEST(Paths, AreReadFromLinksIn8BitsInBothForms) {
    using Ch = TypeParam;
    this->WriteLink("link", "C:\\windows");
    this->Write("text");
    Ch target[MAX_PATH], description[MAX_PATH];
    EXPECT_TRUE(Exports<Ch>::GetLinkInfo(this->In("link").c_str(), target, description));
    EXPECT_STRCASEEQ("C:\\windows", reinterpret_cast<char*>(target));
    EXPECT_STREQ("A description", reinterpret_cast<char*>(description));
    EXPECT_FALSE(Exports<Ch>::GetLinkInfo(this->In("text").c_str(), target, nullptr) || target[0]);
}

/// What the user presses as soon as the dialog hears from the library.
WPARAM button;

LRESULT WINAPI Tell(HWND dialog, UINT message, WPARAM flag, LPARAM text) {
    ::PostMessageA(dialog, WM_COMMAND, button, 0);
    return ::SendMessageA(dialog, message, flag, text);
}

TYPED_TEST(Paths, AreChosenInADialogThatOpensOnTheFolder) {
    using Ch = TypeParam;
    const ImportPatch send(Pick<Ch>("SendMessageA", "SendMessageW"), Tell);
    const std::string folder = this->Path().string();
    Text<Ch> path(folder.begin(), folder.end());
    path.resize(MAX_PATH);
    path[0] = 'c';  // the dialog has it in upper case
    button = IDCANCEL;
    EXPECT_FALSE(Exports<Ch>::BrowseForFolder(path.data(), nullptr));
    EXPECT_EQ('c', path[0]);
    button = IDOK;
    EXPECT_TRUE(Exports<Ch>::BrowseForFolder(path.data(), nullptr));
    // The 16-bit form's text goes with an 8-bit message: nothing is selected, and the dialog
    // answers with the desktop.
    EXPECT_EQ(Pick<Ch>(true, false), std::string(path.begin(), path.end()).c_str() == folder);
}

}  // namespace
