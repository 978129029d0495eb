#include <kitbag/frame/module_base.h>
#include <kitbag/frame/owned.h>
#include <kitbag/frame/registry_calls.h>
#include <kitbag/frame/resource_ids.h>
#include <kitbag/frame/string_table.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/values/scalar_values.h>
#include <objbase.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace kitbag {

namespace {

using Bytes = std::vector<unsigned char>;

// How each datum is stored. Reading answers whether the registry has one; where it has none the
// datum stays as it is.

bool Read(const char* section, const char* name, bool& datum) {
    return KB_GetBoolA(section, name, &datum);
}
void Write(const char* section, const char* name, bool datum) { KB_SetBoolA(section, name, datum); }

bool Read(const char* section, const char* name, long& datum) {
    int number = 0;
    if (!KB_GetIntA(section, name, &number)) return false;
    datum = number;
    return true;
}
void Write(const char* section, const char* name, long datum) {
    KB_SetIntA(section, name, static_cast<int>(datum));
}

bool Read(const char* section, const char* name, unsigned long& datum) {
    return KB_GetDWORDA(section, name, &datum);
}
void Write(const char* section, const char* name, unsigned long datum) {
    KB_SetDWORDA(section, name, datum);
}

bool Read(const char* section, const char* name, TWinString<char>& datum) {
    return KB_GetTStringA(section, name, datum);
}
void Write(const char* section, const char* name, const TWinString<char>& datum) {
    KB_SetTStringA(section, name, datum);
}

/// A stored text that is no GUID counts as read and leaves the datum as it is.
bool Read(const char* section, const char* name, GUID& datum) {
    TWinString<char> text;
    if (!KB_GetTStringA(section, name, text)) return false;
    GUID parsed;
    if (SUCCEEDED(::CLSIDFromString(ToWide(text.c_str()).c_str(), &parsed))) datum = parsed;
    return true;
}
void Write(const char* section, const char* name, const GUID& datum) {
    KB_SetTStringA(section, name, GuidValue::GUID2TString(datum));
}

bool Read(const char* section, const char* name, Bytes& datum) {
    unsigned long size = 0;
    if (!KB_GetDataSizeA(section, name, &size)) return false;
    datum.assign(size, 0);
    if (size > 0) KB_GetDataA(section, name, size, datum.data(), nullptr);
    return true;
}
void Write(const char* section, const char* name, const Bytes& datum) {
    KB_SetDataA(section, name, static_cast<DWORD>(datum.size()), datum.data());
}

unsigned char* DataOf(const Bytes& bytes) {
    return bytes.empty() ? nullptr : const_cast<unsigned char*>(bytes.data());
}

/// The default value of a key where that is a text; empty otherwise.
std::string DefaultTextOf(const RegistryKey& key) {
    DWORD type = REG_NONE;
    DWORD bytes = 0;
    if (QueryValue(key.Get(), "", &type, nullptr, &bytes) != ERROR_SUCCESS || type != REG_SZ)
        return {};
    std::string text(bytes, '\0');
    if (QueryValue(key.Get(), "", nullptr, text.data(), &bytes) != ERROR_SUCCESS) return {};
    // Up to the first zero, which other programs store in the middle too.
    return {text, 0, text.find('\0')};
}

}  // namespace

template <class Class, class Datum>
ScalarValue<Class, Datum>::ScalarValue() = default;

template <class Class, class Datum>
ScalarValue<Class, Datum>::ScalarValue(const TWinString<char>& section,
                                       const TWinString<char>& name, bool cached)
    : DefaultValue(section, name, cached) {}

template <class Class, class Datum>
ScalarValue<Class, Datum>::ScalarValue(const ScalarValue&) = default;

template <class Class, class Datum>
ScalarValue<Class, Datum>& ScalarValue<Class, Datum>::operator=(const ScalarValue&) = default;

template <class Class, class Datum>
Value* ScalarValue<Class, Datum>::Copy() const {
    return new Class(static_cast<const Class&>(*this));
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::SaveRegistry() const {
    // Not where it holds a datum already: an uncached one would be read back before it is written.
    if (IsEmpty()) CheckInitialised();
    Write(GetRegistrySection().c_str(), GetValueName().c_str(), datum_);
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::LoadRegistry() {
    if (!ReadStored(datum_)) UseDefaultValue();
    MarkInitialised();
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::Accept(CValueVisitor& visitor) const {
    visitor.Visit(static_cast<const Class&>(*this));
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::UseDefaultValue() const {
    DefaultValueSet(true);
    datum_ = default_;
}

template <class Class, class Datum>
const Datum& ScalarValue<Class, Datum>::Initialised() const {
    CheckInitialised();
    return datum_;
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::Commit() {
    MarkInitialised();
    if (HasAutoRegistrySource()) SaveRegistry();
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::Commit(const Datum& datum) {
    datum_ = datum;
    Commit();
}

template <class Class, class Datum>
bool ScalarValue<Class, Datum>::ReadStored(Datum& datum) const {
    return Read(GetRegistrySection().c_str(), GetValueName().c_str(), datum);
}

template <class Class, class Datum>
bool ScalarValue<Class, Datum>::IsStored() const {
    Datum ignored{};
    return ReadStored(ignored);
}

template class ScalarValue<BooleanValue, bool>;
template class ScalarValue<Int32Value, long>;
template class ScalarValue<UInt32Value, unsigned long>;
template class ScalarValue<GuidValue, GUID>;
template class ScalarValue<ByteArrayValue, Bytes>;
template class ScalarValue<TStringValue, TWinString<char>>;

}  // namespace kitbag

bool BooleanValue::operator==(bool value) const { return GetValue() == value; }
bool BooleanValue::operator==(const BooleanValue& other) const {
    return GetValue() == other.GetValue();
}
bool BooleanValue::GetValue() const { return Initialised(); }
void BooleanValue::SetValue(bool value) { Commit(value); }
void BooleanValue::SetDefaultValue(bool value, bool) { default_ = value; }
bool BooleanValue::ExistsRegistry() const { return IsStored(); }

TWinString<char> BooleanValue::SaveStringDataOnly() const {
    const UINT whenTrue = type_ == 1   ? KITBAG_STRING_ON
                          : type_ == 2 ? KITBAG_STRING_YES
                                       : KITBAG_STRING_TRUE;
    return kitbag::LoadText<char>(kitbag::ModuleBase(), GetValue() ? whenTrue : whenTrue + 1);
}

long Int32Value::GetValue() const { return Initialised(); }
void Int32Value::SetValue(long value) { Commit(value); }
void Int32Value::SetDefaultValue(long value) { default_ = value; }

TWinString<char> Int32Value::SaveStringDataOnly() const {
    TWinString<char> text;
    text.Format("%d", GetValue());
    return text;
}

unsigned long UInt32Value::GetValue() const { return Initialised(); }
void UInt32Value::SetValue(unsigned long value) { Commit(value); }
bool UInt32Value::ExistsRegistry() const { return IsStored(); }

void UInt32Value::SetDefaultValue(unsigned long value, bool writeIfMissing) {
    default_ = value;
    if (HasAutoRegistrySource() && writeIfMissing && !ExistsRegistry())
        KB_SetDWORDA(GetRegistrySection().c_str(), GetValueName().c_str(), default_);
}

TWinString<char> UInt32Value::SaveStringDataOnly() const {
    TWinString<char> text;
    text.Format("%u", GetValue());
    return text;
}

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

bool ByteArrayValue::operator==(const ByteArrayValue& other) const {
    return Initialised() == other.Initialised();
}
bool ByteArrayValue::operator!=(const ByteArrayValue& other) const { return !(*this == other); }

unsigned char* ByteArrayValue::GetValue() const { return kitbag::DataOf(Initialised()); }

unsigned char* ByteArrayValue::GetValue(unsigned long* size) const {
    *size = GetValueSize();
    // Not by way of GetValue: an uncached value would be read again, with a size of its own.
    return kitbag::DataOf(datum_);
}

bool ByteArrayValue::GetValue(unsigned char* buffer, unsigned long* size) const {
    const unsigned long available = std::exchange(*size, GetValueSize());
    if (available < *size) return false;
    std::ranges::copy(datum_, buffer);
    return true;
}

unsigned long ByteArrayValue::GetValueSize() const {
    return static_cast<unsigned long>(Initialised().size());
}

unsigned char* ByteArrayValue::SetValueSize(unsigned long size) {
    datum_.resize(size);
    return kitbag::DataOf(datum_);
}

void ByteArrayValue::SetValue() { Commit(); }

unsigned char* ByteArrayValue::GetDefaultValue(unsigned long& size) const {
    size = static_cast<unsigned long>(default_.size());
    return kitbag::DataOf(default_);
}

void ByteArrayValue::LoadRegistry() {
    if (ReadStored(datum_)) MarkInitialised();
}

TWinString<char> ByteArrayValue::SaveStringDataOnly() const {
    return std::string(GetValueSize(), '\7');
}

TWinString<char> TStringValue::GetValue() const { return Initialised(); }
void TStringValue::SetValue(const TWinString<char>& value) { Commit(value); }
TStringValue& TStringValue::operator=(const TWinString<char>& value) {
    SetValue(value);
    return *this;
}
TStringValue::operator TWinString<char>() const { return GetValue(); }
bool TStringValue::operator==(const TWinString<char>& value) const { return GetValue() == value; }
bool TStringValue::operator==(const TStringValue& other) const {
    return GetValue() == other.GetValue();
}
void TStringValue::SetDefaultValue(const TWinString<char>& value, bool) { default_ = value; }
bool TStringValue::ExistsRegistry() const { return IsStored(); }

TWinString<char> TStringValue::SaveStringDataOnly() const { return '\'' + GetValue() + '\''; }

IdentValue::IdentValue(const TWinString<char>& value) { IdentValue::SetValue(value); }
Value* IdentValue::Copy() const { return new IdentValue(*this); }
void IdentValue::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }

// NOLINTNEXTLINE(performance-unnecessary-value-param): programs are built against it
TWinString<char> IdentValue::GetStringField(TWinString<char> field) const {
    const std::string text = GetValue();
    const std::string opening = field + "='";
    std::size_t begin = text.find(opening);
    if (begin == std::string::npos) return {};
    begin += opening.size();
    const std::size_t end = text.find('\'', begin);
    return end == std::string::npos ? std::string() : text.substr(begin, end - begin);
}
