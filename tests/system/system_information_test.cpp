#include <gmock/gmock.h>
#include <kitbag/system/system_information.h>
#include <tests/support/windows_98.h>

#include <cstdlib>

namespace {

using kitbag::test::ImportPatch;

DWORD stationFlags = 0;
DWORD ticks = 0;
/// The ticks of one measurement: at the start, to the first edge and past a second.
constexpr DWORD kTicks = 1 + 2 + 1001;

BOOL WINAPI NoVersion(OSVERSIONINFOA*) { return FALSE; }
BOOL WINAPI StationFlags(HANDLE, int what, void* flags, DWORD, DWORD*) {
    static_cast<USEROBJECTFLAGS*>(flags)->dwFlags = stationFlags;
    return what == UOI_FLAGS;
}
DWORD WINAPI NextTick() { return 0xffffff00 + ticks++; }

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

TEST(Windows9x, HasNoWindowStations) {
    {
        const ImportPatch patch("GetVersionExA", NoVersion);
        EXPECT_FALSE(KB_IsNT());
    }
    const kitbag::test::Windows98 windows98;
    const ImportPatch station("GetUserObjectInformationA", StationFlags);
    EXPECT_TRUE(KB_IsInteractiveSession());
}

TEST(Processor, IsMeasuredWhereItsSpeedIsStored) {
    EXPECT_TRUE(KB_IsNT());
    const kitbag::test::Windows98 tooLate;
    const ImportPatch patch("GetTickCount", NextTick);
    constexpr char key[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
    const DWORD stored = 12345678;
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, key, "Other", REG_DWORD, &stored, sizeof stored);
    char* description = KB_GetSystemDescription();
    EXPECT_THAT(description, testing::MatchesRegex("CPUID '\\S.*\\S'\nCPU 0Mhz"));
    std::free(description);
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, key, "~MHz", REG_DWORD, &stored, sizeof stored);
    EXPECT_NE(12345678, KB_GetCPUSpeed());
    EXPECT_EQ(kTicks, ticks);
}

}  // namespace
