// Enumerations, file names, the application's tables, and what is shown at the user's level.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <shlobj.h>
#include <tests/support/import_patch.h>
#include <tests/values/clean_settings.h>

namespace {

using kitbag::test::RawKey;
using Text = TWinString<char>;

class ApplicationValues : public kitbag::test::CleanSettings {};

struct Numerals : UInt32Enum {
    using UInt32Enum::operator=;
    void InitialiseElements() override {
        for (const char* name : {"One", "Two", "Uno"}) AddElement(size() == 1 ? 2 : 1, name);
    }
};

TEST_F(ApplicationValues, NameTheValuesOfAnEnumeration) {
    Numerals numerals;
    static_cast<UInt32Enum&>(numerals).InitialiseElements();
    EXPECT_EQ("One", numerals.Lookup(1) + numerals.Lookup(3));
    EXPECT_TRUE(numerals.at(2) == 1 && numerals[3] == 0 && numerals[-1] == 0);
    numerals.SetValue(2);
    EXPECT_EQ("Two=2", UInt32Enum(numerals).ToString() + numerals.SaveString());
}

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

TEST_F(ApplicationValues, StoreAFileNameWithItsAttributes) {
    FilenameValue file("S", "File", true), loaded("S", "File", true);
    file.SetFilterString("*.avi");
    file.SetMustExist(true);
    file.SetValue("C:\\f");
    const RawKey key("S");
    EXPECT_EQ(L"C:\\f*.avi", key.TextOf(L"File") + key.TextOf(L"File/filter"));
    EXPECT_TRUE(key.NumberOf(L"File/Is directory") == 0 && key.NumberOf(L"File/Must exist") == 1);
    key.Set(L"File/Is directory", 1u);
    key.Set(L"File/Must exist", L"mistyped");
    EXPECT_EQ("C:\\f*.avi", loaded.GetDirectory() + loaded.GetFilterString());
    EXPECT_FALSE(loaded.MustExist());
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
    EXPECT_TRUE(row.Has(L"Display Name") && row.Has(L"Description") && row.Has(L"Arguments"));
    EXPECT_EQ(2u, row.NumberOf(L"User Experience Level"));
    EXPECT_TRUE(row.NumberOf(L"Run in background") && !row.NumberOf(L"Wait for program to finish"));
    EXPECT_EQ(1u, row.NumberOf(L"Notify user when program has finished"));

    // The constructor loads under the empty name: rows directly in the section.
    ExternalProgramValueTable loaded("Tools\\Programs");
    EXPECT_TRUE(loaded.size() == 2 && ExternalProgramValueTable("Tools").IsEmpty());
    loaded.AddReplaceableParam("%1", "first", "second");
    Text token, first, second;
    EXPECT_TRUE(loaded.GetReplaceableParam(0, token, first, second) && second == "second");
    programs = loaded;
    EXPECT_TRUE(programs.size() == 2 && !programs.GetReplaceableParam(0, token, first, second));
}

BOOL WINAPI FakeFolder(HWND, LPSTR path, int id, BOOL) {
    return lstrcpyA(path, id == CSIDL_MYMUSIC ? "C:\\M" : "C:\\P") != nullptr;
}

TEST_F(ApplicationValues, KeepTheMediaLocations) {
    using Table = MediaLocationValueTable;
    const kitbag::test::ImportPatch patch("SHGetSpecialFolderPathA", FakeFolder);
    const char* const kinds[][3] = {{"Video\\Read", "Video"},
                                    {"Video\\Write", "Video"},
                                    {"Audio\\Read", "Music", "C:\\M"},
                                    {"Audio\\Write", "Music"},
                                    {"Photo\\Read", "Photos", "C:\\P"},
                                    {"Photo\\Write", "Photos"},
                                    {"DVD\\Read", "Movies"},
                                    {"DVD\\Write", "Movies"}};
    for (long type = 0; const auto& [key, folder, own] : kinds) {
        const Table table(static_cast<Table::MediaType>(type++));
        Text expected = Text("[={Directory='") + folder + "',All drives=True,Recurse=True}";
        if (own) expected += Text(",\n={Directory='") + own + "',All drives=False,Recurse=True}";
        EXPECT_EQ(expected + "]", table.SaveStringDataOnly());
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

TEST_F(ApplicationValues, NormaliseMediaDirectories) {
    const char* const cases[][3] = {
        {"Video\\", "Video", "all"}, {"C:\\x\\.", "C:\\x", "one"},
        {"C:\\", "C:\\", "one"},     {"C:\\.", "C:\\", "one"},
        {"\\.", "\\.", "all"},       {"\\\\pc\\x\\", "\\\\pc\\x", "one"}};
    for (const auto& [given, kept, drives] : cases) {
        const MediaLocationValueTableEntry row(given, true);
        EXPECT_EQ(kept, row.Directory.GetValue());
        EXPECT_EQ(Text(drives) == "all", row.AllDrives.GetValue());
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
