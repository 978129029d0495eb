// Texts: 16-bit within the program, converted at its edges.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace kitbag::tool {

std::string ToBytes(UINT codePage, std::wstring_view text);
/// Bytes that the code page does not know become replacement characters.
std::wstring FromBytes(UINT codePage, std::string_view bytes);
inline std::wstring FromAnsi(std::string_view bytes) { return FromBytes(CP_ACP, bytes); }
inline std::string ToAnsi(std::wstring_view text) { return ToBytes(CP_ACP, text); }

/// As the system compares names without regard to case.
std::wstring Folded(std::wstring_view text);
bool AreSameNames(std::wstring_view a, std::wstring_view b);

/// Orders names as the system tells them apart.
struct NameLess {
    bool operator()(const std::wstring& a, const std::wstring& b) const {
        return Folded(a) < Folded(b);
    }
};

/// With blanks at its end up to the width.
std::wstring Padded(std::wstring_view text, std::size_t width);

/// Lower case, with leading zeros up to the number of digits.
std::wstring Hexadecimal(DWORD number, std::size_t digits = 1);

/// "2026-03-01 14:05:09"
std::wstring TimeText(const SYSTEMTIME& time);

/// "1 value", "2 values".
std::wstring Counted(std::size_t number, std::wstring_view noun);

/// Every line of the text moved to the right.
std::wstring Indented(std::wstring_view text, std::size_t columns);

}  // namespace kitbag::tool
