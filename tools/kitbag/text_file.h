// Text files as a whole.
#pragma once

#include <string>
#include <string_view>

namespace kitbag::tool {

/// A file's text: UTF-16 or UTF-8 by its byte order mark; without one UTF-8 if it can be that, else
/// in the ANSI code page. Throws where the file cannot be read.
std::wstring ReadTextFile(const std::wstring& path);

enum class Encoding { Utf16, Utf8 };

/// With a byte order mark and the system's line ends. The file appears whole or not at all; one
/// that is there already is replaced only if that is wanted. Throws where it cannot be written.
void WriteTextFile(const std::wstring& path, std::wstring_view text, Encoding encoding,
                   bool mayReplace);

}  // namespace kitbag::tool
