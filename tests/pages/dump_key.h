// What lies below a registry key, for comparison.
#pragma once

#include <windows.h>

#include <string>

namespace kitbag::test {

/// Everything below the key as lines "key\\key" and "key\\:value=data", in the registry's order.
inline std::string DumpKey(HKEY key, const std::string& path = {}) {
    std::string text;
    char name[256], data[4096];
    for (DWORD i = 0, type = 0, length = sizeof name, bytes = sizeof data;
         ::RegEnumValueA(key, i, name, &length, nullptr, &type, reinterpret_cast<BYTE*>(data),
                         &bytes) == ERROR_SUCCESS;
         ++i, length = sizeof name, bytes = sizeof data)
        text += path + ':' + name + '=' +
                (type == REG_DWORD ? std::to_string(*reinterpret_cast<DWORD*>(data))
                                   : std::string(data, bytes ? bytes - 1 : 0)) +
                '\n';
    for (DWORD i = 0; ::RegEnumKeyA(key, i, name, sizeof name) == ERROR_SUCCESS; ++i) {
        HKEY child = nullptr;
        ::RegOpenKeyA(key, name, &child);
        text += path + name + '\n' + DumpKey(child, path + name + '\\');
        ::RegCloseKey(child);
    }
    return text;
}

}  // namespace kitbag::test
