// The library's own module handle.
#pragma once

#include <windows.h>

namespace kitbag {

/// The handle of Kitbag.dll itself, whatever program loaded it; null while the system cannot tell.
/// Any thread may call it: every first call stores the same value.
HMODULE ModuleBase();

}  // namespace kitbag
