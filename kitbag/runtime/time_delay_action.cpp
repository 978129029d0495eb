#include <kitbag/runtime/time_delay_action.h>

static_assert(sizeof(TimeDelayAction) == 2 * sizeof(DWORD));

bool TimeDelayAction::DoAction(unsigned long delay) {
    const DWORD now = ::GetTickCount();
    if (now - lastTick_ <= delay) return false;
    ++count_;
    lastTick_ = now;
    return true;
}

DWORD TimeDelayAction::GetCount() const { return count_; }
