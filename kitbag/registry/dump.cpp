#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_form.h>
#include <kitbag/registry/dump.h>
#include <kitbag/registry/settings_key.h>

#include <algorithm>
#include <charconv>
#include <concepts>
#include <cstring>
#include <iterator>
#include <string>

namespace kitbag {

namespace {

constexpr std::size_t kNameCharacters = 256;
constexpr std::size_t kDataBytes = 256;

/// A value as the registry enumerates it; the data is followed by zeros.
template <class Ch>
struct EnumeratedValue {
    Ch name[kNameCharacters];
    DWORD nameLength = kNameCharacters;
    DWORD type = REG_NONE;
    alignas(DWORD) BYTE data[kDataBytes + sizeof(Ch)] = {};
    DWORD bytes = kDataBytes;
};

template <class Ch>
void AppendText(const EnumeratedValue<Ch>& value, std::basic_string<Ch>& output) {
    output += Ch{'\''};
    output += reinterpret_cast<const Ch*>(value.data);
    output += Ch{'\''};
}

template <class Ch>
void AppendDigits(std::integral auto number, int base, std::basic_string<Ch>& output) {
    char digits[16];
    char* const end = std::to_chars(digits, std::end(digits), number, base).ptr;
    std::copy(digits, end, std::back_inserter(output));
}

template <class Ch>
void AppendNumber(const EnumeratedValue<Ch>& value, std::basic_string<Ch>& output) {
    int number = 0;
    std::memcpy(&number, value.data, sizeof number);
    AppendDigits(number, 10, output);
    output += KITBAG_TEXT(Ch, " (0x");
    AppendDigits(static_cast<unsigned>(number), 16, output);
    output += Ch{')'};
}

template <class Ch>
void AppendValue(const EnumeratedValue<Ch>& value, std::basic_string<Ch>& output) {
    output.append(value.name, value.nameLength);
    output += Ch{'='};
    if (value.type == REG_SZ)
        AppendText(value, output);
    else if (value.type == REG_DWORD)
        AppendNumber(value, output);
    else
        output += KITBAG_TEXT(Ch, "[Unhandled type]");
    output += KITBAG_TEXT(Ch, "<p>\n");
}

template <class Ch>
void AppendValues(const RegistryKey& key, std::basic_string<Ch>& output) {
    for (DWORD index = 0;; ++index) {
        EnumeratedValue<Ch> value;
        // Any error ends the listing, a value too large for the buffer among them.
        if (EnumerateValue(key.Get(), index, value.name, &value.nameLength, &value.type, value.data,
                           &value.bytes) != ERROR_SUCCESS)
            return;
        AppendValue(value, output);
    }
}

template <class Ch>
void AppendKey(const std::basic_string<Ch>& path, std::basic_string<Ch>& output);

template <class Ch>
void AppendSubKeys(const RegistryKey& key, const std::basic_string<Ch>& path,
                   std::basic_string<Ch>& output) {
    const std::basic_string_view<Ch> skipped = KITBAG_TEXT(Ch, "Video Compressor Cache");
    Ch name[kNameCharacters];
    for (DWORD index = 0; EnumerateKey(key.Get(), index, name, kNameCharacters) == ERROR_SUCCESS;
         ++index)
        if (name != skipped) AppendKey(path + Ch{'\\'} + name, output);
}

template <class Ch>
void AppendKey(const std::basic_string<Ch>& path, std::basic_string<Ch>& output) {
    const RegistryKey key = OpenedKey(HKEY_LOCAL_MACHINE, path.c_str(), KEY_READ);
    if (!key) return;
    output += path;
    output += KITBAG_TEXT(Ch, "<p>\n");
    AppendValues(key, output);
    AppendSubKeys(key, path, output);
}

template <class Ch>
bool DumpRegistry(const Ch* section, std::basic_string<Ch>& output) {
    // First, since the section may lie in the output.
    const std::basic_string<Ch> path = SettingsPath<Ch>(section).Get();
    output += KITBAG_TEXT(Ch, "------- HKEY_LOCAL_MACHINE -------\n");
    AppendKey(path, output);
    return true;
}

}  // namespace

}  // namespace kitbag

bool KB_DumpRegistryA(const char* section, TWinString<char>& output) {
    return kitbag::Guarded([&] { return kitbag::DumpRegistry<char>(section, output); });
}
bool KB_DumpRegistryW(const wchar_t* section, std::wstring& output) {
    return kitbag::Guarded([&] { return kitbag::DumpRegistry(section, output); });
}
