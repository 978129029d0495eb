#include "sections.h"

#include <algorithm>
#include <vector>

#include "system_error.h"

namespace kitbag::tool {

namespace {

constexpr DWORD kLongestKeyName = 255;
constexpr DWORD kLongestValueName = 16383;

/// Reads again until the value has not grown meanwhile.
LSTATUS QueryValue(HKEY key, const std::wstring& name, StoredValue& value) {
    value.bytes.clear();
    for (;;) {
        auto size = static_cast<DWORD>(value.bytes.size());
        const LSTATUS status =
            ::RegQueryValueExW(key, name.c_str(), nullptr, &value.type, value.bytes.data(), &size);
        if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) return status;
        const bool isWhole = size <= value.bytes.size() && status == ERROR_SUCCESS;
        value.bytes.resize(size);
        if (isWhole) return ERROR_SUCCESS;
    }
}

/// A value that is gone meanwhile is left out.
LSTATUS ReadValues(HKEY key, Values& values) {
    std::wstring buffer(kLongestValueName + 1, L'\0');
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(buffer.size());
        const LSTATUS status =
            ::RegEnumValueW(key, index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) return ERROR_SUCCESS;
        if (status != ERROR_SUCCESS) return status;
        const std::wstring name(buffer, 0, length);
        StoredValue value;
        if (QueryValue(key, name, value) == ERROR_SUCCESS) values[name] = std::move(value);
    }
}

LSTATUS ReadNames(HKEY key, std::vector<std::wstring>& names) {
    for (DWORD index = 0;; ++index) {
        wchar_t name[kLongestKeyName + 1];
        DWORD length = std::size(name);
        const LSTATUS status =
            ::RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) return ERROR_SUCCESS;
        if (status != ERROR_SUCCESS) return status;
        names.emplace_back(name, length);
    }
}

void AddSections(HKEY parent, const std::wstring& keyName, const std::wstring& section,
                 Sections& sections) {
    Key key;
    LSTATUS status = OpenKey(parent, keyName, KEY_READ, key);
    if (status == ERROR_FILE_NOT_FOUND) return;
    Section& found = sections[section];
    std::vector<std::wstring> names;
    if (status == ERROR_SUCCESS) status = ReadValues(key.get(), found.values);
    if (status == ERROR_SUCCESS) status = ReadNames(key.get(), names);
    found.status = status;
    // Deleted while it was read: it does not exist.
    if (status == ERROR_KEY_DELETED) sections.erase(section);
    for (const std::wstring& name : names)
        AddSections(key.get(), name, JoinedPath(section, name), sections);
}

std::wstring WithoutBackslashesAround(std::wstring_view path) {
    while (path.starts_with(L'\\')) path.remove_prefix(1);
    while (path.ends_with(L'\\')) path.remove_suffix(1);
    return std::wstring(path);
}

}  // namespace

LSTATUS OpenKey(HKEY parent, const std::wstring& path, REGSAM access, Key& key) {
    HKEY opened = nullptr;
    const LSTATUS status = ::RegOpenKeyExW(parent, path.c_str(), 0, access, &opened);
    key.reset(status == ERROR_SUCCESS ? opened : nullptr);
    return status;
}

bool SectionLess::operator()(const std::wstring& a, const std::wstring& b) const {
    // The end of a step sorts before any character of a name.
    const auto ordered = [](const std::wstring& path) {
        std::wstring folded = Folded(path);
        std::ranges::replace(folded, L'\\', L'\1');
        return folded;
    };
    return ordered(a) < ordered(b);
}

Sections ReadSections(const std::wstring& section) {
    Sections sections;
    AddSections(HKEY_LOCAL_MACHINE, PathOf(section), section, sections);
    return sections;
}

Sections ReadAllSections(const std::wstring& section) {
    Sections sections = ReadSections(section);
    for (const auto& [path, content] : sections)
        if (content.status != ERROR_SUCCESS) throw SystemFailure(KeyName(path), content.status);
    return sections;
}

Sections ReadExistingSections(const std::wstring& section) {
    Sections sections = ReadAllSections(section);
    if (sections.empty()) throw NotThere(KeyName(section));
    return sections;
}

std::optional<StoredValue> FindValue(const std::wstring& section, const std::wstring& name) {
    Key key;
    StoredValue value;
    LSTATUS status = OpenKey(HKEY_LOCAL_MACHINE, PathOf(section), KEY_READ, key);
    if (status == ERROR_SUCCESS) status = QueryValue(key.get(), name, value);
    if (status == ERROR_FILE_NOT_FOUND) return std::nullopt;
    if (status != ERROR_SUCCESS) throw SystemFailure(FullName(section, name), status);
    return value;
}

Values ReadValues(HKEY parent, const std::wstring& path) {
    Key key;
    Values values;
    if (OpenKey(parent, path, KEY_READ, key) == ERROR_SUCCESS) ReadValues(key.get(), values);
    return values;
}

std::optional<std::wstring> ReadText(HKEY parent, const std::wstring& path,
                                     const std::wstring& name) {
    Key key;
    StoredValue value;
    if (OpenKey(parent, path, KEY_READ, key) != ERROR_SUCCESS ||
        QueryValue(key.get(), name, value) != ERROR_SUCCESS ||
        (value.type != REG_SZ && value.type != REG_EXPAND_SZ))
        return std::nullopt;
    return TextOf(value);
}

std::wstring PathOf(const std::wstring& section) { return JoinedPath(kSettingsRoot, section); }

std::wstring KeyName(const std::wstring& section) {
    return L"HKEY_LOCAL_MACHINE\\" + PathOf(section);
}

std::wstring FullName(const std::wstring& section, const std::wstring& name) {
    return KeyName(section) + L", value " + (name.empty() ? DisplayName(name) : Quoted(name));
}

std::wstring DisplayName(const std::wstring& name) { return name.empty() ? L"(default)" : name; }

std::optional<std::wstring> SectionOfKey(std::wstring_view key) {
    for (const std::wstring software : {L"Software\\", L"Software\\WOW6432Node\\"}) {
        const std::wstring root =
            L"HKEY_LOCAL_MACHINE\\" + software + L"Tarnwick\\Vidmoor\\Configuration";
        if (IsWithin(std::wstring(key), root))
            return std::wstring(key.substr(std::min(root.size() + 1, key.size())));
    }
    return std::nullopt;
}

std::wstring SectionArgument(const std::wstring& word) {
    const std::wstring path = WithoutBackslashesAround(word);
    std::wstring section = SectionOfKey(path).value_or(path);
    if (section.find(L"\\\\") != std::wstring::npos)
        throw Failure{ExitCode::WrongUse, Quoted(word) + L" is no section: a step has no name"};
    return section;
}

std::wstring JoinedPath(const std::wstring& path, const std::wstring& name) {
    return path + (path.empty() || name.empty() ? L"" : L"\\") + name;
}

bool IsWithin(const std::wstring& section, const std::wstring& outer) {
    if (outer.empty()) return true;
    if (section.size() > outer.size() && section[outer.size()] != L'\\') return false;
    return AreSameNames(std::wstring_view(section).substr(0, outer.size()), outer);
}

}  // namespace kitbag::tool
