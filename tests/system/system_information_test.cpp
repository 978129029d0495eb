#include <gtest/gtest.h>
#include <intrin.h>
#include <kitbag/system/system_information.h>
#include <tests/support/import_patch.h>

#include <climits>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

using kitbag::test::ImportPatch;

BOOL WINAPI NoVersion(OSVERSIONINFOA* version) {
    version->dwPlatformId = VER_PLATFORM_WIN32_NT;
    return FALSE;
}
BOOL WINAPI Windows98(OSVERSIONINFOA* version) {
    version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    return version->dwOSVersionInfoSize == 148;
}

TEST(SystemInformation, KeepsTheFamilyOnceTold) {
    {
        const ImportPatch patch("GetVersionExA", NoVersion);
        EXPECT_FALSE(KB_IsNT());
    }
    EXPECT_TRUE(KB_IsNT());
    const ImportPatch patch("GetVersionExA", Windows98);
    EXPECT_TRUE(KB_IsNT());
}

DWORD stationFlags = 0;
BOOL WINAPI StationFlags(HANDLE, int what, void* flags, DWORD size, DWORD*) {
    if (what != UOI_FLAGS || size != 12) return FALSE;
    static_cast<USEROBJECTFLAGS*>(flags)->dwFlags = stationFlags;
    return TRUE;
}

class InteractiveSession : public testing::TestWithParam<DWORD> {};
INSTANTIATE_TEST_SUITE_P(Flags, InteractiveSession, testing::Values(0, 1, 3));

TEST_P(InteractiveSession, IsThatOfAVisibleStation) {
    const ImportPatch patch("GetUserObjectInformationA", StationFlags);
    // Asked once: the second flags change nothing.
    for (const DWORD flags : {GetParam(), 1 - GetParam()}) {
        stationFlags = flags;
        EXPECT_EQ(GetParam() == WSF_VISIBLE, KB_IsInteractiveSession());
    }
}

/// The ticks of one measurement: at the start, to the first edge and past a second.
constexpr DWORD kTicks = 1 + 2 + 1001;
DWORD ticks = 0;
DWORD WINAPI NextTick() { return 0xffffff00 + ticks++; }

std::string Take(char* text) {
    const std::unique_ptr<char, decltype(&std::free)> owned(text, std::free);
    return text;
}

int NothingPrintable(int) { return 0; }

TEST(Processor, IsMeasuredWhereItsSpeedIsStored) {
    const ImportPatch patch("GetTickCount", NextTick);
    KB_GetCPUSpeed();
    EXPECT_EQ(kTicks, ticks);
    HKEY key = nullptr;
    ::RegCreateKeyA(HKEY_LOCAL_MACHINE, "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0", &key);
    EXPECT_EQ("CPUID '" + Take(KB_GetVendorString()) + "'\nCPU 0Mhz",
              Take(KB_GetSystemDescription()));
    EXPECT_EQ(kTicks, ticks);
    const DWORD stored = 12345678;
    ::RegSetValueExA(key, "~MHz", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&stored), 4);
    ::RegCloseKey(key);
    EXPECT_NE(12345678, KB_GetCPUSpeedNT());
    EXPECT_EQ(2 * kTicks, ticks);
}

TEST(Processor, IsTrimmedOfTheSpacesAroundItsBrand) {
    int registers[13] = {};
    for (int leaf = 0; leaf < 3; ++leaf) __cpuid(registers + 4 * leaf, INT_MIN + 2 + leaf);
    const std::string raw = reinterpret_cast<const char*>(registers);
    const auto first = raw.find_first_not_of(' ');
    EXPECT_EQ(raw.substr(first, raw.find_last_not_of(' ') + 1 - first), Take(KB_GetVendorString()));
    const ImportPatch patch("isgraph", NothingPrintable);
    EXPECT_EQ("", Take(KB_GetVendorString()));
}

TEST(Windows9x, HasNoWindowStationsAndNoKnownSpeed) {
    const ImportPatch version("GetVersionExA", Windows98);
    const ImportPatch station("GetUserObjectInformationA", StationFlags);
    const ImportPatch tick("GetTickCount", NextTick);
    EXPECT_FALSE(KB_IsNT());
    EXPECT_TRUE(KB_IsInteractiveSession());
    KB_GetCPUSpeed();
    EXPECT_EQ(kTicks, ticks);
}

}  // namespace
