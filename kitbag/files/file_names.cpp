#include <kitbag/files/file_names.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/path_text.h>

#include <algorithm>
#include <span>
#include <string_view>

namespace kitbag {

namespace {

constexpr char kRepairCharacter = '_';

template <class Ch>
constexpr std::basic_string_view<Ch> kInvalidCharacters = KITBAG_TEXT(
    Ch,
    "\x01\x02\x03\x04\x05\x06\a\b\t\n\v\f\r\x0e\x0f\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1a"
    "\x1b\x1c\x1d\x1e\x1f?\"/\\<>*|:");

// None with the digit 0: callers rely on COM0 and LPT0 being accepted.
constexpr std::string_view kDeviceNames[] = {
    "CON",  "AUX",  "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7", "COM8", "COM9",  "LPT1",
    "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9", "PRN",  "NUL",  "CLOCK$"};

template <class Ch>
constexpr std::basic_string_view<Ch> kComputerNameCharacters = KITBAG_TEXT(
    Ch, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789!#$%&'()-.@^_{}~");

// Callers rely on names of 15 characters, the system's own limit, being refused.
constexpr std::size_t kComputerNameLimit = 14;

/// Whether only the last component of the name is to be checked.
template <class Ch>
bool IsPath(std::basic_string_view<Ch> name) {
    return BeginsAsUnc(name) || name.substr(NextCharacter(name, 0)).starts_with(Ch{':'});
}

/// Where the part of a name that is to be checked begins.
template <class Ch>
std::size_t ComponentOf(std::basic_string_view<Ch> name, bool isPath) {
    if (!isPath && !IsPath(name)) return 0;
    std::size_t separator = FindLastOf<Ch>(name, KITBAG_TEXT(Ch, "\\"));
    if (separator == name.npos) separator = FindLastOf<Ch>(name, KITBAG_TEXT(Ch, "/"));
    return separator + 1;  // 0 behind none
}

/// Whether a character that may be invalid is acceptable afterwards.
template <class Ch>
bool Settle(Ch& character, bool isInvalid, bool repair) {
    if (isInvalid && repair) character = kRepairCharacter;
    return !isInvalid || repair;
}

template <class Ch>
bool IsBlankOrDot(Ch character) {
    return character == ' ' || character == '.';
}

template <class Ch>
bool IsInvalid(Ch character) {
    return kInvalidCharacters<Ch>.find(character) != kInvalidCharacters<Ch>.npos;
}

/// Whether every character of the component is acceptable afterwards. A character of two bytes is
/// known by its lead byte, which is none of those that are looked for.
template <class Ch>
bool SettleAll(std::span<Ch> component, bool repair) {
    const std::basic_string_view<Ch> text(component.data(), component.size());
    for (std::size_t at = 0; at < text.size(); at = NextCharacter(text, at))
        if (!Settle(component[at], IsInvalid(component[at]), repair)) return false;
    return true;
}

template <class Ch>
bool IsDeviceName(std::basic_string_view<Ch> component) {
    const auto base = component.substr(0, FindFirstOf<Ch>(component, KITBAG_TEXT(Ch, ".")));
    return std::ranges::any_of(kDeviceNames, [&](std::string_view device) {
        return std::ranges::equal(base, device, {}, UpperCase<Ch>);
    });
}

template <class Ch>
bool ValidateFilename(Ch* name, bool repair, bool isPath) {
    if (Length(name) == 0) return false;
    const std::span<Ch> component =
        std::span(name, Length(name)).subspan(ComponentOf<Ch>(name, isPath));
    if (component.empty()) return true;
    const std::basic_string_view<Ch> text(component.data(), component.size());
    Ch& first = component.front();
    Ch& last = component[LastCharacter(text)];
    return Settle(first, IsBlankOrDot(first), repair) && Settle(last, IsBlankOrDot(last), repair) &&
           SettleAll(component, repair) && !IsDeviceName(text);
}

template <class Ch>
bool ValidateComputerName(const Ch* name) {
    if (!name) return false;
    std::basic_string_view<Ch> host(name);
    if (BeginsAsUnc(host)) host.remove_prefix(2);
    host = host.substr(0, FindFirstOf<Ch>(host, KITBAG_TEXT(Ch, "\\")));
    return !host.empty() && host.size() <= kComputerNameLimit &&
           host.find_first_not_of(kComputerNameCharacters<Ch>) == host.npos;
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_ValidateFilenameA(char* name, bool repair, bool isPath) {
    return Guarded([&] { return kitbag::ValidateFilename(name, repair, isPath); });
}
bool KB_ValidateFilenameW(wchar_t* name, bool repair, bool isPath) {
    return Guarded([&] { return kitbag::ValidateFilename(name, repair, isPath); });
}

bool KB_ValidatePathA(char* name, bool repair, bool isPath) {
    return KB_ValidateFilenameA(name, repair, isPath);
}
bool KB_ValidatePathW(wchar_t* name, bool repair, bool isPath) {
    return KB_ValidateFilenameW(name, repair, isPath);
}

bool KB_ValidateComputerNameA(const char* name) {
    return Guarded([&] { return kitbag::ValidateComputerName(name); });
}
bool KB_ValidateComputerNameW(const wchar_t* name) {
    return Guarded([&] { return kitbag::ValidateComputerName(name); });
}
