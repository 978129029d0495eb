#include <kitbag/com/registration_writer.h>
#include <kitbag/frame/delete_key_tree.h>
#include <kitbag/frame/owned.h>
#include <kitbag/frame/registry_calls.h>
#include <kitbag/frame/text_form.h>

namespace kitbag {

namespace {

using Entries = std::vector<RegistrationEntry>;
using Kind = RegistrationEntry::Kind;

constexpr wchar_t kDefaultValue[] = L"";
/// Enough to write, count and delete what is in a key.
constexpr REGSAM kAccess = KEY_READ | KEY_WRITE;

LSTATUS UnlessMissing(LSTATUS status) {
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

LSTATUS FirstFailure(LSTATUS first, LSTATUS next) { return first == ERROR_SUCCESS ? next : first; }

LSTATUS WriteData(HKEY key, const wchar_t* name, const RegistrationData& data) {
    if (const auto* number = std::get_if<DWORD>(&data))
        return SetValue(key, name, REG_DWORD, number, sizeof *number);
    const auto& text = std::get<std::wstring>(data);
    return SetValue(key, name, REG_SZ, text.c_str(), BytesOf<wchar_t>(text.size() + 1));
}

LSTATUS WriteAll(HKEY key, const Entries& entries);

LSTATUS Write(HKEY parent, const RegistrationEntry& entry) {
    const wchar_t* const name = entry.name.c_str();
    if (entry.kind == Kind::Value) return WriteData(parent, name, *entry.data);

    LSTATUS status = ERROR_SUCCESS;
    if (entry.kind == Kind::OwnKey || entry.kind == Kind::DeletedKey)
        status = UnlessMissing(DeleteTree(parent, name));
    if (entry.kind == Kind::DeletedKey || status != ERROR_SUCCESS) return status;

    RegistryKey key;
    status = CreateKey(parent, name, kAccess, key);
    if (status == ERROR_SUCCESS && entry.data)
        status = WriteData(key.Get(), kDefaultValue, *entry.data);
    return status == ERROR_SUCCESS ? WriteAll(key.Get(), entry.entries) : status;
}

LSTATUS WriteAll(HKEY key, const Entries& entries) {
    for (const RegistrationEntry& entry : entries)
        if (const LSTATUS status = Write(key, entry)) return status;
    return ERROR_SUCCESS;
}

LSTATUS RemoveIfEmpty(HKEY parent, const wchar_t* name, HKEY key) {
    DWORD keys = 0;
    DWORD values = 0;
    const LSTATUS status = QueryCounts<wchar_t>(key, &keys, &values);
    if (status != ERROR_SUCCESS || keys + values > 0) return status;
    return DeleteKey(parent, name);
}

LSTATUS RemoveAll(HKEY key, const Entries& entries);

LSTATUS RemoveNamed(HKEY parent, const RegistrationEntry& entry) {
    RegistryKey key;
    LSTATUS status = OpenKey(parent, entry.name.c_str(), kAccess, key);
    if (status != ERROR_SUCCESS) return status;

    status = RemoveAll(key.Get(), entry.entries);
    if (entry.data)
        status = FirstFailure(status, UnlessMissing(DeleteValue(key.Get(), kDefaultValue)));
    if (status != ERROR_SUCCESS || entry.kind == Kind::SharedKey) return status;
    return RemoveIfEmpty(parent, entry.name.c_str(), key.Get());
}

LSTATUS Remove(HKEY parent, const RegistrationEntry& entry) {
    switch (entry.kind) {
        case Kind::Value:
            return DeleteValue(parent, entry.name.c_str());
        case Kind::OwnKey:
            return DeleteTree(parent, entry.name.c_str());
        case Kind::Key:
        case Kind::SharedKey:
            return RemoveNamed(parent, entry);
        case Kind::DeletedKey:
            break;
    }
    return ERROR_SUCCESS;
}

LSTATUS RemoveAll(HKEY key, const Entries& entries) {
    LSTATUS first = ERROR_SUCCESS;
    for (const RegistrationEntry& entry : entries)
        first = FirstFailure(first, UnlessMissing(Remove(key, entry)));
    return first;
}

}  // namespace

HRESULT WriteRegistration(const std::vector<RegistrationRoot>& roots) {
    for (const RegistrationRoot& root : roots)
        if (const LSTATUS status = WriteAll(root.key, root.entries))
            return HRESULT_FROM_WIN32(status);
    return S_OK;
}

HRESULT RemoveRegistration(const std::vector<RegistrationRoot>& roots) {
    LSTATUS first = ERROR_SUCCESS;
    for (const RegistrationRoot& root : roots)
        first = FirstFailure(first, RemoveAll(root.key, root.entries));
    return HRESULT_FROM_WIN32(first);
}

}  // namespace kitbag
