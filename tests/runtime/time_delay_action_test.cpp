#include <kitbag/runtime/time_delay_action.h>
#include <tests/support/import_patch.h>

namespace {

using namespace kitbag::test;

DWORD now = 0;
DWORD WINAPI FakeTicks() { return now; }

TEST(TimeDelayAction, ActsOnceMoreThanTheDelayHasPassed) {
    const ImportPatch patch("GetTickCount", FakeTicks);
    TimeDelayAction action;
    struct Row {
        const char* about;
        DWORD tick, delay;
        bool acts;
        DWORD count;
    };
    for (const auto& [about, tick, delay, acts, count] :
         {Row{"a second after the system's start", 1000, 1000, false, 0},
          Row{"later", 1001, 1000, true, 1}, Row{"too soon", 1501, 500, false, 1},
          Row{"counted from the last action", 1502, 500, true, 2},
          Row{"before the wrap", 0xffffff00, 0, true, 3},
          Row{"too soon after the wrap", 0x100, 0x200, false, 3},
          Row{"after the wrap", 0x100, 0x1ff, true, 4}}) {
        now = tick;
        ASSERT_EQ(acts, action.DoAction(delay)) << about;
        ASSERT_EQ(count, action.GetCount()) << about;
    }
}

}  // namespace
