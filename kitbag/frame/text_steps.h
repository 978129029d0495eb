// Steps through texts of both forms by whole characters. In a double-byte code page the second byte
// of a character may be that of a separator ('\\' is one): 8-bit text is never searched for one
// byte by byte.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string_view>

namespace kitbag {

/// The code units of the character that begins here. A lead byte without its second byte stands
/// alone, as it does for the system.
inline std::size_t CharacterSize(std::string_view text) {
    if (text.size() < 2) return 1;
    const auto first = static_cast<BYTE>(text.front());
    // No code page has ASCII among its lead bytes: most texts are stepped through without asking.
    return first >= 0x80 && ::IsDBCSLeadByte(first) ? 2 : 1;
}
inline std::size_t CharacterSize(std::wstring_view) { return 1; }

/// Where the character behind the one at this place begins; the text's size behind the last.
template <class Ch>
std::size_t NextCharacter(std::basic_string_view<Ch> text, std::size_t at) {
    return at + CharacterSize(text.substr(at));
}

/// The first or last character of the text that is one of these ASCII characters, which no lead
/// byte is; npos where none is.
template <class Ch>
std::size_t FindFirstOf(std::basic_string_view<Ch> text, std::basic_string_view<Ch> wanted) {
    for (std::size_t at = 0; at < text.size(); at = NextCharacter(text, at))
        if (wanted.find(text[at]) != wanted.npos) return at;
    return text.npos;
}
template <class Ch>
std::size_t FindLastOf(std::basic_string_view<Ch> text, std::basic_string_view<Ch> wanted) {
    std::size_t last = text.npos;
    for (std::size_t at = 0; at < text.size(); at = NextCharacter(text, at))
        if (wanted.find(text[at]) != wanted.npos) last = at;
    return last;
}

template <class Ch>
std::size_t CountCharacters(std::basic_string_view<Ch> text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); at = NextCharacter(text, at)) ++count;
    return count;
}

/// Where the last character of the text begins; npos in an empty text.
template <class Ch>
std::size_t LastCharacter(std::basic_string_view<Ch> text) {
    std::size_t last = text.npos;
    for (std::size_t at = 0; at < text.size(); at = NextCharacter(text, at)) last = at;
    return last;
}

/// Whether this place lies between two characters or at an end of the text.
template <class Ch>
bool IsCharacterEdge(std::basic_string_view<Ch> text, std::size_t place) {
    std::size_t at = 0;
    while (at < place) at = NextCharacter(text, at);
    return at == place;
}

template <class Ch>
bool EndsWithBackslash(std::basic_string_view<Ch> text) {
    return text.ends_with(Ch{'\\'}) && LastCharacter(text) == text.size() - 1;
}

/// An ASCII letter in upper case; any other code unit as it is.
template <class Ch>
constexpr Ch UpperCase(Ch unit) {
    return unit >= 'a' && unit <= 'z' ? static_cast<Ch>(unit - 'a' + 'A') : unit;
}

}  // namespace kitbag
