// The order of the virtual operations, which programs built against earlier libraries count on.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>

#include <cstdint>
#include <cstring>

namespace {

/// A pointer to a virtual operation holds the operation's offset in the class's table plus one.
template <class... Operation>
void ExpectSlots(int slot, Operation... operations) {
    const auto expect = [&slot](auto operation) {
        std::intptr_t raw = 0;
        std::memcpy(&raw, &operation, sizeof raw);
        EXPECT_EQ(slot++ * int{sizeof(void*)} + 1, raw);
    };
    (expect(operations), ...);
}

/// Picks one of the operations of a name.
template <class Signature, class Class>
auto Of(Signature Class::*operation) {
    return operation;
}

template <class... Visited>
void ExpectVisits() {
    ExpectSlots(0, Of<void(const Visited&)>(&CValueVisitor::Visit)...);
}

/// Behind Value's own operations. A destructor takes two slots.
constexpr int kFirst = 18 + 2 + 28;

using Text = TWinString<char>;
using Section = const Text&;

TEST(SlotOrder, StaysAsItIs) {
    ExpectVisits<ExternalProgramValueTableEntry, ExternalProgramValueTable,
                 MediaLocationValueTableEntry, MediaLocationValueTable, ValueTableEntry, IdentValue,
                 FilenameValue, UInt32Enum, TStringValue, UInt32Value, Int32Value, GuidValue,
                 ByteArrayValue, BooleanValue, ValueCollection, ValueList, ValueTable, Value>();
    using V = Value;
    ExpectSlots(20, &V::Copy, &V::operator=, &V::GetValueName, &V::SetValueName, &V::Compare,
                &V::IsCollection, &V::IsTable, &V::IsTableEntry, &V::ToString, &V::SaveString,
                &V::SaveStringDataOnly, &V::SetRegistrySection,
                Of<void(bool)>(&V::SetAutoRegistrySource),
                Of<void(Section, Section, bool)>(&V::SetAutoRegistrySource), &V::ExistsRegistry,
                Of<void() const>(&V::SaveRegistry), Of<void(Section) const>(&V::SaveRegistry),
                Of<void()>(&V::LoadRegistry), Of<void(Section)>(&V::LoadRegistry), &V::SaveFixar,
                &V::LoadFixar, &V::Accept, &V::SetValueActions, &V::SetMinimumUserInterfaceLevel,
                &V::RebootNeeded, &V::RestartNeeded);
    using B = BooleanValue;
    ExpectSlots(kFirst, Of<bool(bool) const>(&B::operator==),
                Of<bool(const B&) const>(&B::operator==), &B::GetValue, &B::SetValue,
                &B::SetDefaultValue);
    using S = TStringValue;
    ExpectSlots(kFirst, &S::GetValue, &S::SetValue, Of<S&(Section)>(&S::operator=),
                Of<S&(const S&)>(&S::operator=), &S::operator Text,
                Of<bool(Section) const>(&S::operator==), Of<bool(const S&) const>(&S::operator==),
                &S::SetDefaultValue);
    using F = FilenameValue;
    ExpectSlots(kFirst + 8, Of<F&(const F&)>(&F::operator=), &F::GetFilename,
                &F::GetFilenameNoExtension, &F::GetDirectory, &F::GetExtension, &F::GetFileSize);
    using E = UInt32Enum;
    ExpectSlots(kFirst + 3, Of<E&(const E&)>(&E::operator=), &E::size, &E::InitialiseElements,
                &E::AddElement, &E::Lookup);
    using C = ValueCollection;
    using R = ValueTableEntry;
    ExpectSlots(kFirst, Of<C&(const C&)>(&C::operator=), &C::operator==, &C::DeclareValues,
                Of<void(V&, Section)>(&C::DeclareValue), Of<void(V&)>(&C::DeclareValue),
                &C::GetValue, Of<R&(const R&)>(&R::operator=),
                Of<void(V&, Section, bool)>(&R::DeclareValue),
                Of<void(IdentValue&) const>(&R::GetIdent), Of<IdentValue() const>(&R::GetIdent));
    using Exists = bool(Section, unsigned long&) const;
    using L = ValueList;
    ExpectSlots(kFirst, Of<L&(const L&)>(&L::operator=), &L::EntryFactory, &L::IsEmpty,
                Of<bool(V*)>(&L::AddEntry), Of<bool(V&)>(&L::AddEntry), &L::InsertEntry,
                &L::RemoveEntry, &L::RemoveAllEntries, &L::MoveEntry, &L::MoveEntryRelative,
                Of<Exists>(&L::ExistsRegistry), &L::DeclareVersion);
    using T = ValueTable;
    ExpectSlots(
        kFirst, Of<T&(const T&)>(&T::operator=), &T::EntryFactory, &T::IsEmpty,
        Of<bool(R*)>(&T::AddEntry), Of<bool(R&)>(&T::AddEntry), &T::InsertEntry,
        Of<void(IdentValue&)>(&T::RemoveEntry), Of<void(int)>(&T::RemoveEntry),
        &T::RemoveAllEntries, &T::MoveEntry, Of<void(IdentValue&, int)>(&T::MoveEntryRelative),
        Of<void(int, int)>(&T::MoveEntryRelative), Of<R*(Section, const V&) const>(&T::FindEntry),
        Of<R*(const IdentValue&) const>(&T::FindEntry), &T::FindEntryIndex, &T::Sort,
        &T::UsesUniqueIdents, Of<Exists>(&T::ExistsRegistry),
        Of<void(Section, Section)>(&T::LoadRegistry), &T::DeclareVersion);
}

}  // namespace
