// File names, the application's tables, and what is shown at the user's level.

#include <kitbag/kitbag.h>
#include <shlobj.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>

#include <algorithm>

namespace {

using namespace kitbag::test;
using Text = TWinString<char>;

TEST(ApplicationValues, TakePathsApart) {
    const char* const cases[][2] = {{"C:\\Video\\clip.avi", "clip.avi|clip|C:\\Video|.avi"},
                                    {"C:\\a.b\\clip", "clip|clip|C:\\a.b|.b\\clip"},
                                    {"\\pc/x.AVI", "x.AVI|x|\\pc|.AVI"},
                                    {"", "|||"}};
    for (const auto& [path, parts] : cases) {
        FilenameValue value{Text(path)};
        EXPECT_EQ(parts, value.GetFilename() + '|' + value.GetFilenameNoExtension() + '|' +
                             value.GetDirectory() + '|' + value.GetExtension());
        EXPECT_EQ(value.GetDirectory().size() > 2, value.IsExplicitDirectory());
        EXPECT_EQ(value.GetExtension() == ".avi", value.IsAVI());
        value.SetIsDirectory(true);
        EXPECT_EQ(path, value.GetDirectory());
    }
}

TEST(ApplicationValues, KeepTheExternalPrograms) {
    ExternalProgramValueTable programs("Tools");
    programs.SetValueName("Programs");
    ExternalProgramValueTableEntry editor;
    editor.Executable = "C:\\edit.exe";
    for (int i = 0; i < 2; ++i) programs.AddEntry(new ExternalProgramValueTableEntry(editor));
    programs.Save();
    // The constructor loads under the empty name: rows directly in the section.
    const ExternalProgramValueTable loaded("Tools\\Programs");
    EXPECT_EQ(
        "={Display Name='',Description='',Executable='C:\\edit.exe',Arguments='',User "
        "Experience Level=2,Run in background=True,Wait for program to finish=False,"
        "Notify user when program has finished=True}",
        loaded[1]->ToString());
    Text token, first, second;
    programs.AddReplaceableParam("%f", "file", "the file");
    EXPECT_TRUE(programs.GetReplaceableParam(0, token, first, second));
    EXPECT_FALSE(programs.GetReplaceableParam(1, token, first, second));
    EXPECT_EQ("%f file the file", token + ' ' + first + ' ' + second);
    EXPECT_EQ(0u, ExternalProgramValueTable(programs).GetReplaceableParamCount());
    // The second cast gives null for every value, as that to the other table does.
    EXPECT_TRUE(KB_GetAsValueTable(&loaded) && !KB_GetAsExternalProgramValueTable(&loaded));
}

BOOL WINAPI FakeFolder(HWND, LPSTR path, int id, BOOL) {
    return lstrcpyA(path, id == CSIDL_MYMUSIC ? "C:\\M" : "C:\\P") != nullptr;
}

TEST(ApplicationValues, KeepTheMediaLocations) {
    using Table = MediaLocationValueTable;
    const ImportPatch patch("SHGetSpecialFolderPathA", FakeFolder);
    const char* const kinds[][2] = {{"Video\\Read", "Video"},        {"Video\\Write", "Video"},
                                    {"Audio\\Read", "Music|C:\\M"},  {"Audio\\Write", "Music"},
                                    {"Photo\\Read", "Photos|C:\\P"}, {"Photo\\Write", "Photos"},
                                    {"DVD\\Read", "Movies"},         {"DVD\\Write", "Movies"}};
    for (long type = 0; const auto& [key, folders] : kinds) {
        const Table table(static_cast<Table::MediaType>(type++));
        table.Save();
        Text found;
        for (int row = 0; row < table.size(); ++row)
            found += (row ? "|" : "") +
                     KB_GetAsFilenameValue(table[row]->GetValue("Directory"))->GetValue();
        EXPECT_EQ(folders, found);
        EXPECT_TRUE(RawKey::Exists(Text("Media Locations\\") + key + " Directories\\00000000"));
    }
    // The stored type decides which defaults are added later; an unknown one has none.
    const Text place = "Media Locations\\Video\\Read Directories";
    for (const DWORD type : {4u, 0xFFFFFFFFu}) {
        RawKey(place).Set(L"Media Type", type);
        Table stored(Table::VideoRead);
        stored.SetDefaultValue();
        EXPECT_EQ(type == 4 ? 3 : 1, stored.size());
    }
    // An assigned table keeps its place and type.
    Table video(Table::VideoRead);
    (video = Table(Table::PhotoWrite)).Save();
    EXPECT_EQ(L"Photos", RawKey(place + "\\00000000").TextOf(L"Directory"));
}

TEST(ApplicationValues, TidyMediaFolders) {
    const char* const folders[][2] = {{"C:\\Films\\", "C:\\Films"},
                                      {"C:\\Films\\.", "C:\\Films"},
                                      {"C:\\.", "C:\\"},
                                      {"Films", "Films"}};
    for (const auto& [given, tidied] : folders) {
        const MediaLocationValueTableEntry row(Text(given), true);
        EXPECT_EQ(tidied, row.Directory.GetValue());
        EXPECT_EQ(given == Text("Films"), row.AllDrives.GetValue());
    }
}

/// The process reads the level once, so that each is seen in a test of its own.
class Levels : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Users, Levels, testing::Values(-2, 2, 7));

TEST_P(Levels, ShowValuesFromTheirOwnOn) {
    KB_SetIntA("Screen", "User experience level", GetParam());
    const int user = std::clamp(GetParam(), 0, 3);
    BooleanValue value;
    for (const int level : {1, 2, 3}) {
        value.SetMinimumUserInterfaceLevel(static_cast<Value::ValueAction>(level));
        EXPECT_EQ(user <= level, KB_UILevelShowValue(&value));
        // By the detail that is shown, not by the number.
        EXPECT_EQ(std::max(user, level), KB_LowestInterfaceLevel(level, user));
        EXPECT_EQ(std::min(user, level), KB_HighestInterfaceLevel(level, user));
    }
    value.SetValueAction(Value::HiddenAction);
    EXPECT_EQ(KB_GetUserInterfaceLevel() == 0, KB_UILevelShowValue(&value));
}

}  // namespace
