#include <kitbag/frame/compiler.h>
#include <kitbag/values/element_trees.h>
#include <kitbag/values/value_list.h>

#include <memory>
#include <typeinfo>
#include <utility>

ValueList::ValueList() : ContainerValue(kitbag::kSequenceActions) {}

ValueList::ValueList(const ValueList& other)
    : ContainerValue(other), auxiliaryText_(other.auxiliaryText_) {
    kitbag::TakeOver(*this, kitbag::CopiesOf(other.children_));
}

ValueList& ValueList::operator=(const ValueList& other) {
    if (this == &other) return *this;
    // All that may fail comes first, and all that the other is needed for: it may be an entry, or
    // lie in one.
    auto copies = kitbag::CopiesOf(other.children_);
    auto text = other.auxiliaryText_;
    ContainerValue::operator=(other);
    auxiliaryText_.swap(text);
    kitbag::TakeOver(*this, std::move(copies));
    return *this;
}

Value* ValueList::EntryFactory(const TWinString<char>&) const { return nullptr; }

bool ValueList::IsEmpty() const { return size() == 0; }

bool ValueList::AddEntry(Value* entry) { return entry && AddEntry(*entry); }
bool ValueList::AddEntry(Value& entry) {
    children_.Append(entry);
    return true;
}
bool ValueList::InsertEntry(int index, Value& entry) {
    children_.Insert(index, entry);
    return true;
}

void ValueList::RemoveEntry(int index) { children_.Remove(index); }
void ValueList::RemoveAllEntries() { children_.Clear(); }

void ValueList::MoveEntry(int from, int to) { children_.Move(from, to); }
void ValueList::MoveEntryRelative(int index, int delta) {
    MoveEntry(index, kitbag::Shifted(index, delta));
}

bool ValueList::ExistsRegistry(const TWinString<char>& key, unsigned long& version) const {
    return kitbag::ReadTreeVersion(key, version);
}
unsigned long ValueList::DeclareVersion() const { return 1; }

TWinString<char> ValueList::SaveStringDataOnly() const {
    return '[' + kitbag::JoinTexts(children_, ",\n", &Value::ToString) + ']';
}

void ValueList::SaveRegistry(const TWinString<char>& section) const {
    const auto save = [](const Value& entry, const TWinString<char>& key) {
        KB_SetStringA(key.c_str(), kitbag::kElementClass,
                      kitbag::StoredClassName(typeid(entry)).c_str());
        KB_SetTStringA(key.c_str(), kitbag::kElementName, entry.GetDisplayName());
        entry.SaveRegistry(key);
    };
    kitbag::SaveTree(kitbag::TreeKey(section, GetValueName()), DeclareVersion(), children_, save);
}

void ValueList::LoadRegistry(const TWinString<char>& section) {
    bool first = true;
    const auto take = [&](std::unique_ptr<Value> entry, const TWinString<char>& key) {
        if (std::exchange(first, false)) RemoveAllEntries();
        TWinString<char> name;
        if (KB_GetTStringA(key.c_str(), kitbag::kElementName, name)) entry->SetDisplayName(name);
        entry->LoadRegistry(key);
        kitbag::Adopt(*this, std::move(entry));
    };
    kitbag::LoadTree(kitbag::TreeKey(section, GetValueName()), kitbag::kElementClass, *this, take);
    MarkInitialised();
}

void ValueList::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }
