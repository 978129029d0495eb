// Keeps an action from being repeated too soon.
//
//     TimeDelayAction refresh;
//     if (refresh.DoAction(500)) Redraw();  // twice a second at most
#pragma once

#include <kitbag/frame/export.h>
#include <windows.h>

/// Not synchronised: one thread at a time.
class KITBAG_API TimeDelayAction {
 public:
    /// True when more than so many milliseconds have passed since the last action; this is then the
    /// new last one. The first counts from the start of the system. Right across the wrap of the
    /// tick counter after 49.7 days.
    bool DoAction(unsigned long delay);
    /// The number of actions taken.
    DWORD GetCount() const;

 private:
    DWORD lastTick_ = 0;
    DWORD count_ = 0;
};
