// What the system says about its errors.
#pragma once

#include <windows.h>

#include <string>

#include "exit_code.h"

namespace kitbag::tool {

/// The system's own words and the number, for example "File not found (error 2)".
std::wstring ErrorText(DWORD error);

/// For a key or a value, which the system's words would call a file.
Failure NotThere(const std::wstring& what);

/// What is missing is not found; for any other error there is no access.
Failure SystemFailure(const std::wstring& what, DWORD error);
Failure SystemFailure(const std::wstring& what, LSTATUS status);

}  // namespace kitbag::tool
