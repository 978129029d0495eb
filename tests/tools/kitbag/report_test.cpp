#include <tests/tools/kitbag/tool.h>

namespace {

using namespace kitbag::test;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

/// kitbag report and page.
struct Report : ToolTest {
    Ending Of(const std::wstring& folder) const { return Kitbag({L"report", L"--folder", folder}); }
    std::set<std::filesystem::path> Files() const {
        const std::filesystem::recursive_directory_iterator all(folder_.Path());
        return {begin(all), end(all)};
    }
};

TEST_F(Report, TellsWhatATicketNeeds) {
    RawKey("Screen").Set(L"User experience level", 1);
    RawKey("Debug\\Performance").Set(L"Scan Enable", 1);
    RawKey("Debug\\Performance").Set(L"Scan Size", 500);
    RawKey("Debug\\Performance").Set(L"Guide Enable", 0ul);
    RawKey("..\\Version");
    HKEY versions = nullptr;
    ::RegCreateKeyW(HKEY_LOCAL_MACHINE, L"Software\\Tarnwick\\Vidmoor\\Version", &versions);
    const DWORD time = 0x6955bb80;
    ::RegSetValueExW(versions, L"Player", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&time), 4);
    ::RegCloseKey(versions);

    const Ending report = Kitbag({L"report"});
    EXPECT_EQ(0u, report.code);
    EXPECT_THAT(report.output, StartsWith("Kitbag report of 20"));
    for (const char* line : {
             "\n    kitbag.exe ",
             "\n    Kitbag.dll ",
             "\n    Player                    2026-01-01 00:00:00 UTC\n",
             "\n    Windows               6.1, build 7601",
             "\n    processor             CPUID '",
             "Mhz\n",
             "\n    interactive           yes\n",
             "\n    user interface level  1 of 0 (everything) to 3 (the least), stored as dword 1 "
             "(0x1)\n",
             "\n    idle for              ",
             "\n    Guide is off\n    Scan is on, room for 500 samples\n",
             "\n    graphic factory  not registered\n",
             "\n        Screen\n            User experience level  dword   1 (0x1)\n",
         })
        EXPECT_THAT(report.output, HasSubstr(line));
}

TEST_F(Report, TellsWhereDirectoriesComeFromAndTouchesNothing) {
    for (const char* folder : {"app\\Data", "app\\bin", "skins"})
        create_directories(folder_ / folder);
    Write("file", "");
    const std::string base = folder_.Path().string() + '\\';
    const struct {
        const char* about;
        const wchar_t *name, *remembered;
        std::string line;
    } rows[] = {
        {"nothing", L"Config Directory", nullptr,
         "Config  none (the next program that needs it asks the user)\n"},
        {"remembered", L"Config Directory", L"skins", "Config  " + base + "skins\\ (remembered)\n"},
        {"a file", L"Config Directory", L"file",
         "Config  none (remembered " + base +
             "file is no folder and will be forgotten; the next program that needs it asks the "
             "user)\n"},
        {"found", L"Data Directory", nullptr,
         "Data    " + base + "app\\Data\\ (found upward from the programs)\n"},
        {"found, as a file is remembered", L"Data Directory", L"file",
         "Data    " + base + "app\\Data\\ (found upward from the programs; remembered " + base +
             "file is no folder and will be forgotten)\n"},
        {"created again", L"Data Directory", L"missing",
         "Data    none (remembered " + base + "missing is missing; the next program creates it)\n"},
        {"own skins", L"Skin Directory", L"skins", "Skin    " + base + "skins\\ (remembered)\n"},
        {"no skins", L"Skin Directory", nullptr, "Skin    none (that of the configuration)\n"},
        {"skins of the configuration", L"Config Directory", L"skins",
         "Skin    " + base + "skins\\ (that of the configuration)\n"},
        {"no documents", L"Docs Directory", L"missing",
         "Docs    none (remembered " + base +
             "missing is no folder and will be forgotten; the next program that needs it asks the "
             "user)\n"},
    };
    for (const auto& [about, name, remembered, line] : rows) {
        ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kRoot);
        if (remembered) RawKey("Directories").Set(name, (folder_.Path() / remembered).wstring());
        const Snapshot before = SnapshotOf();
        const auto files = Files();
        EXPECT_THAT(Of(In("app\\bin")).output, HasSubstr("    " + line)) << about;
        EXPECT_EQ(before, SnapshotOf()) << about;
        EXPECT_EQ(files, Files()) << about;
    }
}

TEST_F(Report, GoesIntoAFileAsUtf8) {
    RawKey("Audio").Set(L"Gerät", L"x");
    EXPECT_EQ(0u, Kitbag({L"report", In("report.txt")}).code);
    EXPECT_THAT(ContentOf("report.txt"), StartsWith("\xef\xbb\xbfKitbag report of "));
    EXPECT_THAT(ContentOf("report.txt"), HasSubstr("        Ger\xc3\xa4t  string  \"x\"\r\n"));
}

TEST_F(Report, TellsHowThePageFactoryIsRegistered) {
    const std::wstring library = BuiltFolder() + L"Kitbag.dll";
    const std::string path = std::filesystem::path(library).string();
    ASSERT_EQ(0u, RunProgram(L"C:\\windows\\system32\\regsvr32.exe", {L"/s", library}).code);
    const std::string registered = Kitbag({L"report"}).output;
    ASSERT_EQ(0u, RunProgram(L"C:\\windows\\system32\\regsvr32.exe", {L"/s", L"/u", library}).code);
    EXPECT_THAT(registered, HasSubstr("    page factory     " + path + "\n    type library     " +
                                      path + "\n"));
    EXPECT_THAT(Kitbag({L"report"}).output, HasSubstr("    page factory     not registered\n"
                                                      "    type library     not registered\n"));
}

TEST_F(Report, PageTellsFromWhichFilesAPageIsMade) {
    const std::string base = folder_.Path().string() + '\\';
    for (const char* file :
         {"skin\\Main.page", "skin\\banner.gif", "skin\\tv.PNG", "skin\\notes.txt"})
        Write(file, "x");
    RawKey("Directories").Set(L"Skin Directory", In("skin"));
    const Ending page = Kitbag({L"page", L"Main.page", L"--folder", folder_.Path().wstring()});
    EXPECT_EQ(
        "settings                no other file; the page's own name is taken\n"
        "script                  " +
            base +
            "skin\\Main.page\n"
            "skin directory          " +
            base +
            "skin\\ (remembered)\n"
            "language directory      none, Lingrel.dll is not there\n"
            "sub-language directory  none\n"
            "images\n"
            "  banner.gif            skin directory\n"
            "  tv.PNG                skin directory\n",
        page.output);
    EXPECT_EQ(0u, page.code);

    RawKey("Skins").Set(L"Main.page", L"Other.page");
    const Ending other = Kitbag({L"page", L"Main.page"});
    EXPECT_THAT(other.output, HasSubstr("value \"Main.page\": string \"Other.page\"\n"));
    EXPECT_THAT(other.output, HasSubstr(base + "skin\\Other.page ! missing\n"));
    EXPECT_EQ(1u, other.code);
}

}  // namespace
