// The machine, the session and the user.
#pragma once

#include <string>

namespace kitbag::tool {

std::wstring ComputerName();

/// Windows, its code page, the processor. Keeps the processor busy for a second or two.
std::wstring SystemText();

/// Whether windows are seen, the user's rights and level, the time since the last input.
std::wstring SessionText();

}  // namespace kitbag::tool
