#include <gtest/gtest.h>
#include <kitbag/runtime/time_delay_action.h>
#include <tests/support/import_patch.h>

namespace {

DWORD now = 0;
DWORD WINAPI FakeTicks() { return now; }

TEST(TimeDelayAction, ActsOnceMoreThanTheDelayHasPassed) {
    const kitbag::test::ImportPatch patch("GetTickCount", FakeTicks);
    TimeDelayAction action;
    const auto actsAt = [&](DWORD tick, DWORD delay) { return now = tick, action.DoAction(delay); };
    EXPECT_FALSE(actsAt(1000, 1000));
    EXPECT_TRUE(actsAt(1001, 1000));
    EXPECT_TRUE(actsAt(0xffffff00, 0));
    EXPECT_FALSE(actsAt(0x100, 0x200));
    EXPECT_TRUE(actsAt(0x100, 0x1ff));
    EXPECT_EQ(3u, action.GetCount());
}

}  // namespace
