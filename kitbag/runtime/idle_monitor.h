// How long the user has left keyboard and mouse alone, in whatever program.
//
//     if (KB_UserIdleMonitorInit() && KB_GetUserIdleTime() > 5 * 60 * 1000) CompressRecordings();
//
// Windows 2000 and later know the time of the last input. Elsewhere a keyboard and a mouse hook
// record it; the system then loads this library into every process that receives input. All
// processes share one set of hooks and one time, and they do not count one another: the first Init
// installs the hooks, the first Term removes them for everybody. Nothing is locked; any thread may
// call any of these, and at worst one reading is a little old.
//
// A process that ends without a Term takes its hooks along, but they stay counted: for as long as
// any process holds this library, Init then answers true and hears nothing, until a Term.
//
// Until some process has called Init, the last input is taken to be at tick 0, the system's start.
#pragma once

#include <kitbag/frame/export.h>
#include <windows.h>

/// Starts measuring; true when the time can be measured. With the hooks that takes both: when only
/// the mouse hook is refused, later calls leave it at that until a Term; when the keyboard hook is
/// refused, the next call tries both again.
KITBAG_PLAIN BOOL KB_UserIdleMonitorInit();

/// Removes the hooks. Does nothing where the system itself tells the time, nor after an Init whose
/// keyboard hook was refused: a mouse hook is then left to the next Init.
KITBAG_PLAIN void KB_UserIdleMonitorTerm();

/// The milliseconds since the last input; right across the wrap of the tick counter after 49.7
/// days.
KITBAG_PLAIN DWORD KB_GetUserIdleTime();

/// The last input as a count of GetTickCount.
KITBAG_PLAIN DWORD KB_GetLastUserInputTime();
