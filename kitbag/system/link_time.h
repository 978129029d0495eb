// When modules were linked.
#pragma once

#include <windows.h>

#include <optional>

namespace kitbag {

/// The time stamp in the header of a module file, in seconds since 1 January 1970 (UTC); nothing
/// where the file is not a module or ends within its header.
std::optional<DWORD> LinkTime(const char* file);

}  // namespace kitbag
