// The registry's functions in both text forms under one name each.
#pragma once

#include <kitbag/frame/owned.h>
#include <kitbag/frame/text_form.h>
#include <windows.h>

namespace kitbag {

inline LSTATUS OpenKey(HKEY parent, const char* path, REGSAM access, HKEY* key) {
    return ::RegOpenKeyExA(parent, path, 0, access, key);
}
inline LSTATUS OpenKey(HKEY parent, const wchar_t* path, REGSAM access, HKEY* key) {
    return ::RegOpenKeyExW(parent, path, 0, access, key);
}

inline LSTATUS CreateKey(HKEY parent, const char* path, REGSAM access, HKEY* key) {
    return ::RegCreateKeyExA(parent, path, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr,
                             key, nullptr);
}
inline LSTATUS CreateKey(HKEY parent, const wchar_t* path, REGSAM access, HKEY* key) {
    return ::RegCreateKeyExW(parent, path, 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr,
                             key, nullptr);
}

/// Into an owner, which stays as it was where the call fails: what a failed call leaves in its
/// output is no handle, and closing it could close another's.
template <class Ch>
LSTATUS OpenKey(HKEY parent, const Ch* path, REGSAM access, RegistryKey& key) {
    HKEY opened = nullptr;
    const LSTATUS status = OpenKey(parent, path, access, &opened);
    if (status == ERROR_SUCCESS) key.Reset(opened);
    return status;
}
template <class Ch>
LSTATUS CreateKey(HKEY parent, const Ch* path, REGSAM access, RegistryKey& key) {
    HKEY created = nullptr;
    const LSTATUS status = CreateKey(parent, path, access, &created);
    if (status == ERROR_SUCCESS) key.Reset(created);
    return status;
}

/// The key, or none where it cannot be opened.
template <class Ch>
RegistryKey OpenedKey(HKEY parent, const Ch* path, REGSAM access) {
    RegistryKey key;
    OpenKey(parent, path, access, key);
    return key;
}

/// The key, created where it is missing, or none where that fails.
template <class Ch>
RegistryKey CreatedKey(HKEY parent, const Ch* path, REGSAM access) {
    RegistryKey key;
    CreateKey(parent, path, access, key);
    return key;
}

/// How many sub-keys and values a key has.
template <class Ch>
LSTATUS QueryCounts(HKEY key, DWORD* keys, DWORD* values) {
    return PickForm<Ch>(::RegQueryInfoKeyA, ::RegQueryInfoKeyW)(key, nullptr, nullptr, nullptr,
                                                                keys, nullptr, nullptr, values,
                                                                nullptr, nullptr, nullptr, nullptr);
}

inline LSTATUS DeleteKey(HKEY parent, const char* name) { return ::RegDeleteKeyA(parent, name); }
inline LSTATUS DeleteKey(HKEY parent, const wchar_t* name) { return ::RegDeleteKeyW(parent, name); }

inline LSTATUS EnumerateKeyEx(HKEY key, DWORD index, char* name, DWORD* length) {
    return ::RegEnumKeyExA(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
}
inline LSTATUS EnumerateKeyEx(HKEY key, DWORD index, wchar_t* name, DWORD* length) {
    return ::RegEnumKeyExW(key, index, name, length, nullptr, nullptr, nullptr, nullptr);
}

inline LSTATUS EnumerateKey(HKEY key, DWORD index, char* name, DWORD length) {
    return ::RegEnumKeyA(key, index, name, length);
}
inline LSTATUS EnumerateKey(HKEY key, DWORD index, wchar_t* name, DWORD length) {
    return ::RegEnumKeyW(key, index, name, length);
}

inline LSTATUS QueryValue(HKEY key, const char* name, DWORD* type, void* data, DWORD* bytes) {
    return ::RegQueryValueExA(key, name, nullptr, type, static_cast<BYTE*>(data), bytes);
}
inline LSTATUS QueryValue(HKEY key, const wchar_t* name, DWORD* type, void* data, DWORD* bytes) {
    return ::RegQueryValueExW(key, name, nullptr, type, static_cast<BYTE*>(data), bytes);
}

inline LSTATUS SetValue(HKEY key, const char* name, DWORD type, const void* data, DWORD bytes) {
    return ::RegSetValueExA(key, name, 0, type, static_cast<const BYTE*>(data), bytes);
}
inline LSTATUS SetValue(HKEY key, const wchar_t* name, DWORD type, const void* data, DWORD bytes) {
    return ::RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(data), bytes);
}

inline LSTATUS DeleteValue(HKEY key, const char* name) { return ::RegDeleteValueA(key, name); }
inline LSTATUS DeleteValue(HKEY key, const wchar_t* name) { return ::RegDeleteValueW(key, name); }

inline LSTATUS EnumerateValue(HKEY key, DWORD index, char* name, DWORD* length, DWORD* type,
                              BYTE* data, DWORD* bytes) {
    return ::RegEnumValueA(key, index, name, length, nullptr, type, data, bytes);
}
inline LSTATUS EnumerateValue(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD* type,
                              BYTE* data, DWORD* bytes) {
    return ::RegEnumValueW(key, index, name, length, nullptr, type, data, bytes);
}

}  // namespace kitbag
