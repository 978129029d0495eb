#include <tests/tools/kitbag/tool.h>

namespace {

using namespace kitbag::test;
using testing::HasSubstr;

/// kitbag crc, modules, unc and local.
struct FileCommands : ToolTest {};

TEST_F(FileCommands, CrcShowsWhatItCanAndSaysWhatItCannot) {
    folder_.Write("b.bin", "123456789");
    folder_.Write("a.bin", "");
    folder_.Write("c.bin", std::string(100'000, 'x'));
    std::ofstream held(folder_ / "b.bin", std::ios::app);
    const Ending ending = Kitbag(L"crc missing *.bin *.none");
    EXPECT_EQ(
        "00000000  0  a.bin\n"
        "cbf43926  9  b.bin\n"
        "fe071171  100000  c.bin\n",
        ending.output);
    EXPECT_THAT(ending.errors, HasSubstr("kitbag: missing: "));
    EXPECT_THAT(ending.errors, HasSubstr("kitbag: *.none: "));
    EXPECT_EQ(1u, ending.code);
    EXPECT_EQ(0u, Kitbag(L"crc a.bin").code);
}

TEST_F(FileCommands, ModulesShowsVersionsAndLinkTimes) {
    std::filesystem::copy_file(BuiltFolder() + L"Kitbag.dll", In("Kitbag.DLL"));
    // The link time: the first of January 2026.
    std::string program(0x100, '\0');
    program.replace(0, 2, "MZ");
    program[0x3c] = '\x40';
    program.replace(0x40, 4, std::string("PE\0\0", 4));
    program.replace(0x48, 4, std::string("\0\xb9\x55\x69", 4));
    folder_.Write("program.exe", program);
    folder_.Write("text.exe", "This is text.");
    folder_.Write("control.ocx", "MZ");
    folder_.Write("readme.txt", "This is text.");
    const Ending ending = Kitbag(L"modules .");
    EXPECT_THAT(ending.output,
                testing::MatchesRegex(
                    "file         product  version  linked                   description\n"
                    "control.ocx                    no module\n"
                    "Kitbag.DLL   1.0.0.0  1.0.0.0  20..-..-.. ..:..:.. UTC  Shared .*\n"
                    "program.exe                    2026-01-01 00:00:00 UTC\n"
                    "text.exe                       no module\n"));
    EXPECT_EQ(0u, ending.code);
    EXPECT_EQ(1u, Kitbag(L"modules missing").code);
    create_directory(folder_ / "empty");
    EXPECT_EQ(1u, Kitbag(L"modules empty").code);
}

/// The tool, under a name of its own, in a folder where it finds another computer's network
/// library.
struct NameTranslation : ToolTest {
    NameTranslation() {
        for (const wchar_t* file :
             {L"Kitbag.dll", L"libstdc++-6.dll", L"libgcc_s_dw2-1.dll", L"libwinpthread-1.dll"})
            std::filesystem::copy_file(BuiltFolder() + file, folder_.Path() / file);
        std::filesystem::copy_file(BuiltFolder() + L"kitbag.exe", In("kitbag_elsewhere.exe"));
        std::filesystem::copy_file(BuiltFolder() + L"tool_stand_ins\\netapi32.dll",
                                   In("netapi32.dll"));
        ::RegSetKeyValueW(HKEY_CURRENT_USER, kOverrides, L"netapi32", REG_SZ, L"native", 14);
    }
    ~NameTranslation() override { ::RegDeleteTreeW(HKEY_CURRENT_USER, kProgram); }

    Ending Kitbag(const std::wstring& arguments) const {
        return Run(In("kitbag_elsewhere.exe") + L' ' + arguments);
    }

    /// Where Wine is told to take the library from the program's folder.
    static constexpr wchar_t kProgram[] = L"Software\\Wine\\AppDefaults\\kitbag_elsewhere.exe";
    static constexpr wchar_t kOverrides[] =
        L"Software\\Wine\\AppDefaults\\kitbag_elsewhere.exe\\DllOverrides";
};

TEST_F(NameTranslation, GoesBothWaysAndSaysWhyItDoesNot) {
    const struct {
        const wchar_t* command;
        DWORD code;
        const char *output, *errors;
    } rows[] = {
        {L"unc c:\\media\\Clip.mpg", 0, "\\\\PC\\Media\\Clip.mpg\n", ""},
        {L"unc D:\\Films", 0, "\\\\PC\\Disk\\Films\n", ""},
        {L"unc C:\\Other", 1, "",
         "kitbag: C:\\Other: none of this computer's shares serves; they are Media (C:\\Media) "
         "Disk (D:\\)\n"},
        {L"local \\\\pc\\Media\\Clip.mpg", 0, "C:\\Media\\Clip.mpg\n", ""},
        {L"local C:\\Media", 2, "", "kitbag: C:\\Media is no network name: it begins with \\\\\n"},
    };
    for (const auto& [command, code, output, errors] : rows) {
        SCOPED_TRACE(testing::PrintToString(command));
        const Ending ending = Kitbag(command);
        EXPECT_EQ(output, ending.output);
        EXPECT_EQ(errors, ending.errors);
        EXPECT_EQ(code, ending.code);
    }
    EXPECT_THAT(Kitbag(L"local \\\\elsewhere\\Media").errors,
                HasSubstr("\\\\elsewhere\\Media is not on this computer, "));
    EXPECT_THAT(Kitbag(L"report").output,
                HasSubstr("\nDisk shares\n    Media is C:\\Media\n    Disk is D:\\\n"));
}

}  // namespace
