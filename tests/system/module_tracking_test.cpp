#include <gtest/gtest.h>
#include <kitbag/system/module_tracking.h>
#include <tests/support/leak_check.h>
#include <tests/support/temporary_folder.h>

#include <fstream>

namespace {

constexpr char kVersion[] = "Software\\Tarnwick\\Vidmoor\\Version";

/// What is stored under "Test"; 0 where it is no number.
DWORD Stored() {
    DWORD value = 0, size = sizeof value;
    ::RegGetValueA(HKEY_LOCAL_MACHINE, kVersion, "Test", RRF_RT_REG_DWORD, nullptr, &value, &size);
    return value;
}

void Store(DWORD value) {
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, kVersion, "Test", REG_BINARY, &value, sizeof value);
}

TEST(ModuleTracking, SeesModulesThatWereLinkedSince) {
    char library[MAX_PATH];
    const auto* base = reinterpret_cast<const BYTE*>(::GetModuleHandleA("Kitbag.dll"));
    ::GetModuleFileNameA(::GetModuleHandleA("Kitbag.dll"), library, MAX_PATH);
    const auto* header = base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew;
    const DWORD linked =
        reinterpret_cast<const IMAGE_NT_HEADERS*>(header)->FileHeader.TimeDateStamp;

    DWORD stored = 77, current = 77;
    EXPECT_FALSE(KB_GetStoredLinkTime(library, "Test", &stored, &current, false));
    EXPECT_EQ(0u, stored);
    EXPECT_EQ(77u, current);
    EXPECT_TRUE(KB_IsNewModule(library, "Test"));
    EXPECT_EQ(linked, Stored());
    EXPECT_FALSE(KB_IsNewModule(library, "Test"));
    Store(linked - 1);
    EXPECT_TRUE(KB_GetStoredLinkTime(library, "Test", &stored, &current, false));
    EXPECT_EQ(linked - 1, stored);
    EXPECT_TRUE(KB_IsNewModule(library, "Test"));
    Store(linked + 1);
    EXPECT_FALSE(KB_IsNewModule(library, "Test"));
    EXPECT_EQ(linked, Stored());

    EXPECT_FALSE(KB_IsNewerModule(library, "Test", linked));
    EXPECT_TRUE(KB_IsNewerModule(library, "Test", linked + 1));
    EXPECT_TRUE(KB_ForceNewModule(nullptr, "Test"));
    EXPECT_FALSE(KB_ForceNewModule(nullptr, "Test"));
    EXPECT_TRUE(KB_IsNewerModule(library, "Test", 0));
    EXPECT_EQ(linked, Stored());
}

TEST(ModuleTracking, ReadsNoTimeFromADamagedHeader) {
    std::string header(76, '\0');
    header.replace(0, 2, "MZ");
    header[60] = 64;
    header.replace(64, 2, "PE").replace(72, 4, "\4\3\2\1");
    const kitbag::test::TemporaryFolder folder;
    const std::string file = (folder / "module.dll").string();
    const auto timeOf = [&](const std::string& content) {
        std::ofstream(file, std::ios::binary) << content;
        DWORD stored = 0, current = 77;
        EXPECT_FALSE(KB_GetStoredLinkTime(file.c_str(), "Test", &stored, &current, true));
        EXPECT_EQ(current, Stored());
        KB_ForceNewModule(nullptr, "Test");
        return current;
    };
    EXPECT_EQ(0x01020304u, timeOf(header));
    for (std::size_t length = 0; length < header.size(); ++length)
        EXPECT_EQ(0u, timeOf(header.substr(0, length))) << length;
    for (const std::size_t damaged : {0u, 1u, 60u, 63u, 64u, 65u, 66u, 67u}) {
        std::string other = header;
        other[damaged] ^= '\x80';
        EXPECT_EQ(0u, timeOf(other)) << damaged;
    }
    kitbag::test::ExpectNoHandleLeak([&] { KB_IsNewModule(file.c_str(), "Test"); });
    EXPECT_TRUE(KB_IsNewModule(nullptr, "Test"));
}

TEST(ModuleTracking, TellsTheFirstRun) {
    EXPECT_FALSE(KB_IsFirstRun());
    EXPECT_FALSE(KB_IsFirstRun());
    HKEY key = nullptr;
    ::RegCreateKeyA(HKEY_LOCAL_MACHINE, "Software\\Tarnwick\\Vidmoor\\RunOnce", &key);
    ::RegCloseKey(key);
    EXPECT_TRUE(KB_IsFirstRun());
}

}  // namespace
