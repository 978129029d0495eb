#include <tests/tools/kitbag/tool.h>

namespace {

using namespace kitbag::test;
using namespace std::string_literals;
using testing::HasSubstr;
using testing::StartsWith;

struct CommandLine : ToolTest {};

TEST_F(CommandLine, OffersHelpOnEveryLevel) {
    const Ending help = Kitbag(L"--help");
    EXPECT_EQ(0u, help.code);
    for (const std::string command :
         {"list", "get", "set", "delete", "export", "import", "compare", "reset", "watch", "report",
          "page", "modules", "crc", "unc", "local"})
        EXPECT_THAT(help.output, HasSubstr("\n  " + command + ' '));
    const Ending more = Kitbag(L"compare --help");
    EXPECT_EQ(0u, more.code);
    EXPECT_THAT(more.output, StartsWith("  kitbag compare FILE.reg\n\nShows what differs "));
    const Ending nothing = Kitbag(L"");
    EXPECT_EQ(2u, nothing.code);
    EXPECT_EQ(help.output, nothing.output);
}

TEST_F(CommandLine, RefusesWhatItDoesNotUnderstandAndDoesNothing) {
    const struct {
        std::wstring command;
        std::string message;
    } rows[] = {
        {L"frobnicate", "unknown command \"frobnicate\"; see kitbag --help\n"},
        {L"set A n dword", "something is missing; see kitbag set --help\n"},
        {L"set A n dword 1 2", "one word too many: \"2\"; see kitbag set --help\n"},
        {L"list -tree", "unknown option -tree; see kitbag list --help\n"},
        {L"report --folder", "nothing stands behind --folder; see kitbag report --help\n"},
        {L"set A\\\\B n dword 1", "\"A\\\\B\" is no section: a step has no name\n"},
    };
    for (const auto& [command, message] : rows) {
        const Ending ending = Kitbag(command);
        EXPECT_EQ("kitbag: " + message, ending.errors);
        EXPECT_EQ(2u, ending.code) << message;
        EXPECT_EQ("", ending.output) << message;
    }
    EXPECT_FALSE(RawKey::Exists());
}

TEST_F(CommandLine, TakesWordsBehindTwoDashesAsTheyAre) {
    EXPECT_EQ(0u, Kitbag(L"set -- --A -n string --help").code);
    EXPECT_EQ(L"--help", RawKey("--A").TextOf(L"-n"));
}

TEST_F(CommandLine, MeansTheSameSectionByItsFullName) {
    RawKey("Audio").Set(L"Volume", 7);
    for (const wchar_t* section :
         {L"audio", L"\\Audio\\",
          L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarnwick\\Vidmoor\\Configuration\\Audio",
          L"HKEY_LOCAL_MACHINE\\Software\\Wow6432Node\\Tarnwick\\Vidmoor\\Configuration\\Audio"})
        EXPECT_EQ("dword 7 (0x7)\n", Kitbag(L"get "s + section + L" VOLUME").output)
            << testing::PrintToString(section);
}

TEST_F(CommandLine, ShowsTextOfAnyScriptOnAConsole) {
    RawKey("Audio").Set(L"Language", L"日本語, Ελληνικά");
    ::FreeConsole();
    ASSERT_TRUE(::AllocConsole());
    Running(KitbagCommand(L"get Audio Language"), Folder(), L"CONOUT$").Wait();
    HANDLE screen = ::CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, 0, nullptr);
    std::wstring text(100, L'\0');
    DWORD length = 0;
    ::ReadConsoleOutputCharacterW(screen, text.data(), 100, {}, &length);
    ::CloseHandle(screen);
    ::FreeConsole();
    EXPECT_THAT(text, StartsWith(L"string \"日本語, Ελληνικά\""));
}

}  // namespace
