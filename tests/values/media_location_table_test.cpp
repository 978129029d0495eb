#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <shlobj.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>

#include <cctype>

namespace {

using namespace kitbag::test;
using Table = MediaLocationValueTable;
using Row = MediaLocationValueTableEntry;
using Text = TWinString<char>;

TEST(MediaLocationTable, TidiesFoldersAndTellsThoseOfAllDrives) {
    const struct {
        const char *given, *tidied;
        bool allDrives;
    } rows[] = {{"C:\\Films\\", "C:\\Films", false},
                {"C:\\Films\\.", "C:\\Films", false},
                {"C:\\", "C:\\", false},
                {"C:\\.", "C:\\", false},
                {"z:Films", "z:Films", false},
                {"\\\\PC\\Films\\", "\\\\PC\\Films", false},
                {"\\\\", "\\\\", false},
                {"Films\\", "Films", true},
                {"Films.", "Films.", true},
                {"F\\.", "F\\.", true},
                {"F\\", "F\\", true},
                {"\\Films", "\\Films", true},
                {"1:\\Films", "1:\\Films", true},
                {"", "", true},
                {"C", "C", true}};
    for (const auto& [given, tidied, allDrives] : rows) {
        SCOPED_TRACE(given);
        const Row row(Text(given), true);
        EXPECT_EQ(tidied, row.Directory.GetValue());
        EXPECT_EQ(allDrives, row.AllDrives.GetValue());
        EXPECT_TRUE(row.Recurse.GetValue());
        EXPECT_TRUE(row.Directory.IsDirectory());
    }
    for (const char letter : std::string_view("AZaz@[`{"))
        EXPECT_EQ(!std::isalpha(letter),
                  Row(Text(std::string{letter, ':'}), true).AllDrives.GetValue())
            << letter;
}

TEST(MediaLocationTable, TidiesFoldersByWholeCharacters) {
    const ImportPatch patch(
        "IsDBCSLeadByte", +[](BYTE byte) WINAPI -> BOOL { return byte >= 0x81 && byte <= 0x9F; });
    const char* const folders[][2] = {{"K:\\\x95\\", "K:\\\x95\\"},
                                      {"K:\\\x95\\.", "K:\\\x95\\."},
                                      {"K:\\\x95\\\\", "K:\\\x95\\"},
                                      {"K:\\\x95\\\\.", "K:\\\x95\\"}};
    for (const auto& [given, tidied] : folders)
        EXPECT_EQ(tidied, Row(Text(given), true).Directory.GetValue()) << given;
}

TEST(MediaLocationTable, HasRowsThatTheDirectoryIdentifies) {
    const Row row("Films", false, true);
    EXPECT_EQ("={Directory='Films',All drives=False,Recurse=True}", Row(row).ToString());
    EXPECT_EQ("Directory='Films'", Row(row).GetIdent().GetValue());
    Row through;
    EXPECT_EQ("={Directory='',All drives=False,Recurse=False}", through.ToString());
    static_cast<ValueTableEntry&>(through) = row;
    static_cast<ValueTableEntry&>(through) = ValueTableEntry();
    EXPECT_EQ(row.ToString(), through.ToString()) << "a row of another class changes nothing";
}

BOOL WINAPI UserFolder(HWND, LPSTR path, int id, BOOL create) {
    return !create && ::lstrcpyA(path, id == CSIDL_MYMUSIC      ? "C:\\M"
                                       : id == CSIDL_MYPICTURES ? "C:\\P"
                                                                : "other") != nullptr;
}
BOOL WINAPI NoUserFolder(HWND, LPSTR path, int, BOOL) {
    ::lstrcpyA(path, "C:\\Nowhere");
    return FALSE;
}
BOOL WINAPI EmptyUserFolder(HWND, LPSTR path, int, BOOL) { return *path = '\0', TRUE; }

constexpr char kVideo[] = "Media Locations\\Video\\Read Directories";

TEST(MediaLocationTable, HasAPlaceAndDefaultFoldersForEachKindOfMedia) {
    const ImportPatch patch("SHGetSpecialFolderPathA", UserFolder);
    const struct {
        const char *key, *folder, *user;
    } kinds[] = {{"Video\\Read", "Video", ""},       {"Video\\Write", "Video", ""},
                 {"Audio\\Read", "Music", "C:\\M"},  {"Audio\\Write", "Music", ""},
                 {"Photo\\Read", "Photos", "C:\\P"}, {"Photo\\Write", "Photos", ""},
                 {"DVD\\Read", "Movies", ""},        {"DVD\\Write", "Movies", ""}};
    for (long type = 0; const auto& [key, folder, user] : kinds) {
        SCOPED_TRACE(key);
        const Text place = Text("Media Locations\\") + key + " Directories";
        const auto media = static_cast<Table::MediaType>(type);
        const Table table(media);
        EXPECT_FALSE(RawKey::Exists(place)) << "not stored until it is saved";
        const Text first = Text("[={Directory='") + folder + "',All drives=True,Recurse=True}";
        const Text second = Text(",\n={Directory='") + user + "',All drives=False,Recurse=True}";
        EXPECT_EQ(first + (*user ? second : "") + ']', table.SaveStringDataOnly());
        table.Save();
        EXPECT_EQ(DWORD(type++), RawKey(place).NumberOf(L"Media Type"));
        EXPECT_EQ(table.size(), KB_GetKeyCountA(place.c_str()));
        EXPECT_EQ(table.size(), Table(media).size()) << "loaded";
    }
    for (const auto fake : {NoUserFolder, EmptyUserFolder}) {
        const ImportPatch none("SHGetSpecialFolderPathA", fake);
        KB_DeleteSectionA("Media Locations");
        EXPECT_EQ(1, Table(Table::AudioRead).size()) << "without the user's";
    }
}

TEST(MediaLocationTable, TakesItsDefaultsByTheStoredTypeAndKeepsItsPlace) {
    const ImportPatch patch("SHGetSpecialFolderPathA", UserFolder);
    Table(Table::VideoRead).Save();
    const struct {
        DWORD type;
        int size;
    } rows[] = {{4, 3}, {1, 2}, {8, 1}, {0xFFFFFFFF, 1}};
    for (const auto& [type, size] : rows) {
        SCOPED_TRACE(type);
        RawKey(kVideo).Set(L"Media Type", type);
        Table table(Table::VideoRead);
        table.SetDefaultValue();
        EXPECT_EQ(size, table.size()) << "with the stored one";
        Table(Table::VideoRead).Save();
        EXPECT_EQ(type, RawKey(kVideo).NumberOf(L"Media Type"));
    }
    KB_DeleteValueA(kVideo, "Media Type");
    Table table(Table::VideoRead);
    table.SetDefaultValue();
    EXPECT_EQ(2, table.size()) << "the constructor's type";
}

TEST(MediaLocationTable, TakesTheFoldersAloneInAnAssignment) {
    Table video(Table::VideoRead);
    const Table photos(Table::PhotoWrite);
    video = photos;
    EXPECT_EQ(photos.SaveStringDataOnly(), video.SaveStringDataOnly());
    Table(video).Save();
    EXPECT_EQ(0u, RawKey(kVideo).NumberOf(L"Media Type"));
    EXPECT_EQ(1, KB_GetKeyCountA(kVideo));
    EXPECT_FALSE(RawKey::Exists("Media Locations\\Photo"));
}

TEST(MediaLocationTable, HasNoPlaceForATypeThatIsNone) {
    for (const long type : {8L, -1L}) {
        Table table(static_cast<Table::MediaType>(type));
        table.SetDefaultValue();
        table.Save();
        EXPECT_EQ(0, table.size()) << type;
        EXPECT_FALSE(RawKey::Exists()) << type;
    }
    EXPECT_EQ(nullptr, Table(Table::DvdRead).EntryFactory("class Recording"));
}

}  // namespace
