#include <kitbag/frame/compiler.h>
#include <kitbag/values/filename_value.h>
#include <kitbag/values/guid_value.h>
#include <kitbag/values/known_rows.h>
#include <kitbag/values/number_values.h>
#include <kitbag/values/text_values.h>
#include <kitbag/values/uint32_enum.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <string>
#include <typeinfo>
#include <unordered_map>
#include <vector>

namespace kitbag {

namespace {

/// So many rows are asked sooner than remembered.
constexpr int kFewRows = 32;

std::atomic_flag inUse;
std::atomic<unsigned> changes = 0;

/// The table's slots as they were, the number of changes at that time, and for each hash of an
/// identifier the first row that has it.
std::vector<ValueTableEntry*> knownRows;
unsigned knownChanges = 0;
std::unordered_map<std::size_t, int> firstRows;

/// The memory, as long as nobody else has it.
class Turn {
 public:
    Turn() : taken_(!inUse.test_and_set(std::memory_order_acquire)) {}
    ~Turn() {
        if (taken_) inUse.clear(std::memory_order_release);
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    explicit operator bool() const { return taken_; }

 private:
    const bool taken_;
};

/// Of exactly one of these classes, whose texts are made of name and datum only.
bool IsPlainScalar(const Value& member) {
    const std::type_info& type = typeid(member);
    return type == typeid(TStringValue) || type == typeid(UInt32Value) ||
           type == typeid(Int32Value) || type == typeid(UInt32Enum) ||
           type == typeid(FilenameValue) || type == typeid(IdentValue) || type == typeid(GuidValue);
}

std::size_t HashOf(const TWinString<char>& ident) { return std::hash<std::string>()(ident); }

bool AreStillThere(const std::vector<ValueTableEntry*>& slots) {
    return knownChanges == changes && knownRows.size() <= slots.size() &&
           std::equal(knownRows.begin(), knownRows.end(), slots.begin());
}

}  // namespace

void KnownRows::Forget() { ++changes; }

bool KnownRows::IsLibrarysOwn(const ValueTableEntry& row) {
    static const ValueTableEntry plain;
    const auto isSteady = [](const Value* member) {
        return member && IsPlainScalar(*member) && !member->IsReadEveryTime();
    };
    using ToReference = void (ValueTableEntry::*)(IdentValue&) const;
    using ByValue = IdentValue (ValueTableEntry::*)() const;
    return DoAlike(row, plain, static_cast<ToReference>(&ValueTableEntry::GetIdent)) &&
           DoAlike(row, plain, static_cast<ByValue>(&ValueTableEntry::GetIdent)) &&
           std::ranges::all_of(row.identMembers_, isSteady);
}

void KnownRows::Watch(const ValueTableEntry& row) {
    row.isRemembered_ = true;
    for (const Value* member : row.identMembers_) member->isRemembered_ = true;
}

/// Asks the rows that are new since the last time; false where one must be asked every time.
bool KnownRows::Learn(const PointerSequence<ValueTableEntry>& rows) {
    if (!AreStillThere(rows.Slots())) {
        knownRows.clear();
        firstRows.clear();
        knownChanges = changes;
    }
    for (int index = static_cast<int>(knownRows.size()); index < rows.Size(); ++index) {
        ValueTableEntry* row = rows.Slots()[static_cast<std::size_t>(index)];
        if (row) {
            if (!IsLibrarysOwn(*row)) return false;
            firstRows.emplace(HashOf(row->GetIdent().GetValue()), index);
            // From now on: asking may have been the first read.
            Watch(*row);
        }
        knownRows.push_back(row);
    }
    return knownChanges == changes;
}

std::optional<int> KnownRows::Look(const PointerSequence<ValueTableEntry>& rows,
                                   const TWinString<char>& ident) {
    const auto found = firstRows.find(HashOf(ident));
    if (found == firstRows.end()) return -1;
    const ValueTableEntry* row = rows.Slots()[static_cast<std::size_t>(found->second)];
    if (row->GetIdent() == ident) return found->second;
    // Another identifier of the same hash.
    return {};
}

std::optional<int> KnownRows::Find(const PointerSequence<ValueTableEntry>& rows,
                                   const TWinString<char>& ident) {
    if (rows.Size() < kFewRows) return {};
    const Turn turn;
    if (!turn || !Learn(rows)) return {};
    return Look(rows, ident);
}

}  // namespace kitbag
