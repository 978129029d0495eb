#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <shlobj.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>

namespace {

using namespace kitbag::test;
using Table = MediaLocationValueTable;
using Row = MediaLocationValueTableEntry;
using Text = TWinString<char>;

TEST(MediaLocationTable, TidiesFoldersAndTellsThoseOfAllDrives) {
    const struct {
        const char *given, *tidied;
        bool allDrives;
    } rows[] = {
        {"C:\\Films\\", "C:\\Films", false},
        {"C:\\Films\\.", "C:\\Films", false},
        {"C:\\Films", "C:\\Films", false},
        {"C:\\", "C:\\", false},
        {"C:\\.", "C:\\", false},
        {"z:Films", "z:Films", false},
        {"A:", "A:", false},
        {"\\\\PC\\Films\\", "\\\\PC\\Films", false},
        {"\\\\", "\\\\", false},
        {"Films", "Films", true},
        {"Films\\", "Films", true},
        {"Films.", "Films.", true},
        {"F\\.", "F\\.", true},
        {"F\\", "F\\", true},
        {"\\Films", "\\Films", true},
        {"1:\\Films", "1:\\Films", true},
        {"[:", "[:", true},
        {"@:", "@:", true},
        {"{:", "{:", true},
        {"`:", "`:", true},
        {"a:", "a:", false},
        {"Z:", "Z:", false},
        {"", "", true},
        {"C", "C", true},
    };
    for (const auto& [given, tidied, allDrives] : rows) {
        SCOPED_TRACE(given);
        const Row row(Text(given), true);
        EXPECT_EQ(tidied, row.Directory.GetValue());
        EXPECT_EQ(allDrives, row.AllDrives.GetValue());
        EXPECT_TRUE(row.Recurse.GetValue());
        EXPECT_TRUE(row.Directory.IsDirectory());
    }
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
    Row row("Films", false, true);
    EXPECT_EQ("={Directory='Films',All drives=False,Recurse=True}", row.ToString());
    EXPECT_EQ("Directory='Films'", row.GetIdent().GetValue());
    EXPECT_EQ(row.ToString(), Row(row).ToString());
    EXPECT_EQ(row.GetIdent().GetValue(), Row(row).GetIdent().GetValue());
    const Row other("Videos", true, false);
    Row through;
    EXPECT_EQ("={Directory='',All drives=False,Recurse=False}", through.ToString());
    static_cast<ValueTableEntry&>(through) = other;
    EXPECT_EQ("={Directory='Videos',All drives=True,Recurse=False}", through.ToString());
    static_cast<ValueTableEntry&>(through) = ValueTableEntry();
    EXPECT_EQ("Directory='Videos'", through.GetIdent().GetValue()) << "a row of another class";
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

Text TextsOf(const Table& table) {
    Text all;
    for (int i = 0; i < table.size(); ++i)
        all += (i ? "|" : "") + dynamic_cast<const Row&>(*table[i]).SaveStringDataOnly();
    return all;
}

constexpr char kMusic[] = "{Directory='Music',All drives=True,Recurse=True}";

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
        const Table table(static_cast<Table::MediaType>(type));
        EXPECT_FALSE(RawKey::Exists(place)) << "not stored until it is saved";
        const Text first = Text("{Directory='") + folder + "',All drives=True,Recurse=True}";
        const Text second = Text("|{Directory='") + user + "',All drives=False,Recurse=True}";
        EXPECT_EQ(first + (*user ? second : Text()), TextsOf(table));
        table.Save();
        EXPECT_EQ(*user ? 2 : 1, KB_GetKeyCountA(place.c_str()));
        EXPECT_EQ(DWORD(type), RawKey(place).NumberOf(L"Media Type"));
        EXPECT_EQ(table.size(), Table(static_cast<Table::MediaType>(type++)).size());
    }
}

TEST(MediaLocationTable, DoesWithoutAUserFolderThatTheSystemDoesNotKnow) {
    for (const auto fake : {NoUserFolder, EmptyUserFolder}) {
        const ImportPatch patch("SHGetSpecialFolderPathA", fake);
        EXPECT_EQ(kMusic, TextsOf(Table(Table::AudioRead)));
    }
}

TEST(MediaLocationTable, TakesItsDefaultsByTheStoredTypeAndKeepsItsPlace) {
    const ImportPatch patch("SHGetSpecialFolderPathA", UserFolder);
    Table(Table::VideoRead).Save();
    const Text place = "Media Locations\\Video\\Read Directories";
    const struct {
        DWORD type;
        int size;
    } rows[] = {{4, 3}, {1, 2}, {8, 1}, {0xFFFFFFFF, 1}};
    for (const auto& [type, size] : rows) {
        SCOPED_TRACE(type);
        RawKey(place).Set(L"Media Type", type);
        Table table(Table::VideoRead);
        table.SetDefaultValue();
        EXPECT_EQ(size, table.size()) << "with the stored one";
        Table saved(Table::VideoRead);
        saved.Save();
        EXPECT_EQ(type, RawKey(place).NumberOf(L"Media Type"));
    }
    KB_DeleteValueA(place.c_str(), "Media Type");
    Table table(Table::VideoRead);
    table.SetDefaultValue();
    EXPECT_EQ(2, table.size()) << "the constructor's type";
}

TEST(MediaLocationTable, TakesTheFoldersAloneInAnAssignment) {
    Table video(Table::VideoRead);
    const Table photos(Table::PhotoWrite);
    video = photos;
    EXPECT_EQ(TextsOf(photos), TextsOf(video));
    video.Save();
    const RawKey place("Media Locations\\Video\\Read Directories");
    EXPECT_EQ(0u, place.NumberOf(L"Media Type"));
    EXPECT_FALSE(RawKey::Exists("Media Locations\\Photo"));
    const Table copy(video);
    EXPECT_EQ(TextsOf(video), TextsOf(copy));
    RawKey("Media Locations\\Video\\Read Directories\\x");
    copy.Save();
    EXPECT_EQ(1, KB_GetKeyCountA("Media Locations\\Video\\Read Directories"));
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
