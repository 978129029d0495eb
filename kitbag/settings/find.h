// Typed reads of single values that say what they found.
//
//     const unsigned long volume = kitbag::Get("Audio", "Volume", 70ul);
//     const auto device = kitbag::Find<std::wstring>(L"Audio", L"Output device");
//     if (device) Open(*device);
//     else if (device.error() == kitbag::NotFound::OtherType) Complain();
//
// Any thread may read; nothing is cached. The types are bool, int, long and their unsigned kin,
// enumerations, std::string, std::wstring and std::vector<unsigned char>.
#pragma once

#include <kitbag/frame/owned.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/settings/datum.h>
#include <kitbag/settings/path_of_section.h>
#include <kitbag/settings/text.h>
#include <windows.h>

#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace kitbag {

/// Why a value was not found.
enum class NotFound {
    /// There is no such value, or no such section.
    Missing,
    /// There is one of another type or size.
    OtherType,
    /// The registry does not let this user read it.
    NoAccess,
};

/// A value, or why there is none.
template <class T>
class Found : public std::optional<T> {
 public:
    Found(T value) : std::optional<T>(std::move(value)) {}
    Found(NotFound why) : why_(why) {}
    /// Where there is no value.
    NotFound error() const { return why_; }

 private:
    NotFound why_ = {};
};

/// The type that a value is stored as, or the system's error.
inline LSTATUS QueryStored(const wchar_t* section, const wchar_t* name, DWORD& type) {
    HKEY opened = nullptr;
    const LSTATUS error =
        ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, PathOfSection(section).c_str(), 0, KEY_READ, &opened);
    if (error) return error;
    const RegistryKey key(opened);
    return ::RegQueryValueExW(key.Get(), name, nullptr, &type, nullptr, nullptr);
}

// How each type is read: false where it is not stored as that type.

inline bool ReadStored(const wchar_t* section, const wchar_t* name, bool& value) {
    return KB_GetBoolW(section, name, &value);
}
template <class T>
concept ReadAsNumber = (Number<T> && sizeof(T) == sizeof(DWORD)) || std::is_enum_v<T>;
template <ReadAsNumber T>
bool ReadStored(const wchar_t* section, const wchar_t* name, T& value) {
    DWORD number = 0;
    if (!KB_GetDWORDW(section, name, &number)) return false;
    value = static_cast<T>(number);
    return true;
}
inline bool ReadStored(const wchar_t* section, const wchar_t* name, std::wstring& value) {
    return KB_GetTStringW(section, name, value);
}
inline bool ReadStored(const wchar_t* section, const wchar_t* name, std::string& value) {
    std::wstring wide;
    if (!KB_GetTStringW(section, name, wide)) return false;
    value = Narrowed(wide);
    return true;
}

/// Bytes are read from REG_BINARY alone: the library's function would give those of any value.
inline bool ReadStored(const wchar_t* section, const wchar_t* name,
                       std::vector<unsigned char>& value) {
    DWORD type = REG_NONE, size = 0;
    if (QueryStored(section, name, type) != ERROR_SUCCESS || type != REG_BINARY ||
        !KB_GetDataSizeW(section, name, &size))
        return false;
    std::vector<unsigned char> bytes(size);
    if (!KB_GetDataW(section, name, size, bytes.data(), &size)) return false;
    bytes.resize(size);
    value = std::move(bytes);
    return true;
}

/// What Get and Find read.
template <class T>
concept Readable = requires(T& value) {
    ReadStored(L"", L"", value);
};

inline NotFound WhyNotFound(const wchar_t* section, const wchar_t* name) {
    DWORD type = REG_NONE;
    switch (QueryStored(section, name, type)) {
        case ERROR_SUCCESS:
            return NotFound::OtherType;
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return NotFound::Missing;
        default:
            return NotFound::NoAccess;
    }
}

/// Reads a value of the section.
template <class T>
Found<T> Find(const std::wstring& section, const std::wstring& name) {
    static_assert(Readable<T>,
                  "kitbag::Find and kitbag::Get read truth values, numbers of 32 bits, "
                  "enumerations, standard strings and vectors of bytes");
    T value{};
    if constexpr (Readable<T>)
        if (ReadStored(section.c_str(), name.c_str(), value)) return value;
    return WhyNotFound(section.c_str(), name.c_str());
}
template <class T>
Found<T> Find(const std::string& section, const std::string& name) {
    return Find<T>(Widened(section), Widened(name));
}

/// A literal stands for the string that it begins.
template <class T>
struct ReadAs {
    using Type = T;
};
template <>
struct ReadAs<const char*> {
    using Type = std::string;
};
template <>
struct ReadAs<const wchar_t*> {
    using Type = std::wstring;
};

/// Reads a value of the section, or gives the fallback; the fallback's type is what is read.
template <class T>
auto Get(const std::wstring& section, const std::wstring& name, T fallback) {
    using Type = typename ReadAs<T>::Type;
    return Find<Type>(section, name).value_or(std::move(fallback));
}
template <class T>
auto Get(const std::string& section, const std::string& name, T fallback) {
    return Get(Widened(section), Widened(name), std::move(fallback));
}

}  // namespace kitbag
