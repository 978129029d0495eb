#include <gmock/gmock.h>
#include <kitbag/system/module_tracking.h>
#include <kitbag/system/module_version.h>
#include <oleauto.h>
#include <tests/support/import_patch.h>
#include <tests/support/text_folder.h>

#include <cstring>
#include <utility>

namespace {

TEST(ModuleVersion, IsReadFromTheResource) {
    DWORD version[] = {77, 77, 77};
    auto& [major, minor, build] = version;
    // The compiler's runtime has no version resource.
    for (const char* file : {"libstdc++-6.dll", "no such file", static_cast<const char*>(nullptr)})
        EXPECT_FALSE(KB_GetModuleVersionA(file, &major, &minor, &build));
    const auto noModule = reinterpret_cast<HMODULE>(31);
    EXPECT_FALSE(KB_GetMemModuleVersion(noModule, &major, &minor, &build));
    EXPECT_FALSE(KB_GetMemModuleVersion(nullptr, &major, nullptr, &build));
    EXPECT_THAT(version, testing::Each(77));
    EXPECT_TRUE(KB_GetMemModuleVersion(nullptr, &major, &minor, &build));
    EXPECT_THAT(version, testing::ElementsAre(3, 4, 0x50006));
    EXPECT_TRUE(KB_GetModuleVersionW(L"Kitbag.dll", &major, &minor, nullptr));
    EXPECT_THAT(version, testing::ElementsAre(1, 0, 0x50006));

    CModuleVersion library("Kitbag.dll"), withoutTranslation("kitbag_system_tests.exe");
    EXPECT_EQ(nullptr, library.GetStringValue("CompanyName"));
    EXPECT_TRUE(library.Read() && withoutTranslation.Read());
    EXPECT_STREQ("Tarnwick", library.GetStringValue("CompanyName"));
    EXPECT_STREQ("Western", withoutTranslation.GetStringValue("CompanyName"));
}

BOOL WINAPI ComputerName(char* name, DWORD* size) {
    ::lstrcpyA(name, "PC");
    return std::exchange(*size, 2) == 260;
}

TEST(ModuleVersion, FillsTheModulesRecord) {
    const kitbag::test::ImportPatch patch("GetComputerNameA", ComputerName);
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    const char blocks[] = "fifteen letters\0letters fifteen";
    ModuleInfo info{};
    EXPECT_FALSE(KB_FillModuleInfo(&info, nullptr, "Name", blocks, blocks + 16));
    info.size = 56;
    EXPECT_TRUE(KB_FillModuleInfo(&info, nullptr, "N\xe4me", blocks, blocks + 16));
    EXPECT_STREQ(L"N\xe4me", info.moduleName);
    EXPECT_STREQ(L"PC", info.computerName);
    EXPECT_STREQ(path, info.filePath);
    EXPECT_EQ(0x30004u, info.productVersionMS);
    EXPECT_EQ(0x50006u, info.productVersionLS);
    EXPECT_EQ(0, std::memcmp(blocks, info.firstBlock, sizeof blocks));
    for (BSTR text : {info.moduleName, info.computerName, info.filePath}) ::SysFreeString(text);
}

constexpr char kVersionKey[] = "Software\\Tarnwick\\Vidmoor\\Version";

/// The link time that the library takes from the file, which is then what is stored.
DWORD TimeOf(const char* file) {
    KB_ForceNewModule(nullptr, "Test");
    DWORD stored = 77, current = 77, size = sizeof stored;
    EXPECT_FALSE(KB_GetStoredLinkTime(file, "Test", &stored, &current, true));
    ::RegGetValueA(HKEY_LOCAL_MACHINE, kVersionKey, "Test", RRF_RT_REG_DWORD, nullptr, &stored,
                   &size);
    EXPECT_EQ(current, stored);
    return current;
}

TEST(ModuleTracking, TakesTheTimeFromTheModulesHeader) {
    const kitbag::test::TextFolder<char> folder;
    const auto timeIn = [&](const std::string& content) {
        folder.Write("module", content);
        return TimeOf(folder.In("module").c_str());
    };
    // The offset of the second signature lies at 60.
    const std::string header =
        "MZ" + std::string(58, '\0') + std::string("\x40\0\0\0PE\0\0....\4\3\2\1", 16);
    EXPECT_EQ(0x01020304u, timeIn(header));
    for (std::size_t length = 0; length < header.size(); ++length)
        EXPECT_EQ(0u, timeIn(header.substr(0, length))) << length;
    for (const std::size_t damaged : {0u, 1u, 60u, 63u, 64u, 65u, 66u, 67u}) {
        std::string other = header;
        other[damaged] ^= '\x80';
        EXPECT_EQ(0u, timeIn(other)) << damaged;
    }
}

TEST(ModuleTracking, SeesModulesThatWereLinkedSince) {
    const char* const file = _pgmptr;  // this program
    const auto* image = reinterpret_cast<const BYTE*>(::GetModuleHandleA(nullptr));
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* header = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos->e_lfanew);
    const DWORD linked = TimeOf(file);
    EXPECT_EQ(header->FileHeader.TimeDateStamp, linked);
    for (const DWORD time : {linked - 1, linked, linked + 1}) {
        ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, kVersionKey, "Test", REG_BINARY, &time, sizeof time);
        EXPECT_EQ(time < linked, KB_IsNewModule(file, "Test"));
        EXPECT_FALSE(KB_IsNewModule(file, "Test")) << "stored";
    }
    EXPECT_FALSE(KB_IsNewerModule(file, "Test", linked));
    EXPECT_TRUE(KB_IsNewerModule(file, "Test", linked + 1));
    EXPECT_TRUE(KB_ForceNewModule(nullptr, "Test") && KB_IsNewModule(file, "Test"));
    EXPECT_TRUE(KB_ForceNewModule(nullptr, "Test") && !KB_ForceNewModule(nullptr, "Test"));
    EXPECT_TRUE(KB_IsNewerModule(file, "Test", 0));
    EXPECT_FALSE(KB_IsFirstRun());
    ::RegSetValueA(HKEY_LOCAL_MACHINE, "Software\\Tarnwick\\Vidmoor\\RunOnce", REG_SZ, "", 0);
    EXPECT_TRUE(KB_IsFirstRun());
}

}  // namespace
