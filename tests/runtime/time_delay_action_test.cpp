#include <gtest/gtest.h>
#include <kitbag/runtime/time_delay_action.h>
#include <tests/support/import_patch.h>

namespace {

DWORD now = 0;
DWORD WINAPI FakeTicks() { return now; }

TEST(TimeDelayAction, ActsOnceMoreThanTheDelayHasPassed) {
    const kitbag::test::ImportPatch patch("GetTickCount", FakeTicks);
    const struct {
        DWORD tick, delay, actions;
    } steps[] = {{1000, 1000, 0},    {1001, 1000, 1},   {2001, 1000, 1},   {2002, 1000, 2},
                 {0xffffff00, 0, 3}, {0x100, 0x200, 3}, {0x100, 0x1ff, 4}, {0x101, MAXDWORD, 4}};
    TimeDelayAction action;
    for (const auto& step : steps) {
        now = step.tick;
        const DWORD before = action.GetCount();
        EXPECT_EQ(step.actions > before, action.DoAction(step.delay)) << now;
        EXPECT_EQ(step.actions, action.GetCount());
    }
}

}  // namespace
