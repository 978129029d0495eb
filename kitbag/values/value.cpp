#include <kitbag/values/known_rows.h>
#include <kitbag/values/number_values.h>
#include <kitbag/values/text_values.h>
#include <kitbag/values/value.h>
#include <kitbag/values/value_casts.h>
#include <kitbag/values/value_collection.h>
#include <mbstring.h>

#include <typeinfo>
#include <utility>

namespace {

constexpr unsigned long kLevelBits = 0x000F;
constexpr unsigned long kFlagBits = 0xFFF0;

/// The members that may hold a value's display name, in the order of preference.
constexpr const char* kDisplayNameMembers[] = {"DisplayName", "Name"};

const unsigned char* MultiByte(const TWinString<char>& text) {
    return reinterpret_cast<const unsigned char*>(text.c_str());
}

template <class Number>
int CompareNumbers(Number a, Number b) {
    return (a > b) - (a < b);
}

/// The member of a collection or a row.
Value* FindMember(const Value& value, const char* memberName) {
    const TWinString<char> name(memberName ? memberName : "");
    if (const auto* collection = KB_GetAsValueCollection(&value)) return collection->GetValue(name);
    if (const auto* row = KB_GetAsValueTableEntry(&value)) return row->GetValue(name);
    return nullptr;
}

}  // namespace

static_assert(sizeof(Value) == 68, "programs are built against it");

Value::Value() = default;

Value::Value(const TWinString<char>& section, const TWinString<char>& name, bool cached) {
    Value::SetAutoRegistrySource(section, name, cached);
}

Value::Value(const Value& other)
    : CValueVisitor(other),
      valueActions_(other.valueActions_),
      rebootNeeded_(other.rebootNeeded_),
      restartNeeded_(other.restartNeeded_),
      valueName_(other.valueName_),
      empty_(other.empty_),
      valueInfoSource_(other.valueInfoSource_) {}

Value::~Value() { DatumChanges(); }

void Value::DatumChanges() const {
    if (isRemembered_) kitbag::KnownRows::Forget();
}

Value& Value::operator=(const Value& other) {
    if (this == &other) return *this;
    DatumChanges();
    rebootNeeded_ = other.HasValueAction(RebootNeededAction);
    restartNeeded_ = other.HasValueAction(RestartNeededAction);
    empty_ = other.empty_;
    valueInfoSource_ = other.valueInfoSource_;
    valueActions_ = other.valueActions_;
    return *this;
}

TWinString<char> Value::GetValueName() const { return valueName_; }
void Value::SetValueName(const TWinString<char>& name) {
    DatumChanges();
    valueName_ = name;
}

int Value::Compare(const Value& other) const {
    // The numbers are known here and do not override it: the tables of programs' own classes, which
    // are built already, lead here.
    if (typeid(*this) != typeid(other))
        return ::_mbscmp(MultiByte(ToString()), MultiByte(other.ToString()));
    if (const auto* number = dynamic_cast<const UInt32Value*>(this))
        return CompareNumbers(number->GetValue(),
                              static_cast<const UInt32Value&>(other).GetValue());
    if (const auto* number = dynamic_cast<const Int32Value*>(this))
        return CompareNumbers(number->GetValue(), static_cast<const Int32Value&>(other).GetValue());
    return ::_mbsicmp(MultiByte(ToString()), MultiByte(other.ToString()));
}

bool Value::IsCollection() const { return false; }
bool Value::IsTable() const { return false; }
bool Value::IsTableEntry() const { return false; }

TWinString<char> Value::ToString() const { return SaveString(); }
TWinString<char> Value::SaveString() const { return valueName_ + '=' + SaveStringDataOnly(); }

void Value::SetRegistrySection(const TWinString<char>& section) { registrySection_ = section; }

void Value::SetAutoRegistrySource(bool cached) {
    DatumChanges();
    autoRegistrySource_ = true;
    cached_ = cached;
}

void Value::SetAutoRegistrySource(const TWinString<char>& section, const TWinString<char>& name,
                                  bool cached) {
    registrySection_ = section;
    valueName_ = name;
    SetAutoRegistrySource(cached);
}

bool Value::ExistsRegistry() const { return false; }

void Value::SaveRegistry(const TWinString<char>& section) const {
    registrySection_ = section;
    if (!valueName_.empty()) SaveRegistry();
}

void Value::LoadRegistry(const TWinString<char>& section) {
    registrySection_ = section;
    if (!valueName_.empty()) LoadRegistry();
}

void Value::SaveFixar() const {}
void Value::LoadFixar() {}

void Value::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }

void Value::SetValueActions(unsigned long actions) { valueActions_ = actions; }

void Value::SetMinimumUserInterfaceLevel(ValueAction level) {
    valueActions_ = (valueActions_ & ~kLevelBits) | (level & kLevelBits);
}

bool Value::RebootNeeded() const { return rebootNeeded_; }
bool Value::RestartNeeded() const { return restartNeeded_; }

void Value::SetValueAction(ValueAction action) { valueActions_ |= action & kFlagBits; }
void Value::UnsetValueAction(ValueAction action) { valueActions_ &= ~(action & kFlagBits); }
bool Value::HasValueAction(ValueAction action) const { return (valueActions_ & action) == action; }
unsigned long Value::GetValueActions() const { return valueActions_; }
int Value::GetMinimumUserInterfaceLevel() const {
    return static_cast<int>(valueActions_ & kLevelBits);
}

bool Value::IsEmpty() const { return empty_; }

ValueInfoSource* Value::SetValueInfoSource(ValueInfoSource* source) {
    return std::exchange(valueInfoSource_, source);
}

bool Value::AskSource(SourceText text, TWinString<char>& out) const {
    return valueInfoSource_ && (valueInfoSource_->*text)(*this, out);
}

TWinString<char> Value::GetDisplayName() const {
    TWinString<char> text;
    return AskSource(&ValueInfoSource::GetDisplayName, text) ? text : FabricateDisplayName();
}

TWinString<char> Value::FabricateDisplayName() const {
    TWinString<char> text;
    for (const char* member : kDisplayNameMembers)
        if (GetStringValue(member, text) && !text.empty()) return text;
    return valueName_;
}

void Value::SetDisplayName(const TWinString<char>& text) {
    for (const char* member : kDisplayNameMembers)
        if (UpdateStringValue(member, text)) return;
    DatumChanges();
    valueName_ = text;
}

TWinString<char> Value::GetDescription() const {
    TWinString<char> text;
    return AskSource(&ValueInfoSource::GetDescription, text) ? text : TWinString<char>();
}

TWinString<char> Value::GetHelpFile() const {
    TWinString<char> text;
    return AskSource(&ValueInfoSource::GetHelpFile, text) ? text : TWinString<char>();
}

bool Value::GetStringValue(const char* memberName, TWinString<char>& out) const {
    const auto* member = KB_GetAsTStringValue(FindMember(*this, memberName));
    if (!member) return false;
    out = member->GetValue();
    return true;
}

bool Value::UpdateStringValue(const char* memberName, const TWinString<char>& text) const {
    auto* member = KB_GetAsTStringValue(FindMember(*this, memberName));
    if (!member) return false;
    member->SetValue(text);
    return true;
}

void Value::CheckInitialised() const {
    if (!empty_ && (!autoRegistrySource_ || cached_)) return;
    if (autoRegistrySource_)
        const_cast<Value*>(this)->LoadRegistry();
    else
        UseDefaultValue();
    empty_ = false;
}

DefaultValue::DefaultValue() = default;
DefaultValue::DefaultValue(const TWinString<char>& section, const TWinString<char>& name,
                           bool cached)
    : Value(section, name, cached) {}
DefaultValue::DefaultValue(const DefaultValue& other) : Value(other) {}
DefaultValue& DefaultValue::operator=(const DefaultValue& other) = default;

bool DefaultValue::HasDefaultValue() const { return defaultValueSet_; }
void DefaultValue::DefaultValueSet(bool set) const { defaultValueSet_ = set; }
