// Where the settings lie.
#pragma once

#include <string_view>

namespace kitbag {

/// The settings root key below HKEY_LOCAL_MACHINE, in the text form of Ch.
template <class Ch>
inline constexpr std::basic_string_view<Ch> kSettingsRoot;
template <>
inline constexpr std::string_view kSettingsRoot<char> =
    "Software\\Tarnwick\\Vidmoor\\Configuration";
template <>
inline constexpr std::wstring_view kSettingsRoot<wchar_t> =
    L"Software\\Tarnwick\\Vidmoor\\Configuration";

}  // namespace kitbag
