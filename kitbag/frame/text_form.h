// One implementation for both text forms: what differs between 8-bit and 16-bit text, so that an
// A/W pair is written once, as a template over the character type.
#pragma once

#include <kitbag/frame/win_string.h>
#include <windows.h>

#include <cstddef>
#include <string>
#include <type_traits>

namespace kitbag {

/// The string object of a text form's interface.
template <class Ch>
using StringOf = std::conditional_t<std::is_same_v<Ch, char>, TWinString<char>, std::wstring>;

/// One literal in the text form of Ch, as an array that knows its length.
template <class Ch, std::size_t n>
constexpr auto& PickText(const char (&narrow)[n], const wchar_t (&wide)[n]) {
    if constexpr (std::is_same_v<Ch, char>)
        return narrow;
    else
        return wide;
}
#define KITBAG_TEXT(Ch, literal) (::kitbag::PickText<Ch>(literal, L##literal))

/// Of two parallel functions, the one for the text form of Ch.
template <class Ch, class Narrow, class Wide>
constexpr auto PickForm(Narrow* narrow, Wide* wide) {
    if constexpr (std::is_same_v<Ch, char>)
        return narrow;
    else
        return wide;
}

/// The characters before the terminator; 0 for a null text.
inline std::size_t Length(const char* text) { return static_cast<std::size_t>(::lstrlenA(text)); }
inline std::size_t Length(const wchar_t* text) {
    return static_cast<std::size_t>(::lstrlenW(text));
}

/// The size in bytes of a number of characters.
template <class Ch>
constexpr DWORD BytesOf(std::size_t characters) {
    return static_cast<DWORD>(characters) * sizeof(Ch);
}

}  // namespace kitbag
