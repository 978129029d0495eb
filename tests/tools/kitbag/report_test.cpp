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
    Report() : base_(folder_.Path().string() + '\\') {}
    std::string Of(const std::string& folder) const {
        return Kitbag({L"report", L"--folder", In(folder)}).output;
    }
    std::set<std::filesystem::path> Files() const {
        const std::filesystem::recursive_directory_iterator all(folder_.Path());
        return {begin(all), end(all)};
    }
    const std::string base_;
};

TEST_F(Report, TellsWhatATicketNeedsInAFileAsUtf8) {
    RawKey("Screen").Set(L"User experience level", 1);
    RawKey("Screen").Set(L"Gerät", L"x");
    RawKey("Debug\\Performance").Set(L"Scan Enable", 1);
    RawKey("Debug\\Performance").Set(L"Scan Size", 500);
    RawKey("Debug\\Performance").Set(L"Guide Enable", 0ul);
    const DWORD time = 0x6955b900;
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, "Software\\Tarnwick\\Vidmoor\\Version", "Player",
                      REG_DWORD, &time, sizeof time);
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, "Software\\Tarnwick\\Vidmoor\\RunOnce", "", REG_SZ, "",
                      1);
    ::RegSetKeyValueA(HKEY_CURRENT_USER, kRedirected, "", REG_SZ, "", 1);

    EXPECT_EQ(0u, Kitbag({L"report", In("report.txt")}).code);
    ::RegDeleteTreeA(HKEY_CURRENT_USER, kRedirected);
    const std::string report = ContentOf(In("report.txt"));
    EXPECT_THAT(report, StartsWith("\xef\xbb\xbfKitbag report of 20"));
    for (const char* line : {
             "\n    kitbag.exe ",
             "\n    Kitbag.dll ",
             "\n    Player                    2026-01-01 00:00:00 UTC\r\n",
             "\n    Windows               6.1, build 7601",
             "\n    processor             CPUID '",
             "Mhz\r\n",
             "\n    interactive           yes\r\n",
             "\n    first run             not completed\r\n",
             "\n    user interface level  1 of 0 (everything) to 3 (the least), stored as dword 1 "
             "(0x1)\r\n",
             "\n    idle for              ",
             "\n    Guide is off\r\n    Scan is on, room for 500 samples\r\n",
             "\n    page factory     not registered\r\n    type library     not registered\r\n"
             "    graphic factory  not registered\r\n",
             "\n    ! programs of this user that may not write the settings below read\r\n      "
             "HKEY_CURRENT_"
             "USER\\Software\\Classes\\VirtualStore\\MACHINE\\SOFTWARE\\Tarnwick\\Vidmoor "
             "first\r\n",
             "\n        Screen\r\n            Ger\xc3\xa4t                  string  \"x\"\r\n",
         })
        EXPECT_THAT(report, HasSubstr(line));
}

TEST_F(Report, TellsWhereDirectoriesComeFromAndTouchesNothing) {
    for (const char* folder : {"app\\Data", "app\\bin", "skins"})
        create_directories(folder_ / folder);
    folder_.Write("file", "");
    const std::string forgotten = " is no folder and will be forgotten";
    const std::string asks = "the next program that needs it asks the user)";
    const struct {
        const char* about;
        std::map<const wchar_t*, const char*> remembered;
        std::string config, skin, data, docs;
    } rows[] = {
        {"Data alone is remembered",
         {{L"Data", "app"}},
         "none (" + asks,
         "none (that of the configuration)",
         base_ + "app\\ (remembered)",
         "none (" + asks},
        {"folders are remembered, but for Data a file",
         {{L"Config", "skins"}, {L"Data", "file"}, {L"Docs", "app\\bin"}},
         base_ + "skins\\ (remembered)",
         base_ + "skins\\ (that of the configuration)",
         base_ + "app\\Data\\ (found upward from the programs; remembered " + base_ + "file" +
             forgotten + ')',
         base_ + "app\\bin\\ (remembered)"},
        {"files and missing folders are remembered",
         {{L"Config", "file"}, {L"Skin", "missing"}, {L"Data", "missing"}, {L"Docs", "file"}},
         "none (remembered " + base_ + "file" + forgotten + "; " + asks,
         "none (remembered " + base_ + "missing" + forgotten + "; that of the configuration)",
         "none (remembered " + base_ + "missing is missing; the next program creates it)",
         "none (remembered " + base_ + "file" + forgotten + "; " + asks},
    };
    for (const auto& [about, remembered, config, skin, data, docs] : rows) {
        SCOPED_TRACE(about);
        ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kRoot);
        for (const auto& [kind, path] : remembered)
            RawKey("Directories").Set((kind + L" Directory"s).c_str(), In(path));
        const Snapshot before = TakeSnapshot();
        const auto files = Files();
        EXPECT_THAT(Of("app\\bin"),
                    HasSubstr("\n    Config  " + config + "\n    Skin    " + skin +
                              "\n    Data    " + data + "\n    Docs    " + docs + '\n'));
        EXPECT_EQ(before, TakeSnapshot());
        EXPECT_EQ(files, Files());
    }
}

TEST_F(Report, FollowsTheLinkThatTheLibraryFollows) {
    const Com com;
    folder_.Write("app\\bin\\x");
    folder_.Write("elsewhere\\x");
    folder_.WriteLink("app\\ConfigConfig.lnk", base_ + "elsewhere");
    folder_.WriteLink("app\\Docs.lnk", base_ + "elsewhere");
    // The short form is not every system's.
    char elsewhere[MAX_PATH];
    ::GetShortPathNameA((base_ + "elsewhere").c_str(), elsewhere, MAX_PATH);
    const std::string origin =
        "\\ (found upward, by the link " + base_ + "app\\ConfigConfig.lnk)\n";
    const std::string report = Of("app\\bin");
    EXPECT_THAT(report, testing::AnyOf(HasSubstr("Config  " + base_ + "elsewhere" + origin),
                                       HasSubstr("Config  " + std::string(elsewhere) + origin)));
    EXPECT_THAT(report, HasSubstr("Docs    none ("));
}

TEST_F(Report, TellsHowThePageFactoryIsRegistered) {
    const std::wstring library = BuiltFolder() + L"Kitbag.dll";
    const std::string path = std::filesystem::path(library).string();
    ASSERT_EQ(0u, RunProgram(L"C:\\windows\\system32\\regsvr32.exe", {L"/s", library}).code);
    EXPECT_THAT(Kitbag({L"report"}).output, HasSubstr("    page factory     " + path +
                                                      "\n    type library     " + path + "\n"));
    ASSERT_EQ(0u, RunProgram(L"C:\\windows\\system32\\regsvr32.exe", {L"/s", L"/u", library}).code);
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
    for (const char* file :
         {"skin\\Main.page", "skin\\banner.gif", "skin\\tv.PNG", "skin\\notes.txt"})
        folder_.Write(file);
    RawKey("Directories").Set(L"Skin Directory", In("skin"));
    const Ending page = Kitbag({L"page", L"Main.page", L"--folder", folder_.Path().wstring()});
    EXPECT_EQ(
        "settings                no other file; the page's own name is taken\n"
        "script                  " +
            base_ +
            "skin\\Main.page\n"
            "skin directory          " +
            base_ +
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
    EXPECT_THAT(other.output, HasSubstr(base_ + "skin\\Other.page ! missing\n"));
    EXPECT_EQ(1u, other.code);
}

}  // namespace
