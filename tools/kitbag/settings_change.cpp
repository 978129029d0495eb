#include "settings_change.h"

#include <kitbag/kitbag.h>

#include "system_error.h"

namespace kitbag::tool {

namespace {

Key CreateKey(const std::wstring& section) {
    HKEY key = nullptr;
    const LSTATUS status = ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, PathOf(section).c_str(), 0,
                                             nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) throw SystemFailure(KeyName(section), status);
    return Key(key);
}

/// The library has no function for values of every type.
void StoreValue(HKEY key, const std::wstring& name, const StoredValue& value,
                const std::wstring& fullName) {
    // The registry would append a terminator to a text that a zero follows in memory.
    std::vector<BYTE> followed = value.bytes;
    followed.insert(followed.end(), sizeof(wchar_t), 0xff);
    const LSTATUS status = ::RegSetValueExW(key, name.c_str(), 0, value.type, followed.data(),
                                            static_cast<DWORD>(value.bytes.size()));
    if (status != ERROR_SUCCESS) throw SystemFailure(fullName, status);
}

void EmptyRoot() {
    for (const auto& [path, section] : ReadSections({}))
        if (!path.empty() && path.find(L'\\') == std::wstring::npos) DeleteSection(path);
    for (const auto& [name, value] : ReadValues(HKEY_LOCAL_MACHINE, PathOf({})))
        DeleteValue({}, name);
}

}  // namespace

Failure WhyNotWritten(const std::wstring& section, const std::wstring& what) {
    Key key;
    std::wstring path = PathOf(section);
    LSTATUS status = OpenKey(HKEY_LOCAL_MACHINE, path, KEY_ALL_ACCESS, key);
    // What is missing was not created: the reason lies in the nearest key above it.
    while (status == ERROR_FILE_NOT_FOUND && path.find(L'\\') != std::wstring::npos) {
        path.erase(path.rfind(L'\\'));
        status = OpenKey(HKEY_LOCAL_MACHINE, path, KEY_ALL_ACCESS, key);
    }
    if (status == ERROR_SUCCESS) status = ERROR_REGISTRY_IO_FAILED;
    return {ExitCode::NoAccess, what + L": " + ErrorText(static_cast<DWORD>(status))};
}

void DeleteValue(const std::wstring& section, const std::wstring& name) {
    if (!KB_DeleteValueW(section.c_str(), name.c_str()))
        throw WhyNotWritten(section, FullName(section, name));
}

void DeleteSection(const std::wstring& section) {
    if (section.empty())
        EmptyRoot();
    else if (!KB_DeleteSectionW(section.c_str()))
        throw WhyNotWritten(section, KeyName(section));
}

void Apply(const SectionChange& change) {
    if (change.isDeleted) {
        if (!ReadSections(change.section).empty()) DeleteSection(change.section);
        return;
    }
    const Key key = CreateKey(change.section);
    for (const RegFileValue& value : change.values) {
        if (value.content)
            StoreValue(key.get(), value.name, *value.content, FullName(change.section, value.name));
        else if (FindValue(change.section, value.name))
            DeleteValue(change.section, value.name);
    }
}

void RequireConsent(bool isGiven, const std::wstring& whatWouldHappen) {
    if (!isGiven)
        throw Failure{ExitCode::WrongUse, whatWouldHappen + L"; nothing is done without --yes"};
}

}  // namespace kitbag::tool
