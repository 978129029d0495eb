#include <kitbag/values/element_trees.h>
#include <kitbag/values/known_rows.h>
#include <kitbag/values/value_table.h>

#include <algorithm>
#include <utility>
#include <vector>

ValueTable::ValueTable() : ContainerValue(kitbag::kSequenceActions) {}

ValueTable::ValueTable(const ValueTable& other)
    : ContainerValue(other), auxiliaryText_(other.auxiliaryText_) {
    kitbag::TakeOver(*this, kitbag::CopiesOf(other.children_));
}

ValueTable& ValueTable::operator=(const ValueTable& other) {
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

bool ValueTable::IsEmpty() const { return size() == 0; }

bool ValueTable::AddEntry(ValueTableEntry* entry) { return entry && AddEntry(*entry); }
bool ValueTable::AddEntry(ValueTableEntry& entry) {
    if (UsesUniqueIdents() && FindEntryIndex(entry.GetIdent()) >= 0) return false;
    children_.Append(entry);
    return true;
}
bool ValueTable::InsertEntry(int index, ValueTableEntry& entry) {
    children_.Insert(index, entry);
    return true;
}

void ValueTable::RemoveEntry(IdentValue& ident) {
    const int index = FindEntryIndex(ident);
    if (index >= 0) RemoveEntry(index);
}
void ValueTable::RemoveEntry(int index) { children_.Remove(index); }
void ValueTable::RemoveAllEntries() { children_.Clear(); }

void ValueTable::MoveEntry(int from, int to) { children_.Move(from, to); }
void ValueTable::MoveEntryRelative(IdentValue& ident, int delta) {
    const int index = FindEntryIndex(ident);
    if (index >= 0) MoveEntry(index, kitbag::Shifted(index, delta));
}
void ValueTable::MoveEntryRelative(int index, int delta) {
    MoveEntry(index, kitbag::Shifted(index, delta));
}

ValueTableEntry* ValueTable::FindEntry(const TWinString<char>& memberName,
                                       const Value& value) const {
    const TWinString<char> text = value.SaveStringDataOnly();
    for (ValueTableEntry* row : children_.ByIndex()) {
        const Value* member = row ? row->GetValue(memberName) : nullptr;
        if (member && member->SaveStringDataOnly() == text) return row;
    }
    return nullptr;
}

ValueTableEntry* ValueTable::FindEntry(const IdentValue& ident) const {
    const int index = FindEntryIndex(ident);
    return index >= 0 ? at(index) : nullptr;
}

int ValueTable::FindEntryIndex(const IdentValue& ident) const {
    const TWinString<char> text = ident.GetValue();
    if (const auto known = kitbag::KnownRows::Find(children_, text)) return *known;
    int index = 0;
    for (const ValueTableEntry* row : children_.ByIndex()) {
        if (row && row->GetIdent() == text) return index;
        ++index;
    }
    return -1;
}

void ValueTable::Sort(const TWinString<char>& memberName) {
    struct Keyed {
        const Value* member;
        ValueTableEntry* row;
    };
    std::vector<Keyed> rows;
    for (ValueTableEntry* row : children_.ByIndex())
        rows.push_back({row ? row->GetValue(memberName) : nullptr, row});

    // Compare orders values of different classes by other rules than those of one class, so that
    // three values may contradict one another. std::sort could then run past the ends.
    const auto lacking =
        std::stable_partition(rows.begin(), rows.end(), [](const Keyed& a) { return a.member; });
    std::stable_sort(rows.begin(), lacking, [](const Keyed& a, const Keyed& b) {
        return a.member->Compare(*b.member) < 0;
    });

    for (int index = 0; const Keyed& keyed : rows) children_.At(index++) = keyed.row;
}

bool ValueTable::UsesUniqueIdents() const { return false; }

bool ValueTable::ExistsRegistry(const TWinString<char>& key, unsigned long& version) const {
    return kitbag::ReadTreeVersion(key, version);
}
unsigned long ValueTable::DeclareVersion() const { return 1; }

TWinString<char> ValueTable::SaveStringDataOnly() const {
    return '[' + kitbag::JoinTexts(children_, ",\n", &Value::ToString) + ']';
}

void ValueTable::SaveRegistry(const TWinString<char>& section) const {
    const auto save = [](const ValueTableEntry& row, const TWinString<char>& key) {
        row.SaveRegistry(key);
    };
    kitbag::SaveTree(kitbag::TreeKey(section, GetValueName()), DeclareVersion(), children_, save);
}

void ValueTable::LoadRegistry(const TWinString<char>& section) {
    LoadRegistry(section, GetValueName());
}

void ValueTable::LoadRegistry(const TWinString<char>& section, const TWinString<char>& subsection) {
    const auto take = [&](std::unique_ptr<ValueTableEntry> row, const TWinString<char>& key) {
        row->LoadRegistry(key);
        row->SetRegistrySection(key);
        kitbag::Adopt(*this, std::move(row));
    };
    kitbag::LoadTree(kitbag::TreeKey(section, subsection), kitbag::kRowClass, *this, take);
    MarkInitialised();
}

void ValueTable::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }
