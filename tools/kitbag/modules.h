// The programs and libraries of a folder.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace kitbag::tool {

struct Module {
    std::wstring name;
    /// Both empty where it has no version resource.
    std::wstring productVersion;
    std::wstring fileVersion;
    std::wstring description;
    /// Seconds since 1 January 1970; none where the file is no module.
    std::optional<DWORD> linkTime;
};

/// All files *.exe, *.dll and *.ocx of the folder, by name. Shows progress on a console. Throws
/// where the folder does not exist.
std::vector<Module> ModulesOf(const std::wstring& folder);

/// One module of the folder (which ends in a backslash, or is empty).
Module ReadModule(const std::wstring& folder, const std::wstring& name);

/// A table, one line for each.
std::wstring ModulesText(const std::vector<Module>& modules);

/// A time as modules and the registry keep it: "2026-03-01 14:05:09 UTC".
std::wstring LinkTimeText(DWORD seconds);

}  // namespace kitbag::tool
