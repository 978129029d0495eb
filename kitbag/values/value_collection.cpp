#include <kitbag/frame/compiler.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/values/element_trees.h>
#include <kitbag/values/value_collection.h>

#include <typeinfo>

namespace {

/// The preset flags of a collection. Programs compare whole words, and know a collection by them.
constexpr unsigned long kCollectionActions = 0x130;

}  // namespace

ValueCollection::ValueCollection() : ContainerValue(kCollectionActions) {}
ValueCollection::ValueCollection(const ValueCollection& other) = default;

ValueCollection& ValueCollection::operator=(const ValueCollection& other) = default;

bool ValueCollection::operator==(const ValueCollection& other) const {
    return children_ == other.children_;
}

void ValueCollection::DeclareValues() {}

void ValueCollection::DeclareValue(Value& value, const TWinString<char>& name) {
    value.SetValueName(name);
    children_.Append(value);
}

void ValueCollection::DeclareValue(Value& value) { children_.Append(value); }

Value* ValueCollection::GetValue(const TWinString<char>& name) const {
    for (Value* member : children_.ByIndex())
        if (member && member->GetValueName() == name) return member;
    return nullptr;
}

Value* ValueCollection::Copy() const { return new ValueCollection(*this); }
bool ValueCollection::IsCollection() const { return true; }
TWinString<char> ValueCollection::SaveStringDataOnly() const {
    return '{' + kitbag::JoinTexts(children_, ",", &Value::ToString) + '}';
}

void ValueCollection::SaveRegistry(const TWinString<char>& section) const {
    for (const Value* member : children_.ByIndex())
        if (member) member->SaveRegistry(section);
}

void ValueCollection::LoadRegistry(const TWinString<char>& section) {
    for (Value* member : children_.ByIndex())
        if (member) member->LoadRegistry(section);
    MarkInitialised();
}

void ValueCollection::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }

ValueTableEntry::ValueTableEntry() = default;
ValueTableEntry::ValueTableEntry(const ValueTableEntry& other) : ValueCollection(other) {}

ValueTableEntry& ValueTableEntry::operator=(const ValueTableEntry& other) {
    ValueCollection::operator=(other);
    return *this;
}

ValueTableEntry& ValueTableEntry::operator=(const ValueCollection& other) {
    // The virtual one, so that a concrete row assigns its own members.
    if (const auto* row = dynamic_cast<const ValueTableEntry*>(&other)) return *this = *row;
    ValueCollection::operator=(other);
    return *this;
}

void ValueTableEntry::DeclareValue(Value& value, const TWinString<char>& name, bool isIdent) {
    ValueCollection::DeclareValue(value, name);
    if (!isIdent) return;
    DatumChanges();
    identMembers_.Append(value);
}

void ValueTableEntry::GetIdent(IdentValue& ident) const {
    ident.SetValue(kitbag::JoinTexts(identMembers_, "|", &Value::SaveString));
}

IdentValue ValueTableEntry::GetIdent() const {
    IdentValue ident;
    GetIdent(ident);
    return ident;
}

Value* ValueTableEntry::Copy() const { return new ValueTableEntry(*this); }
bool ValueTableEntry::IsTableEntry() const { return true; }

void ValueTableEntry::SaveRegistry(const TWinString<char>& section) const {
    KB_SetStringA(section.c_str(), kitbag::kRowClass,
                  kitbag::StoredClassName(typeid(*this)).c_str());
    ValueCollection::SaveRegistry(section);
}

void ValueTableEntry::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }
