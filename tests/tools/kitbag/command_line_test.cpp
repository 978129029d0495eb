#include <tests/tools/kitbag/tool.h>

namespace {

using namespace kitbag::test;
using testing::HasSubstr;
using testing::StartsWith;

struct CommandLine : ToolTest {};

TEST_F(CommandLine, OffersHelpOnEveryLevel) {
    const Ending help = Kitbag({L"--help"});
    EXPECT_EQ(0u, help.code);
    for (const std::string command :
         {"list", "get", "set", "delete", "export", "import", "compare", "reset", "watch", "report",
          "page", "modules", "crc", "unc", "local"}) {
        SCOPED_TRACE(command);
        EXPECT_THAT(help.output, HasSubstr("\n  " + command + ' '));
        const Ending more = Kitbag({{command.begin(), command.end()}, L"--help"});
        EXPECT_EQ(0u, more.code);
        EXPECT_THAT(more.output, StartsWith("  kitbag " + command + ' '));
    }
    const Ending nothing = Kitbag({});
    EXPECT_EQ(2u, nothing.code);
    EXPECT_EQ(help.output, nothing.output);
}

TEST_F(CommandLine, RefusesWhatItDoesNotUnderstandAndDoesNothing) {
    const struct {
        std::vector<std::wstring> words;
        const char* message;
    } rows[] = {
        {{L"frobnicate"}, "kitbag: unknown command \"frobnicate\"; see kitbag --help\n"},
        {{L"set", L"A", L"n", L"dword"}, "kitbag: something is missing; see kitbag set --help\n"},
        {{L"set", L"A", L"n", L"dword", L"1", L"2"},
         "kitbag: one word too many: \"2\"; see kitbag set --help\n"},
        {{L"set", L"A", L"n", L"dword", L"1", L"--force"},
         "kitbag: unknown option --force; see kitbag set --help\n"},
        {{L"list", L"-tree"}, "kitbag: unknown option -tree; see kitbag list --help\n"},
        {{L"report", L"--folder"},
         "kitbag: nothing stands behind --folder; see kitbag report --help\n"},
        {{L"set", L"A\\\\B", L"n", L"dword", L"1"},
         "kitbag: \"A\\\\B\" is no section: a step has no name\n"},
    };
    for (const auto& [words, message] : rows) {
        const Ending ending = Kitbag(words);
        EXPECT_EQ(message, ending.errors);
        EXPECT_EQ(2u, ending.code) << message;
        EXPECT_EQ("", ending.output) << message;
    }
    EXPECT_FALSE(RawKey::Exists());
}

TEST_F(CommandLine, TakesWordsBehindTwoDashesAsTheyAre) {
    EXPECT_EQ(0u, Kitbag({L"set", L"--", L"--A", L"-n", L"string", L"--help"}).code);
    EXPECT_EQ(L"--help", RawKey("--A").TextOf(L"-n"));
}

TEST_F(CommandLine, MeansTheSameSectionByItsFullName) {
    RawKey("Audio").Set(L"Volume", 7);
    for (const wchar_t* section :
         {L"audio", L"\\Audio\\",
          L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarnwick\\Vidmoor\\Configuration\\Audio",
          L"HKEY_LOCAL_MACHINE\\Software\\Wow6432Node\\Tarnwick\\Vidmoor\\Configuration\\Audio"})
        EXPECT_EQ("dword 7 (0x7)\n", Kitbag({L"get", section, L"VOLUME"}).output)
            << testing::PrintToString(section);
}

/// What a console of the test's own shows when the tool has run on it.
std::wstring OnAConsole(const std::wstring& arguments) {
    ::FreeConsole();
    EXPECT_TRUE(::AllocConsole());
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE screen =
        ::CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                      &inherited, OPEN_EXISTING, 0, nullptr);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = start.hStdError = screen;
    PROCESS_INFORMATION process{};
    std::wstring command = L'"' + BuiltFolder() + L"kitbag.exe\" " + arguments;
    EXPECT_TRUE(::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                 nullptr, &start, &process));
    ::WaitForSingleObject(process.hProcess, INFINITE);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    wchar_t text[400] = L"";
    DWORD length = 0;
    ::ReadConsoleOutputCharacterW(screen, text, 400, {}, &length);
    ::CloseHandle(screen);
    ::FreeConsole();
    return {text, length};
}

TEST_F(CommandLine, ShowsTextOfAnyScriptOnAConsole) {
    RawKey("Audio").Set(L"Language", L"日本語, Ελληνικά");
    EXPECT_THAT(OnAConsole(L"get Audio Language"),
                testing::StartsWith(L"string \"日本語, Ελληνικά\""));
}

}  // namespace
