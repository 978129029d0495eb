// Enumerations, file names, the application's tables, and what is shown at the user's level.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <shlobj.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>
#include <tests/values/clean_settings.h>

#include <fstream>

namespace {

using kitbag::test::RawKey;
using kitbag::test::TemporaryFolder;
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
    const char* const cases[][5] = {
        {"C:\\Video\\clip.avi", "clip.avi", "clip", "C:\\Video", ".avi"},
        {"clip.AVI", "clip.AVI", "clip", "", ".AVI"},
        {"C:\\a.b\\clip", "clip", "clip", "C:\\a.b", ".b\\clip"},
        {"C:/x", "x", "x", "C:", ""},
        {"", "", "", "", ""}};
    for (const auto& [path, name, bare, directory, extension] : cases) {
        const FilenameValue value{Text(path)};
        EXPECT_EQ(name, value.GetFilename());
        EXPECT_EQ(bare, value.GetFilenameNoExtension());
        EXPECT_EQ(directory, value.GetDirectory());
        EXPECT_EQ(extension, value.GetExtension());
        EXPECT_EQ(Text(directory).size() > 2, value.IsExplicitDirectory());
        EXPECT_EQ(Text(extension) == ".avi", value.IsAVI());
    }
}

TEST_F(ApplicationValues, StoreAFileNameWithItsAttributes) {
    const TemporaryFolder folder;
    std::ofstream(folder / "f") << "12345";
    FilenameValue file("S", "File", true);
    file.SetFilterString("Video|*.avi");
    file.SetMustExist(true);
    file.SetValue((folder / "f").string());
    const RawKey key("S");
    EXPECT_EQ((folder / "f").wstring(), key.TextOf(L"File"));
    EXPECT_EQ(L"Video|*.avi", key.TextOf(L"File/filter"));
    EXPECT_TRUE(key.NumberOf(L"File/Is directory") == 0 && key.NumberOf(L"File/Must exist") == 1);

    key.Set(L"File/Is directory", 1u);
    key.Set(L"File/Must exist", L"mistyped");
    FilenameValue loaded("S", "File", true);
    unsigned long long size = 9;
    // The size is that of the path at hand; nothing was loaded yet.
    EXPECT_TRUE(!loaded.GetFileSize(size) && size == 0);
    EXPECT_EQ(file.GetValue(), loaded.GetDirectory());
    EXPECT_TRUE(loaded.GetFileSize(size) && size == 5);
    EXPECT_TRUE(!loaded.MustExist() && loaded.GetFilterString() == "Video|*.avi");
}

TEST_F(ApplicationValues, KeepTheExternalPrograms) {
    ExternalProgramValueTable programs("Tools");
    programs.SetValueName("Programs");
    auto* editor = new ExternalProgramValueTableEntry;
    EXPECT_EQ("Display Name=''|Description=''", editor->GetIdent().GetValue());
    editor->Executable = "C:\\edit.exe";
    EXPECT_TRUE(programs.AddEntry(editor));
    EXPECT_TRUE(programs.AddEntry(new ExternalProgramValueTableEntry(*editor)));
    programs.Save();
    const RawKey row("Tools\\Programs\\00000001");
    EXPECT_EQ(L"C:\\edit.exe", row.TextOf(L"Executable"));
    EXPECT_TRUE(row.Has(L"Display Name") && row.Has(L"Description") && row.Has(L"Arguments"));
    EXPECT_EQ(2u, row.NumberOf(L"User Experience Level"));
    EXPECT_TRUE(row.NumberOf(L"Run in background") && !row.NumberOf(L"Wait for program to finish"));
    EXPECT_EQ(1u, row.NumberOf(L"Notify user when program has finished"));

    row.Set(L"ValueTableEntry Class", L"class MediaLocationValueTableEntry");
    ExternalProgramValueTable loaded("Tools"), other("");
    EXPECT_TRUE(loaded.IsEmpty());
    loaded.LoadRegistry("Tools", "Programs");
    // Rows directly in the section are what the constructor finds.
    EXPECT_EQ(1, ExternalProgramValueTable("Tools\\Programs").size());
    loaded.AddReplaceableParam("%1", "first", "second");
    other = loaded;
    Text token, first, second;
    EXPECT_TRUE(other.size() == 1 && !other.GetReplaceableParam(0, token, first, second));
    EXPECT_TRUE(loaded.GetReplaceableParam(0, token, first, second));
    EXPECT_EQ("%1firstsecond", token + first + second);
}

constexpr char kMusic[] = "{Directory='Music',All drives=True,Recurse=True}";
constexpr char kTunes[] = "{Directory='C:\\Tunes',All drives=False,Recurse=True}";

BOOL WINAPI FakeFolder(HWND, LPSTR path, int id, BOOL) {
    return lstrcpyA(path, id == CSIDL_MYMUSIC ? "C:\\Tunes" : "") != nullptr;
}

TEST_F(ApplicationValues, KeepTheMediaLocations) {
    using Table = MediaLocationValueTable;
    const kitbag::test::ImportPatch patch("SHGetSpecialFolderPathA", FakeFolder);
    Table table(Table::AudioRead);
    EXPECT_EQ(Text("[=") + kMusic + ",\n=" + kTunes + "]", table.SaveStringDataOnly());
    table.RemoveEntry(0);
    EXPECT_FALSE(RawKey::Exists("Media Locations"));
    table.Save();
    // The stored type decides which defaults are added later; an unknown one has none.
    const RawKey key("Media Locations\\Audio\\Read Directories");
    EXPECT_EQ(2u, key.NumberOf(L"Media Type"));
    for (const DWORD type : {4u, 0xFFFFFFFFu}) {
        key.Set(L"Media Type", type);
        Table stored(Table::AudioRead);
        stored.SetDefaultValue();
        EXPECT_EQ(type == 4 ? 2 : 1, stored.size());
    }
    table.RemoveAllEntries();
    table.Save();
    EXPECT_EQ(2, Table(Table::AudioRead).size());
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
        EXPECT_TRUE(row.Recurse && row.Directory.IsDirectory());
    }
}

TEST_F(ApplicationValues, AreShownFromTheirLevelOn) {
    // The process reads the level once, so that one of them is seen here.
    RawKey("Screen").Set(L"User experience level", 2u);
    EXPECT_EQ(2, KB_GetUserInterfaceLevel());
    RawKey("Screen").Set(L"User experience level", 0u);
    BooleanValue value;
    for (const int level : {1, 2, 3}) {
        value.SetMinimumUserInterfaceLevel(static_cast<Value::ValueAction>(level));
        EXPECT_TRUE(KB_UILevelShowValue(&value) == (level >= 2));
    }
    value.SetValueAction(Value::HiddenAction);
    EXPECT_FALSE(KB_UILevelShowValue(&value) || KB_UILevelShowValue(nullptr));
    EXPECT_TRUE(KB_LowestInterfaceLevel(1, 3) == 3 && KB_HighestInterfaceLevel(1, 3) == 1);
}

}  // namespace
