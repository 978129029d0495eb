#include <tests/tools/kitbag/tool.h>

namespace {

using namespace kitbag::test;

struct SettingsTour : ToolTest {};

TEST_F(SettingsTour, LeavesTheSettingsOfAnInstalledApplicationAsTheyAre) {
    RawKey().Set(L"Configured by", L"Vidmoor Setup");
    RawKey("Audio").Set(L"Volume", 70);
    RawKey("Obsolete\\Deep").Set(L"Page", 1);
    // Of a tour that was interrupted.
    RawKey("Settings tour\\Audio").Set(L"Volume", 1);
    const Ending tour = Run(L'"' + BuiltFolder() + L"settings_tour.exe\"");
    EXPECT_EQ(0u, tour.code);
    EXPECT_THAT(tour.output, testing::HasSubstr("volume                       70\n"));
    EXPECT_THAT(tour.output, testing::HasSubstr("Configuration\\Settings tour\\Audio<p>\n"));
    EXPECT_EQ((Snapshot{{L"Configured by", {REG_SZ, Bytes(L"Vidmoor Setup", 28)}},
                        {L"Audio\\", kSection},
                        {L"Audio\\Volume", {REG_DWORD, Bytes("F\0\0\0", 4)}},
                        {L"Obsolete\\", kSection},
                        {L"Obsolete\\Deep\\", kSection},
                        {L"Obsolete\\Deep\\Page", {REG_DWORD, Bytes("\1\0\0\0", 4)}}}),
              TakeSnapshot());
}

}  // namespace
