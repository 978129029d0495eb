// File names, the application's tables, and what is shown at the user's level.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <shlobj.h>
#include <tests/support/import_patch.h>
#include <tests/values/clean_settings.h>

namespace {

using kitbag::test::RawKey;
using Text = TWinString<char>;

class ApplicationValues : public kitbag::test::CleanSettings {};

TEST_F(ApplicationValues, TakePathsApart) {
    const char* const cases[][2] = {{"C:\\Video\\clip.avi", "clip.avi|clip|C:\\Video|.avi"},
                                    {"C:\\a.b\\clip", "clip|clip|C:\\a.b|.b\\clip"},
                                    {"C:/x", "x|x|C:|"},
                                    {"", "|||"}};
    for (const auto& [path, parts] : cases) {
        const FilenameValue value{Text(path)};
        EXPECT_EQ(parts, value.GetFilename() + '|' + value.GetFilenameNoExtension() + '|' +
                             value.GetDirectory() + '|' + value.GetExtension());
        EXPECT_EQ(Text(path).size() > 4, value.IsExplicitDirectory());
    }
}

TEST_F(ApplicationValues, KeepTheExternalPrograms) {
    ExternalProgramValueTable programs("Tools");
    programs.SetValueName("Programs");
    ExternalProgramValueTableEntry editor;
    editor.Executable = "C:\\edit.exe";
    for (int i = 0; i < 2; ++i) programs.AddEntry(new ExternalProgramValueTableEntry(editor));
    programs.Save();
    const RawKey row("Tools\\Programs\\00000001");
    EXPECT_EQ(L"C:\\edit.exe", row.TextOf(L"Executable"));
    for (const wchar_t* text : {L"Display Name", L"Description", L"Arguments"})
        EXPECT_EQ(L"", row.TextOf(text));
    EXPECT_EQ(2u, row.NumberOf(L"User Experience Level"));
    EXPECT_TRUE(row.NumberOf(L"Run in background") && !row.NumberOf(L"Wait for program to finish"));
    EXPECT_EQ(1u, row.NumberOf(L"Notify user when program has finished"));
    // The constructor loads under the empty name: rows directly in the section.
    EXPECT_EQ(2, ExternalProgramValueTable("Tools\\Programs").size());
    EXPECT_TRUE(ExternalProgramValueTable("Tools").IsEmpty());
}

BOOL WINAPI FakeFolder(HWND, LPSTR path, int id, BOOL) {
    return lstrcpyA(path, id == CSIDL_MYMUSIC ? "C:\\M" : "C:\\P") != nullptr;
}

TEST_F(ApplicationValues, KeepTheMediaLocations) {
    using Table = MediaLocationValueTable;
    const kitbag::test::ImportPatch patch("SHGetSpecialFolderPathA", FakeFolder);
    const char* const kinds[][2] = {
        {"Video\\Read", "'Video'"},          {"Video\\Write", "'Video'"},
        {"Audio\\Read", "'Music'|'C:\\M'"},  {"Audio\\Write", "'Music'"},
        {"Photo\\Read", "'Photos'|'C:\\P'"}, {"Photo\\Write", "'Photos'"},
        {"DVD\\Read", "'Movies'"},           {"DVD\\Write", "'Movies'"}};
    for (long type = 0; const auto& [key, folders] : kinds) {
        const Table table(static_cast<Table::MediaType>(type++));
        Text found = table[0]->GetValue("Directory")->SaveStringDataOnly();
        if (table.size() > 1) found += '|' + table[1]->GetValue("Directory")->SaveStringDataOnly();
        EXPECT_EQ(folders, found);
        table.Save();
        EXPECT_TRUE(RawKey::Exists(Text("Media Locations\\") + key + " Directories"));
    }
    // The stored type decides which defaults are added later; an unknown one has none.
    const RawKey key("Media Locations\\Video\\Read Directories");
    for (const DWORD type : {4u, 0xFFFFFFFFu}) {
        key.Set(L"Media Type", type);
        Table stored(Table::VideoRead);
        stored.SetDefaultValue();
        EXPECT_EQ(type == 4 ? 3 : 1, stored.size());
    }
}

TEST_F(ApplicationValues, AreShownFromTheirLevelOn) {
    // The process reads the level once, so that one of them is seen here.
    RawKey("Screen").Set(L"User experience level", 7u);
    EXPECT_EQ(3, KB_GetUserInterfaceLevel());
    BooleanValue value;
    for (const int level : {1, 2, 3}) {
        value.SetMinimumUserInterfaceLevel(static_cast<Value::ValueAction>(level));
        EXPECT_EQ(level == 3, KB_UILevelShowValue(&value));
    }
    value.SetValueAction(Value::HiddenAction);
    EXPECT_FALSE(KB_UILevelShowValue(&value) || KB_UILevelShowValue(nullptr));
}

}  // namespace
