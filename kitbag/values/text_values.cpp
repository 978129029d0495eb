#include <kitbag/registry/stored_values.h>
#include <kitbag/values/scalar_bodies.h>
#include <kitbag/values/text_values.h>

#include <string>

namespace kitbag {

bool Stored<TWinString<char>>::Read(const char* section, const char* name,
                                    TWinString<char>& datum) {
    return KB_GetTStringA(section, name, datum);
}
void Stored<TWinString<char>>::Write(const char* section, const char* name,
                                     const TWinString<char>& datum) {
    KB_SetTStringA(section, name, datum);
}

template class ScalarValue<TStringValue, TWinString<char>>;

}  // namespace kitbag

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
