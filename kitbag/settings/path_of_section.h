// Where a section lies.
#pragma once

#include <kitbag/registry/settings_root.h>

#include <string>

namespace kitbag {

/// Below HKEY_LOCAL_MACHINE; the settings root itself for an empty section.
inline std::wstring PathOfSection(const std::wstring& section) {
    std::wstring path(kSettingsRoot<wchar_t>);
    return section.empty() ? path : path + L'\\' + section;
}

}  // namespace kitbag
