#include <kitbag/files/file_names.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_form.h>

#include <algorithm>
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

template <class Ch>
bool BeginsAsUnc(const Ch* name) {
    return name[0] == '\\' && name[1] == '\\';
}

/// Where the part of a name that is to be checked begins.
template <class Ch>
Ch* ComponentOf(Ch* name, bool isPath) {
    if (!isPath && name[1] != ':' && !BeginsAsUnc(name)) return name;
    const std::basic_string_view<Ch> text(name);
    std::size_t separator = text.rfind('\\');
    if (separator == text.npos) separator = text.rfind('/');
    return separator == text.npos ? name : name + separator + 1;
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

template <class Ch>
Ch UpperCase(Ch character) {
    return character >= 'a' && character <= 'z' ? static_cast<Ch>(character - 'a' + 'A')
                                                : character;
}

template <class Ch>
bool IsDeviceName(std::basic_string_view<Ch> component) {
    const auto base = component.substr(0, component.find('.'));
    return std::ranges::any_of(kDeviceNames, [&](std::string_view device) {
        return std::ranges::equal(base, device, {}, UpperCase<Ch>);
    });
}

template <class Ch>
bool ValidateFilename(Ch* name, bool repair, bool isPath) {
    if (Length(name) == 0) return false;
    Ch* const first = ComponentOf(name, isPath);
    Ch* const end = first + Length(first);
    if (first == end) return true;
    return Settle(*first, IsBlankOrDot(*first), repair) &&
           Settle(end[-1], IsBlankOrDot(end[-1]), repair) &&
           std::all_of(first, end, [&](Ch& c) { return Settle(c, IsInvalid(c), repair); }) &&
           !IsDeviceName<Ch>({first, end});
}

template <class Ch>
bool ValidateComputerName(const Ch* name) {
    if (!name) return false;
    if (BeginsAsUnc(name)) name += 2;
    const std::basic_string_view<Ch> text(name);
    const auto host = text.substr(0, text.find('\\'));
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
