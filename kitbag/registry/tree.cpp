#include <kitbag/frame/caller_memory.h>
#include <kitbag/frame/delete_key_tree.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_form.h>
#include <kitbag/registry/settings_key.h>
#include <kitbag/registry/tree.h>

#include <string>

namespace kitbag {

namespace {

/// What RegEnumKeyEx is handed as the size of a name buffer, terminator included.
constexpr DWORD kNameLength = 255;

template <class Ch>
bool DeleteValueOf(const Ch* section, const Ch* name) {
    const RegistryKey key = CreateSection(section);
    return key && DeleteValue(key.Get(), name) == ERROR_SUCCESS;
}

template <class Ch>
bool DeleteKeyOf(const Ch* section, const Ch* subKey) {
    const RegistryKey key = CreateSection(section);
    return key && DeleteTree(key.Get(), subKey) == ERROR_SUCCESS;
}

/// Deletes the section as a key of the root. The 8-bit enumeration puts a backslash in front of the
/// root's own keys, and callers hand its results on: there it does not count.
template <class Ch>
bool DeleteSection(const Ch* section) {
    while (section && *section == '\\') ++section;
    return DeleteKeyOf<Ch>(nullptr, section);
}

struct Counts {
    DWORD keys = 0;
    DWORD values = 0;
};

template <class Ch>
Counts CountsOf(const Ch* section) {
    const RegistryKey key = OpenSection(section);
    Counts counts;
    if (!key || QueryCounts<Ch>(key.Get(), &counts.keys, &counts.values) != ERROR_SUCCESS)
        return {};
    return counts;
}

template <class Ch>
bool KeyName(const Ch* section, DWORD index, Ch* name, DWORD& length) {
    const RegistryKey key = OpenSection(section);
    return key && EnumerateKeyEx(key.Get(), index, name, &length) == ERROR_SUCCESS;
}

template <class Ch>
bool ValueName(const Ch* section, DWORD index, Ch* name, DWORD& length) {
    const RegistryKey key = OpenSection(section);
    return key && EnumerateValue(key.Get(), index, name, &length, nullptr, nullptr, nullptr) ==
                      ERROR_SUCCESS;
}

template <class Ch>
using NameSource = bool (*)(const Ch* section, DWORD index, Ch* name, DWORD& length);

/// Hands a name to the caller's buffer, behind a prefix that the caller writes after success.
template <class Ch>
bool NameToBuffer(NameSource<Ch> source, const Ch* section, DWORD index, Ch* name, DWORD* length,
                  DWORD prefix = 0) {
    if (!IsWritable(length) || *length > MAXDWORD / sizeof(Ch) ||
        !IsWritable(name, BytesOf<Ch>(*length)) || (prefix > 0 && prefix >= *length))
        return false;
    DWORD available = *length - prefix;
    if (!source(section, index, name + prefix, available)) return false;
    *length = prefix + available;
    return true;
}

template <class Ch>
bool NameToObject(NameSource<Ch> source, const Ch* section, DWORD index,
                  std::basic_string<Ch>& name) {
    Ch buffer[kNameLength];
    DWORD length = kNameLength;
    if (!source(section, index, buffer, length)) return false;
    name.assign(buffer, length);
    return true;
}

/// What the 8-bit key enumeration puts in front of a name. Callers hand its results on as sections,
/// which the 16-bit form's bare names are not.
std::string PathPrefix(const char* section) {
    return section ? std::string(section) + '\\' : std::string("\\");
}

bool KeyPathToBuffer(const char* section, DWORD index, char* name, DWORD* length) {
    const std::string prefix = PathPrefix(section);
    if (!NameToBuffer(KeyName<char>, section, index, name, length,
                      static_cast<DWORD>(prefix.size())))
        return false;
    prefix.copy(name, prefix.size());
    return true;
}

bool KeyPathToObject(const char* section, DWORD index, std::string& name) {
    std::string path = PathPrefix(section);
    std::string keyName;
    if (!NameToObject(KeyName<char>, section, index, keyName)) return false;
    path += keyName;
    // Last, since the section may lie in the object.
    name = std::move(path);
    return true;
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_DeleteValueA(const char* section, const char* name) {
    return Guarded([&] { return kitbag::DeleteValueOf(section, name); });
}
bool KB_DeleteValueW(const wchar_t* section, const wchar_t* name) {
    return Guarded([&] { return kitbag::DeleteValueOf(section, name); });
}

bool KB_DeleteKeyA(const char* section, const char* subKey) {
    return Guarded([&] { return kitbag::DeleteKeyOf(section, subKey); });
}
bool KB_DeleteKeyW(const wchar_t* section, const wchar_t* subKey) {
    return Guarded([&] { return kitbag::DeleteKeyOf(section, subKey); });
}

bool KB_DeleteSectionA(const char* section) {
    return Guarded([&] { return kitbag::DeleteSection(section); });
}
bool KB_DeleteSectionW(const wchar_t* section) {
    return Guarded([&] { return kitbag::DeleteSection(section); });
}

int KB_GetKeyCountA(const char* section) {
    return Guarded([&] { return static_cast<int>(kitbag::CountsOf(section).keys); });
}
int KB_GetKeyCountW(const wchar_t* section) {
    return Guarded([&] { return static_cast<int>(kitbag::CountsOf(section).keys); });
}

bool KB_EnumKeyA(const char* section, DWORD index, char* name, DWORD* length) {
    return Guarded([&] { return kitbag::KeyPathToBuffer(section, index, name, length); });
}
bool KB_EnumKeyW(const wchar_t* section, DWORD index, wchar_t* name, DWORD* length) {
    return Guarded([&] {
        return kitbag::NameToBuffer(kitbag::KeyName<wchar_t>, section, index, name, length);
    });
}

bool KB_EnumKeyTStringA(const char* section, DWORD index, TWinString<char>& name) {
    return Guarded([&] { return kitbag::KeyPathToObject(section, index, name); });
}
bool KB_EnumKeyTStringW(const wchar_t* section, DWORD index, std::wstring& name) {
    return Guarded(
        [&] { return kitbag::NameToObject(kitbag::KeyName<wchar_t>, section, index, name); });
}

int KB_GetValueCountA(const char* section) {
    return Guarded([&] { return static_cast<int>(kitbag::CountsOf(section).values); });
}
int KB_GetValueCountW(const wchar_t* section) {
    return Guarded([&] { return static_cast<int>(kitbag::CountsOf(section).values); });
}

bool KB_EnumValueA(const char* section, DWORD index, char* name, DWORD* length) {
    return Guarded([&] {
        return kitbag::NameToBuffer(kitbag::ValueName<char>, section, index, name, length);
    });
}
bool KB_EnumValueW(const wchar_t* section, DWORD index, wchar_t* name, DWORD* length) {
    return Guarded([&] {
        return kitbag::NameToBuffer(kitbag::ValueName<wchar_t>, section, index, name, length);
    });
}

bool KB_EnumValueTStringA(const char* section, DWORD index, TWinString<char>& name) {
    return Guarded(
        [&] { return kitbag::NameToObject<char>(kitbag::ValueName<char>, section, index, name); });
}
bool KB_EnumValueTStringW(const wchar_t* section, DWORD index, std::wstring& name) {
    return Guarded(
        [&] { return kitbag::NameToObject(kitbag::ValueName<wchar_t>, section, index, name); });
}
