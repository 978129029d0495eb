#include <tests/tools/kitbag/tool.h>

namespace {

using namespace kitbag::test;
using namespace std::string_literals;
using testing::HasSubstr;
using testing::StartsWith;

/// Where Windows keeps what a user's programs write into places that they may not write.
constexpr char kRedirected[] =
    "Software\\Classes\\VirtualStore\\MACHINE\\SOFTWARE\\Tarnwick\\Vidmoor";

constexpr char kPageFactory[] = "CLSID\\{e58c6519-2f38-4027-9def-5e6d4033f561}";
constexpr char kGraphicFactory[] = "CLSID\\{8e7363f8-e76b-4d87-943b-5d58b6957360}";

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
    const DWORD time = 0x6955b900;
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, "Software\\Tarnwick\\Vidmoor\\Version", "Player",
                      REG_DWORD, &time, sizeof time);
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, "Software\\Tarnwick\\Vidmoor\\RunOnce", "", REG_SZ, "",
                      1);
    ::RegSetKeyValueA(HKEY_CURRENT_USER, kRedirected, "", REG_SZ, "", 1);

    const Ending report = Kitbag({L"report"});
    ::RegDeleteTreeA(HKEY_CURRENT_USER, kRedirected);
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
             "\n    first run             not completed\n",
             "\n    user interface level  1 of 0 (everything) to 3 (the least), stored as dword 1 "
             "(0x1)\n",
             "\n    idle for              ",
             "\n    Guide is off\n    Scan is on, room for 500 samples\n",
             "\n    graphic factory  not registered\n",
             "\n    ! programs of this user that may not write the settings below read\n      "
             "HKEY_CURRENT_"
             "USER\\Software\\Classes\\VirtualStore\\MACHINE\\SOFTWARE\\Tarnwick\\Vidmoor "
             "first\n",
             "\n        Screen\n            User experience level  dword   1 (0x1)\n",
         })
        EXPECT_THAT(report.output, HasSubstr(line));
}

TEST_F(Report, TellsWhereDirectoriesComeFromAndTouchesNothing) {
    for (const char* folder : {"app\\Data", "app\\bin", "skins"})
        create_directories(folder_ / folder);
    Write("file", "");
    const std::string base = folder_.Path().string() + '\\';
    const std::string forgotten = "file is no folder and will be forgotten";
    const struct {
        const char* about;
        std::map<const wchar_t*, const char*> remembered;
        std::string lines;
    } rows[] = {
        {"nothing is remembered",
         {},
         "    Config  none (the next program that needs it asks the user)\n"
         "    Skin    none (that of the configuration)\n"
         "    Data    " +
             base +
             "app\\Data\\ (found upward from the programs)\n"
             "    Docs    none (the next program that needs it asks the user)\n"},
        {"folders are remembered",
         {{L"Config", "skins"}, {L"Data", "app"}, {L"Docs", "app\\bin"}},
         "    Config  " + base +
             "skins\\ (remembered)\n"
             "    Skin    " +
             base +
             "skins\\ (that of the configuration)\n"
             "    Data    " +
             base +
             "app\\ (remembered)\n"
             "    Docs    " +
             base + "app\\bin\\ (remembered)\n"},
        {"a file is remembered",
         {{L"Config", "file"}, {L"Skin", "skins"}, {L"Data", "file"}, {L"Docs", "file"}},
         "    Config  none (remembered " + base + forgotten +
             "; the next program that needs it asks the user)\n"
             "    Skin    " +
             base +
             "skins\\ (remembered)\n"
             "    Data    " +
             base + "app\\Data\\ (found upward from the programs; remembered " + base + forgotten +
             ")\n"
             "    Docs    none (remembered " +
             base + forgotten + "; the next program that needs it asks the user)\n"},
        {"a missing folder is remembered",
         {{L"Skin", "missing"}, {L"Data", "missing"}},
         "    Config  none (the next program that needs it asks the user)\n"
         "    Skin    none (remembered " +
             base +
             "missing is no folder and will be forgotten; that of the configuration)\n"
             "    Data    none (remembered " +
             base + "missing is missing; the next program creates it)\n"},
    };
    for (const auto& [about, remembered, lines] : rows) {
        ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kRoot);
        for (const auto& [kind, path] : remembered)
            RawKey("Directories").Set((kind + L" Directory"s).c_str(), In(path));
        const Snapshot before = SnapshotOf();
        const auto files = Files();
        EXPECT_THAT(Of(In("app\\bin")).output, HasSubstr(lines)) << about;
        EXPECT_EQ(before, SnapshotOf()) << about;
        EXPECT_EQ(files, Files()) << about;
    }
}

TEST_F(Report, FollowsTheLinkThatTheLibraryFollows) {
    const Com com;
    const TextFolder<char> folder;
    folder.Write("app\\bin\\x");
    folder.Write("elsewhere\\x");
    folder.WriteLink("app\\ConfigConfig.lnk", folder.In("elsewhere"));
    folder.WriteLink("app\\Docs.lnk", folder.In("elsewhere"));
    // The short form is not every system's.
    char elsewhere[MAX_PATH];
    ::GetShortPathNameA(folder.In("elsewhere").c_str(), elsewhere, MAX_PATH);
    const std::string origin =
        "\\ (found upward, by the link " + folder.In("app\\ConfigConfig.lnk") + ")\n";
    const std::string report = Of((folder / "app\\bin").wstring()).output;
    EXPECT_THAT(report, testing::AnyOf(HasSubstr("Config  " + folder.In("elsewhere") + origin),
                                       HasSubstr("Config  " + std::string(elsewhere) + origin)));
    EXPECT_THAT(report, HasSubstr("Docs    none ("));
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

TEST_F(Report, TellsOfClassesWhoseServerIsMissingOrAnother) {
    const auto store = [](const std::string& key, const std::string& server) {
        ::RegSetKeyValueA(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_EXPAND_SZ, server.c_str(),
                          static_cast<DWORD>(server.size() + 1));
    };
    store(kPageFactory + "\\InprocServer32"s, "%SystemRoot%\\explorer.exe");
    store(kGraphicFactory + "\\LocalServer32"s, "\"C:\\No folder\\graphics.exe\" /automation");
    const std::string report = Kitbag({L"report"}).output;
    ::RegDeleteTreeA(HKEY_CLASSES_ROOT, kPageFactory);
    ::RegDeleteTreeA(HKEY_CLASSES_ROOT, kGraphicFactory);
    EXPECT_THAT(report, HasSubstr("\n    page factory     C:\\windows\\explorer.exe\n"
                                  "                     ! another library than "));
    EXPECT_THAT(report,
                HasSubstr("\n    graphic factory  C:\\No folder\\graphics.exe ! the file is "
                          "missing\n"));
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
