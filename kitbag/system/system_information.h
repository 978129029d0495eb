// Questions about the machine that the process runs on.
#pragma once

#include <kitbag/frame/export.h>

/// True where the system belongs to the Windows NT family, false on Windows 95, 98 and ME.
///
/// The system is asked once per process. Where it does not answer the result is false, and the next
/// call asks again. Any thread may call it: every first call stores the same answer.
KITBAG_PLAIN bool KB_IsNT();
