#include <kitbag/frame/owned.h>
#include <kitbag/frame/registry_calls.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/values/guid_value.h>
#include <kitbag/values/scalar_bodies.h>
#include <objbase.h>

#include <iterator>
#include <string>

namespace kitbag {

namespace {

/// The default value of a key where that is a text, as it stands there; empty otherwise.
std::string DefaultTextOf(const RegistryKey& key) {
    DWORD type = REG_NONE;
    DWORD bytes = 0;
    if (QueryValue(key.Get(), "", &type, nullptr, &bytes) != ERROR_SUCCESS) return {};
    if (type != REG_SZ && type != REG_EXPAND_SZ) return {};
    std::string text(bytes, '\0');
    if (QueryValue(key.Get(), "", nullptr, text.data(), &bytes) != ERROR_SUCCESS) return {};
    // Up to the first zero, which other programs store in the middle too.
    return {text, 0, text.find('\0')};
}

}  // namespace

/// A stored text that is no GUID counts as read and leaves the datum as it is.
bool Stored<GUID>::Read(const char* section, const char* name, GUID& datum) {
    TWinString<char> text;
    if (!KB_GetTStringA(section, name, text)) return false;
    GUID parsed;
    if (SUCCEEDED(::CLSIDFromString(ToWide(text.c_str()).c_str(), &parsed))) datum = parsed;
    return true;
}
void Stored<GUID>::Write(const char* section, const char* name, const GUID& datum) {
    KB_SetTStringA(section, name, GuidValue::GUID2TString(datum));
}

template class ScalarValue<GuidValue, GUID>;

}  // namespace kitbag

GuidValue::GuidValue(const GUID& value) { GuidValue::SetValue(value); }
GUID GuidValue::GetValue() const { return Initialised(); }
void GuidValue::SetValue(const GUID& value) { Commit(value); }
void GuidValue::SetDefaultValue(const GUID& value, bool) { default_ = value; }
bool GuidValue::ExistsRegistry() const { return IsStored(); }

void GuidValue::LoadRegistry() {
    UseDefaultValue();
    ScalarValue::LoadRegistry();
}

TWinString<char> GuidValue::SaveStringDataOnly() const { return GUID2TString(GetValue()); }

TWinString<char> GuidValue::GUID2TString(const GUID& value) {
    wchar_t text[40];
    ::StringFromGUID2(value, text, std::size(text));
    return kitbag::ToNarrow(text);
}

TWinString<char> GuidValue::GUID2DisplayString(const GUID& value) {
    const TWinString<char> guid = GUID2TString(value);
    const kitbag::RegistryKey key =
        kitbag::OpenedKey(HKEY_CLASSES_ROOT, ("CLSID\\" + guid).c_str(), KEY_READ);
    const TWinString<char> name = key ? kitbag::DefaultTextOf(key) : std::string();
    return name.empty() ? guid : name;
}
