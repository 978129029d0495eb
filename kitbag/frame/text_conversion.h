// Conversion between 8-bit and 16-bit text, always in the ANSI code page.
#pragma once

#include <string>

namespace kitbag {

/// The text up to its terminator; a null text is empty. Characters that the code page lacks become
/// its replacement character.
std::string ToNarrow(const wchar_t* text);
std::wstring ToWide(const char* text);

}  // namespace kitbag
