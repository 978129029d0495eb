#include <gmock/gmock.h>
#include <kitbag/system/module_tracking.h>
#include <kitbag/system/module_version.h>
#include <kitbag/system/system_information.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>
// Needs the system's header.
#include <dbghelp.h>

namespace {

using namespace kitbag::test;
using namespace std::string_literals;

TEST(ModuleVersion, IsReadFromTheResource) {
    DWORD version[] = {77, 77, 77};
    auto& [major, minor, build] = version;
    // The compiler's runtime has no version resource.
    EXPECT_FALSE(KB_GetModuleVersionA("libstdc++-6.dll", &major, &minor, &build));
    EXPECT_FALSE(KB_GetMemModuleVersion(reinterpret_cast<HMODULE>(31), &major, &minor, &build));
    EXPECT_TRUE(KB_GetModuleVersionW(L"Kitbag.dll", &major, &minor, nullptr));
    EXPECT_THAT(version, testing::ElementsAre(1, 0, 77));
    EXPECT_TRUE(KB_GetMemModuleVersion(nullptr, &major, &minor, &build));
    EXPECT_THAT(version, testing::ElementsAre(3, 4, 0x50006));

    CModuleVersion library("Kitbag.dll"), withoutTranslation("kitbag_system_tests.exe");
    EXPECT_TRUE(library.Read() && withoutTranslation.Read());
    EXPECT_STREQ("Tarnwick", library.GetStringValue("CompanyName"));
    EXPECT_STREQ("Western", withoutTranslation.GetStringValue("CompanyName"));

    ModuleInfo info{56, {}, {}, {}, 0, 0, {}, {}};
    EXPECT_TRUE(KB_FillModuleInfo(&info, nullptr, "Name", "fifteen letters", "in either block"));
    EXPECT_STREQ(_wpgmptr, info.filePath);
    EXPECT_STREQ("in either block", reinterpret_cast<char*>(info.secondBlock));
}

/// Whether the file is new where this time was stored the last time it was seen.
bool IsNewSince(DWORD time, const std::string& file) {
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, "Software\\Tarnwick\\Vidmoor\\Version", "Test",
                      REG_BINARY, &time, sizeof time);
    return KB_IsNewModule(file.c_str(), "Test");
}

TEST(ModuleTracking, SeesModulesThatWereLinkedSince) {
    EXPECT_FALSE(KB_IsFirstRun() || KB_ForceNewModule(nullptr, "Test"));
    const DWORD linked = ::ImageNtHeader(::GetModuleHandleA(nullptr))->FileHeader.TimeDateStamp;
    EXPECT_FALSE(IsNewSince(linked, _pgmptr) || IsNewSince(linked + 1, _pgmptr));
    EXPECT_TRUE(IsNewSince(linked - 1, _pgmptr));
    EXPECT_FALSE(KB_IsNewerModule(_pgmptr, "Test", linked)) << "stored";
    EXPECT_TRUE(KB_IsNewerModule(_pgmptr, "Test", linked + 1));
    EXPECT_TRUE(KB_ForceNewModule(nullptr, "Test") && KB_IsNewerModule(_pgmptr, "Test", 0));
    EXPECT_TRUE(KB_ForceNewModule(nullptr, "Test") && KB_IsNewModule(_pgmptr, "Test"));
    ::RegSetValueA(HKEY_LOCAL_MACHINE, "Software\\Tarnwick\\Vidmoor\\RunOnce", REG_SZ, "", 0);
    EXPECT_TRUE(KB_IsFirstRun());
}

TEST(ModuleTracking, TakesNoTimeFromDamagedHeaders) {
    const TextFolder<char> folder;
    std::ifstream module(_pgmptr, std::ios::binary);
    const std::string header(std::istreambuf_iterator<char>(module), {});
    // All but the last byte of the time, and another signature before the whole of it.
    const auto signature = header.find("PE\0\0"s);
    folder.Write("cut", header.substr(0, signature + 11));
    folder.Write("other", std::string(header).replace(signature, 1, "N"));
    for (const char* file : {"cut", "other"}) EXPECT_FALSE(IsNewSince(0, folder.In(file)));
}

DWORD ticks = 0;
DWORD WINAPI NextTick() { return 0xffffff00 + ticks++; }

TEST(Processor, IsMeasuredWhereItsSpeedIsStored) {
    const ImportPatch patch("GetTickCount", NextTick);
    constexpr char key[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
    ::RegSetValueA(HKEY_LOCAL_MACHINE, key, REG_SZ, "", 0);
    char* description = KB_GetSystemDescription();
    EXPECT_THAT(description, testing::MatchesRegex("CPUID '\\S.*\\S'\nCPU 0Mhz"));
    std::free(description);
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, key, "~MHz", REG_DWORD, "\1\2\3\4", 4);
    EXPECT_NE(0x04030201, KB_GetCPUSpeed());
    // At the start, to the first edge and past a second.
    EXPECT_EQ(1u + 2 + 1001, ticks);
    EXPECT_TRUE(KB_IsNT() && KB_IsInteractiveSession());
}

}  // namespace
