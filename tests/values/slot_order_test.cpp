// The order of the virtual operations, which programs built against earlier libraries count on.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>

#include <cstring>
#include <initializer_list>

namespace {

using Str = const TWinString<char>&;

/// A pointer to a virtual operation holds its offset in the class's table, plus one.
template <class Class, class Operation>
int SlotOf(Operation Class::*member) {
    std::intptr_t raw[2];
    static_assert(sizeof raw == sizeof member);
    std::memcpy(raw, &member, sizeof raw);
    return (raw[0] & 1) != 0 && raw[1] == 0 ? static_cast<int>(raw[0] - 1) / int{sizeof(void*)}
                                            : -1;
}

/// Names one of several operations of a name by its type.
template <class Operation, class Class>
int SlotOfThe(Operation Class::*member) {
    return SlotOf(member);
}

void ExpectSlots(int first, std::initializer_list<int> slots) {
    for (const int slot : slots) EXPECT_EQ(first++, slot);
}

constexpr int kVisits = 18;
/// Where the operations begin that a class adds to those of Value. A destructor takes two slots.
constexpr int kOwn = kVisits + 2 + 28;

template <class Visited>
int VisitSlot() {
    return SlotOfThe<void(const Visited&)>(&CValueVisitor::Visit);
}

TEST(SlotOrder, OfTheVisitor) {
    ExpectSlots(
        0, {VisitSlot<ExternalProgramValueTableEntry>(), VisitSlot<ExternalProgramValueTable>(),
            VisitSlot<MediaLocationValueTableEntry>(), VisitSlot<MediaLocationValueTable>(),
            VisitSlot<ValueTableEntry>(), VisitSlot<IdentValue>(), VisitSlot<FilenameValue>(),
            VisitSlot<UInt32Enum>(), VisitSlot<TStringValue>(), VisitSlot<UInt32Value>(),
            VisitSlot<Int32Value>(), VisitSlot<GuidValue>(), VisitSlot<ByteArrayValue>(),
            VisitSlot<BooleanValue>(), VisitSlot<ValueCollection>(), VisitSlot<ValueList>(),
            VisitSlot<ValueTable>(), VisitSlot<Value>()});
}

/// Reaches the protected operations.
class Reach : public Value {
 public:
    using Value::operator=;
    static int CheckInitialisedSlot() { return SlotOf(&Reach::CheckInitialised); }
    static int UseDefaultValueSlot() { return SlotOf(&Reach::UseDefaultValue); }
};

TEST(SlotOrder, OfValue) {
    ExpectSlots(kVisits + 2, {SlotOf(&Value::Copy),
                              SlotOf(&Value::operator=),
                              SlotOf(&Value::GetValueName),
                              SlotOf(&Value::SetValueName),
                              SlotOf(&Value::Compare),
                              SlotOf(&Value::IsCollection),
                              SlotOf(&Value::IsTable),
                              SlotOf(&Value::IsTableEntry),
                              SlotOf(&Value::ToString),
                              SlotOf(&Value::SaveString),
                              SlotOf(&Value::SaveStringDataOnly),
                              SlotOf(&Value::SetRegistrySection),
                              SlotOfThe<void(bool)>(&Value::SetAutoRegistrySource),
                              SlotOfThe<void(Str, Str, bool)>(&Value::SetAutoRegistrySource),
                              SlotOf(&Value::ExistsRegistry),
                              SlotOfThe<void() const>(&Value::SaveRegistry),
                              SlotOfThe<void(Str) const>(&Value::SaveRegistry),
                              SlotOfThe<void()>(&Value::LoadRegistry),
                              SlotOfThe<void(Str)>(&Value::LoadRegistry),
                              SlotOf(&Value::SaveFixar),
                              SlotOf(&Value::LoadFixar),
                              SlotOf(&Value::Accept),
                              SlotOf(&Value::SetValueActions),
                              SlotOf(&Value::SetMinimumUserInterfaceLevel),
                              SlotOf(&Value::RebootNeeded),
                              SlotOf(&Value::RestartNeeded),
                              Reach::CheckInitialisedSlot(),
                              Reach::UseDefaultValueSlot()});
}

TEST(SlotOrder, OfTheScalarValues) {
    ExpectSlots(kOwn, {SlotOfThe<bool(bool) const>(&BooleanValue::operator==),
                       SlotOfThe<bool(const BooleanValue&) const>(&BooleanValue::operator==),
                       SlotOf(&BooleanValue::GetValue), SlotOf(&BooleanValue::SetValue),
                       SlotOf(&BooleanValue::SetDefaultValue)});
    ExpectSlots(
        kOwn, {SlotOf(&TStringValue::GetValue), SlotOf(&TStringValue::SetValue),
               SlotOfThe<TStringValue&(Str)>(&TStringValue::operator=),
               SlotOfThe<TStringValue&(const TStringValue&)>(&TStringValue::operator=),
               SlotOf(&TStringValue::operator TWinString<char>),
               SlotOfThe<bool(Str) const>(&TStringValue::operator==),
               SlotOfThe<bool(const TStringValue&) const>(&TStringValue::operator==),
               SlotOf(&TStringValue::SetDefaultValue),
               SlotOfThe<FilenameValue&(const FilenameValue&)>(&FilenameValue::operator=),
               SlotOf(&FilenameValue::GetFilename), SlotOf(&FilenameValue::GetFilenameNoExtension),
               SlotOf(&FilenameValue::GetDirectory), SlotOf(&FilenameValue::GetExtension),
               SlotOf(&FilenameValue::GetFileSize)});
    ExpectSlots(SlotOf(&UInt32Value::SetDefaultValue) + 1,
                {SlotOfThe<UInt32Enum&(const UInt32Enum&)>(&UInt32Enum::operator=),
                 SlotOf(&UInt32Enum::size), SlotOf(&UInt32Enum::InitialiseElements),
                 SlotOf(&UInt32Enum::AddElement), SlotOf(&UInt32Enum::Lookup)});
    EXPECT_EQ(SlotOf(&Value::ExistsRegistry), SlotOf(&BooleanValue::ExistsRegistry));
}

TEST(SlotOrder, OfTheContainers) {
    ExpectSlots(kOwn,
                {SlotOfThe<ValueCollection&(const ValueCollection&)>(&ValueCollection::operator=),
                 SlotOf(&ValueCollection::operator==), SlotOf(&ValueCollection::DeclareValues),
                 SlotOfThe<void(Value&, Str)>(&ValueCollection::DeclareValue),
                 SlotOfThe<void(Value&)>(&ValueCollection::DeclareValue),
                 SlotOf(&ValueCollection::GetValue),
                 SlotOfThe<ValueTableEntry&(const ValueTableEntry&)>(&ValueTableEntry::operator=),
                 SlotOfThe<void(Value&, Str, bool)>(&ValueTableEntry::DeclareValue),
                 SlotOfThe<void(IdentValue&) const>(&ValueTableEntry::GetIdent),
                 SlotOfThe<IdentValue() const>(&ValueTableEntry::GetIdent)});
    ExpectSlots(kOwn,
                {SlotOfThe<ValueList&(const ValueList&)>(&ValueList::operator=),
                 SlotOf(&ValueList::EntryFactory), SlotOf(&ValueList::IsEmpty),
                 SlotOfThe<bool(Value*)>(&ValueList::AddEntry),
                 SlotOfThe<bool(Value&)>(&ValueList::AddEntry), SlotOf(&ValueList::InsertEntry),
                 SlotOf(&ValueList::RemoveEntry), SlotOf(&ValueList::RemoveAllEntries),
                 SlotOf(&ValueList::MoveEntry), SlotOf(&ValueList::MoveEntryRelative),
                 SlotOfThe<bool(Str, unsigned long&) const>(&ValueList::ExistsRegistry),
                 SlotOf(&ValueList::DeclareVersion)});
    ExpectSlots(kOwn, {SlotOfThe<ValueTable&(const ValueTable&)>(&ValueTable::operator=),
                       SlotOf(&ValueTable::EntryFactory),
                       SlotOf(&ValueTable::IsEmpty),
                       SlotOfThe<bool(ValueTableEntry*)>(&ValueTable::AddEntry),
                       SlotOfThe<bool(ValueTableEntry&)>(&ValueTable::AddEntry),
                       SlotOf(&ValueTable::InsertEntry),
                       SlotOfThe<void(IdentValue&)>(&ValueTable::RemoveEntry),
                       SlotOfThe<void(int)>(&ValueTable::RemoveEntry),
                       SlotOf(&ValueTable::RemoveAllEntries),
                       SlotOf(&ValueTable::MoveEntry),
                       SlotOfThe<void(IdentValue&, int)>(&ValueTable::MoveEntryRelative),
                       SlotOfThe<void(int, int)>(&ValueTable::MoveEntryRelative),
                       SlotOfThe<ValueTableEntry*(Str, const Value&) const>(&ValueTable::FindEntry),
                       SlotOfThe<ValueTableEntry*(const IdentValue&) const>(&ValueTable::FindEntry),
                       SlotOf(&ValueTable::FindEntryIndex),
                       SlotOf(&ValueTable::Sort),
                       SlotOf(&ValueTable::UsesUniqueIdents),
                       SlotOfThe<bool(Str, unsigned long&) const>(&ValueTable::ExistsRegistry),
                       SlotOfThe<void(Str, Str)>(&ValueTable::LoadRegistry),
                       SlotOf(&ValueTable::DeclareVersion)});
}

}  // namespace
