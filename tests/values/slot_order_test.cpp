// The order of the virtual operations, which programs built against earlier libraries count on.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>

#include <cstdint>
#include <cstring>

namespace {

using Str = const TWinString<char>&;
using Row = ValueTableEntry;

/// The slot of a virtual operation: a pointer to it holds its offset in the class's table plus one.
template <class Operation, class Class>
int S(Operation Class::*member) {
    std::intptr_t raw[2];
    std::memcpy(raw, &member, sizeof raw);
    return raw[0] & 1 ? static_cast<int>(raw[0] - 1) / int{sizeof(void*)} : -1;
}

template <class... Slot>
void ExpectSlots(int first, Slot... slots) {
    for (const int slot : {slots...}) EXPECT_EQ(first++, slot);
}

template <class... Visited>
void ExpectVisits() {
    ExpectSlots(0, S<void(const Visited&)>(&CValueVisitor::Visit)...);
}

/// Reaches the protected operations.
struct Reach : Value {
    using Value::operator=;
    static int CheckSlot() { return S(&Reach::CheckInitialised); }
    static int DefaultSlot() { return S(&Reach::UseDefaultValue); }
};

/// Behind Value's own operations. A destructor takes two slots.
constexpr int kFirst = 18 + 2 + 28;

TEST(SlotOrder, OfTheVisitorAndValue) {
    ExpectVisits<ExternalProgramValueTableEntry, ExternalProgramValueTable,
                 MediaLocationValueTableEntry, MediaLocationValueTable, Row, IdentValue,
                 FilenameValue, UInt32Enum, TStringValue, UInt32Value, Int32Value, GuidValue,
                 ByteArrayValue, BooleanValue, ValueCollection, ValueList, ValueTable, Value>();
    using V = Value;
    ExpectSlots(20, S(&V::Copy), S(&V::operator=), S(&V::GetValueName), S(&V::SetValueName),
                S(&V::Compare), S(&V::IsCollection), S(&V::IsTable), S(&V::IsTableEntry),
                S(&V::ToString), S(&V::SaveString), S(&V::SaveStringDataOnly),
                S(&V::SetRegistrySection), S<void(bool)>(&V::SetAutoRegistrySource),
                S<void(Str, Str, bool)>(&V::SetAutoRegistrySource), S(&V::ExistsRegistry),
                S<void() const>(&V::SaveRegistry), S<void(Str) const>(&V::SaveRegistry),
                S<void()>(&V::LoadRegistry), S<void(Str)>(&V::LoadRegistry), S(&V::SaveFixar),
                S(&V::LoadFixar), S(&V::Accept), S(&V::SetValueActions),
                S(&V::SetMinimumUserInterfaceLevel), S(&V::RebootNeeded), S(&V::RestartNeeded),
                Reach::CheckSlot(), Reach::DefaultSlot());
}

TEST(SlotOrder, OfTheScalarValues) {
    using B = BooleanValue;
    ExpectSlots(kFirst, S<bool(bool) const>(&B::operator==),
                S<bool(const B&) const>(&B::operator==), S(&B::GetValue), S(&B::SetValue),
                S(&B::SetDefaultValue));
    using T = TStringValue;
    using F = FilenameValue;
    ExpectSlots(kFirst, S(&T::GetValue), S(&T::SetValue), S<T&(Str)>(&T::operator=),
                S<T&(const T&)>(&T::operator=), S(&T::operator TWinString<char>),
                S<bool(Str) const>(&T::operator==), S<bool(const T&) const>(&T::operator==),
                S(&T::SetDefaultValue), S<F&(const F&)>(&F::operator=), S(&F::GetFilename),
                S(&F::GetFilenameNoExtension), S(&F::GetDirectory), S(&F::GetExtension),
                S(&F::GetFileSize));
    using E = UInt32Enum;
    ExpectSlots(S(&E::SetDefaultValue) + 1, S<E&(const E&)>(&E::operator=), S(&E::size),
                S(&E::InitialiseElements), S(&E::AddElement), S(&E::Lookup));
}

TEST(SlotOrder, OfTheContainers) {
    using C = ValueCollection;
    ExpectSlots(kFirst, S<C&(const C&)>(&C::operator=), S(&C::operator==), S(&C::DeclareValues),
                S<void(Value&, Str)>(&C::DeclareValue), S<void(Value&)>(&C::DeclareValue),
                S(&C::GetValue), S<Row&(const Row&)>(&Row::operator=),
                S<void(Value&, Str, bool)>(&Row::DeclareValue),
                S<void(IdentValue&) const>(&Row::GetIdent), S<IdentValue() const>(&Row::GetIdent));
    using L = ValueList;
    ExpectSlots(kFirst, S<L&(const L&)>(&L::operator=), S(&L::EntryFactory), S(&L::IsEmpty),
                S<bool(Value*)>(&L::AddEntry), S<bool(Value&)>(&L::AddEntry), S(&L::InsertEntry),
                S(&L::RemoveEntry), S(&L::RemoveAllEntries), S(&L::MoveEntry),
                S(&L::MoveEntryRelative), S<bool(Str, unsigned long&) const>(&L::ExistsRegistry),
                S(&L::DeclareVersion));
    using T = ValueTable;
    ExpectSlots(
        kFirst, S<T&(const T&)>(&T::operator=), S(&T::EntryFactory), S(&T::IsEmpty),
        S<bool(Row*)>(&T::AddEntry), S<bool(Row&)>(&T::AddEntry), S(&T::InsertEntry),
        S<void(IdentValue&)>(&T::RemoveEntry), S<void(int)>(&T::RemoveEntry),
        S(&T::RemoveAllEntries), S(&T::MoveEntry), S<void(IdentValue&, int)>(&T::MoveEntryRelative),
        S<void(int, int)>(&T::MoveEntryRelative), S<Row*(Str, const Value&) const>(&T::FindEntry),
        S<Row*(const IdentValue&) const>(&T::FindEntry), S(&T::FindEntryIndex), S(&T::Sort),
        S(&T::UsesUniqueIdents), S<bool(Str, unsigned long&) const>(&T::ExistsRegistry),
        S<void(Str, Str)>(&T::LoadRegistry), S(&T::DeclareVersion));
}

}  // namespace
