// The files that modules were loaded from, and when they were linked.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace kitbag {

/// The path of a loaded module's file, null being the process's executable; empty where there is no
/// such module or its path is longer than MAX_PATH allows.
std::string ModuleFileName(HMODULE module);

/// The time stamp in the header of a module file, in seconds since 1 January 1970 (UTC); nothing
/// where the file is not a module or ends within its header.
std::optional<DWORD> LinkTime(const char* file);

/// The same as a file time.
std::optional<FILETIME> LinkFileTime(const char* file);
std::optional<FILETIME> LinkFileTime(HMODULE module);

}  // namespace kitbag
