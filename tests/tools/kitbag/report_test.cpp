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

/// kitbag report and page; "~\" stands for the test's folder.
struct Report : ToolTest {
    std::string Shown(const std::wstring& command) const {
        const std::string folder = Folder().string() + '\\';
        std::string text = Kitbag(command).output;
        for (std::size_t at = 0; (at = text.find(folder)) != std::string::npos;)
            text.replace(at, folder.size(), "~\\");
        return text;
    }
    std::set<std::filesystem::path> Files() const {
        const std::filesystem::recursive_directory_iterator all(Folder());
        return {begin(all), end(all)};
    }
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

    EXPECT_EQ(0u, Kitbag(L"report report.txt").code);
    ::RegDeleteTreeA(HKEY_CURRENT_USER, kRedirected);
    const std::string report = ContentOf("report.txt");
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
    const struct {
        const char* about;
        std::map<const wchar_t*, const char*> remembered;
        const char* lines;
    } rows[] = {
        {"Data alone is remembered",
         {{L"Data", "app"}},
         "    Config  none (the next program that needs it asks the user)\n"
         "    Skin    none (that of the configuration)\n"
         "    Data    ~\\app\\ (remembered)\n"
         "    Docs    none (the next program that needs it asks the user)\n"},
        {"folders are remembered, but for Data a file",
         {{L"Config", "skins"}, {L"Data", "file"}, {L"Docs", "app\\bin"}},
         "    Config  ~\\skins\\ (remembered)\n"
         "    Skin    ~\\skins\\ (that of the configuration)\n"
         "    Data    ~\\app\\Data\\ (found upward from the programs; remembered ~\\file is no "
         "folder and will be forgotten)\n"
         "    Docs    ~\\app\\bin\\ (remembered)\n"},
        {"files and missing folders are remembered",
         {{L"Config", "file"}, {L"Skin", "missing"}, {L"Data", "missing"}},
         "    Config  none (remembered ~\\file is no folder and will be forgotten; the next "
         "program that needs it asks the user)\n"
         "    Skin    none (remembered ~\\missing is no folder and will be forgotten; that of the "
         "configuration)\n"
         "    Data    none (remembered ~\\missing is missing; the next program creates it)\n"},
    };
    for (const auto& [about, remembered, lines] : rows) {
        SCOPED_TRACE(about);
        ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kRoot);
        for (const auto& [kind, path] : remembered)
            RawKey("Directories").Set((kind + L" Directory"s).c_str(), In(path));
        const Snapshot before = TakeSnapshot();
        const auto files = Files();
        EXPECT_THAT(Shown(L"report --folder app\\bin"), HasSubstr(lines));
        EXPECT_EQ(before, TakeSnapshot());
        EXPECT_EQ(files, Files());
    }
}

TEST_F(Report, FollowsTheLinkThatTheLibraryFollows) {
    const Com com;
    folder_.Write("app\\x");
    folder_.Write("new\\x");
    folder_.WriteLink("ConfigConfig.lnk", (folder_ / "new").string());
    folder_.WriteLink("Docs.lnk", (folder_ / "new").string());
    const std::string report = Shown(L"report --folder app");
    EXPECT_THAT(report, HasSubstr("new\\ (found upward, by the link ~\\ConfigConfig.lnk)\n"));
    EXPECT_THAT(report, HasSubstr("Docs    none ("));
}

TEST_F(Report, TellsHowThePageFactoryIsRegistered) {
    const std::wstring library = BuiltFolder() + L"Kitbag.dll";
    const std::string path = std::filesystem::path(library).string();
    ASSERT_EQ(0u, Run(L"regsvr32 /s \"" + library + L'"').code);
    EXPECT_THAT(Kitbag(L"report").output, HasSubstr("    page factory     " + path +
                                                    "\n    type library     " + path + "\n"));
    ASSERT_EQ(0u, Run(L"regsvr32 /s /u \"" + library + L'"').code);
}

TEST_F(Report, TellsOfClassesWhoseServerIsMissingOrAnother) {
    const auto store = [](const std::string& key, const std::string& server) {
        ::RegSetKeyValueA(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_EXPAND_SZ, server.c_str(),
                          static_cast<DWORD>(server.size() + 1));
    };
    store(kPageFactory + "\\InprocServer32"s, "%SystemRoot%\\explorer.exe");
    store(kGraphicFactory + "\\LocalServer32"s, "\"C:\\No folder\\graphics.exe\" /automation");
    const std::string report = Kitbag(L"report").output;
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
    EXPECT_EQ(
        "settings                no other file; the page's own name is taken\n"
        "script                  ~\\skin\\Main.page\n"
        "skin directory          ~\\skin\\ (remembered)\n"
        "language directory      none, Lingrel.dll is not there\n"
        "sub-language directory  none\n"
        "images\n"
        "  banner.gif            skin directory\n"
        "  tv.PNG                skin directory\n",
        Shown(L"page Main.page --folder ."));
    EXPECT_EQ(0u, Kitbag(L"page Main.page").code);

    RawKey("Skins").Set(L"Main.page", L"Other.page");
    const std::string other = Shown(L"page Main.page");
    EXPECT_THAT(other, HasSubstr("value \"Main.page\": string \"Other.page\"\n"));
    EXPECT_THAT(other, HasSubstr("~\\skin\\Other.page ! missing\n"));
    EXPECT_EQ(1u, Kitbag(L"page Main.page").code);
}

}  // namespace
