// The order of the virtual operations, which programs built against earlier libraries count on.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>

#include <cstdint>
#include <cstring>

namespace {

using Text = TWinString<char>;

/// Names one of several operations of a class by its type: Op<Value, void(bool)>(&Value::Set).
template <class Class, class Type>
constexpr auto Op(Type Class::*operation) {
    return operation;
}

/// A pointer to a virtual operation holds the operation's offset in the class's table plus one.
template <class... Operation>
void ExpectSlots(const char* which, int slot, Operation... operations) {
    SCOPED_TRACE(which);
    const auto expect = [&slot](auto operation) {
        std::intptr_t offset = 0;
        std::memcpy(&offset, &operation, sizeof offset);
        EXPECT_EQ(slot++, (offset - 1) / int{sizeof(void*)});
    };
    (expect(operations), ...);
}

template <class... Visited>
void ExpectVisits() {
    ExpectSlots("visits", 0, Op<CValueVisitor, void(const Visited&)>(&CValueVisitor::Visit)...);
}

/// Behind Value's own operations. A destructor takes two slots.
constexpr int kFirst = 18 + 2 + 28;

TEST(SlotOrder, OfVisitsAndValuesStays) {
    ExpectVisits<ExternalProgramValueTableEntry, ExternalProgramValueTable,
                 MediaLocationValueTableEntry, MediaLocationValueTable, ValueTableEntry, IdentValue,
                 FilenameValue, UInt32Enum, TStringValue, UInt32Value, Int32Value, GuidValue,
                 ByteArrayValue, BooleanValue, ValueCollection, ValueList, ValueTable, Value>();
    using V = Value;
    ExpectSlots("Value", 20, &V::Copy, &V::operator=, &V::GetValueName, &V::SetValueName,
                &V::Compare, &V::IsCollection, &V::IsTable, &V::IsTableEntry, &V::ToString,
                &V::SaveString, &V::SaveStringDataOnly, &V::SetRegistrySection,
                Op<V, void(bool)>(&V::SetAutoRegistrySource),
                Op<V, void(const Text&, const Text&, bool)>(&V::SetAutoRegistrySource),
                &V::ExistsRegistry, Op<V, void() const>(&V::SaveRegistry),
                Op<V, void(const Text&) const>(&V::SaveRegistry), Op<V, void()>(&V::LoadRegistry),
                Op<V, void(const Text&)>(&V::LoadRegistry), &V::SaveFixar, &V::LoadFixar,
                &V::Accept, &V::SetValueActions, &V::SetMinimumUserInterfaceLevel, &V::RebootNeeded,
                &V::RestartNeeded);
}

TEST(SlotOrder, OfScalarValuesStays) {
    using B = BooleanValue;
    ExpectSlots("BooleanValue", kFirst, Op<B, bool(bool) const>(&B::operator==),
                Op<B, bool(const B&) const>(&B::operator==), &B::GetValue, &B::SetValue,
                &B::SetDefaultValue);
    using I = Int32Value;
    ExpectSlots("Int32Value", kFirst, &I::GetValue, &I::SetValue, &I::SetDefaultValue);
    using G = GuidValue;
    ExpectSlots("GuidValue", kFirst, &G::GetValue, &G::SetValue, &G::SetDefaultValue);
    using A = ByteArrayValue;
    ExpectSlots("ByteArrayValue", kFirst, &A::operator==, &A::operator!=,
                Op<A, unsigned char*() const>(&A::GetValue),
                Op<A, unsigned char*(unsigned long*) const>(&A::GetValue),
                Op<A, bool(unsigned char*, unsigned long*) const>(&A::GetValue), &A::GetValueSize,
                &A::SetValueSize, &A::SetValue);
    using E = UInt32Enum;
    ExpectSlots("UInt32Enum", kFirst, &E::GetValue, &E::SetValue, &E::SetDefaultValue,
                Op<E, E&(const E&)>(&E::operator=), &E::size, &E::InitialiseElements,
                &E::AddElement, &E::Lookup);
    using S = TStringValue;
    ExpectSlots("TStringValue", kFirst, &S::GetValue, &S::SetValue,
                Op<S, S&(const Text&)>(&S::operator=), Op<S, S&(const S&)>(&S::operator=),
                &S::operator Text, Op<S, bool(const Text&) const>(&S::operator==),
                Op<S, bool(const S&) const>(&S::operator==), &S::SetDefaultValue);
    using F = FilenameValue;
    ExpectSlots("FilenameValue", kFirst + 8, Op<F, F&(const F&)>(&F::operator=), &F::GetFilename,
                &F::GetFilenameNoExtension, &F::GetDirectory, &F::GetExtension, &F::GetFileSize);
}

TEST(SlotOrder, OfContainersStays) {
    using C = ValueCollection;
    ExpectSlots("ValueCollection", kFirst, Op<C, C&(const C&)>(&C::operator=), &C::operator==,
                &C::DeclareValues, Op<C, void(Value&, const Text&)>(&C::DeclareValue),
                Op<C, void(Value&)>(&C::DeclareValue), &C::GetValue);
    using R = ValueTableEntry;
    ExpectSlots("ValueTableEntry", kFirst + 6, Op<R, R&(const R&)>(&R::operator=),
                Op<R, void(Value&, const Text&, bool)>(&R::DeclareValue),
                Op<R, void(IdentValue&) const>(&R::GetIdent),
                Op<R, IdentValue() const>(&R::GetIdent));
    using L = ValueList;
    ExpectSlots(
        "ValueList", kFirst, Op<L, L&(const L&)>(&L::operator=), &L::EntryFactory, &L::IsEmpty,
        Op<L, bool(Value*)>(&L::AddEntry), Op<L, bool(Value&)>(&L::AddEntry), &L::InsertEntry,
        &L::RemoveEntry, &L::RemoveAllEntries, &L::MoveEntry, &L::MoveEntryRelative,
        Op<L, bool(const Text&, unsigned long&) const>(&L::ExistsRegistry), &L::DeclareVersion);
    using T = ValueTable;
    ExpectSlots(
        "ValueTable", kFirst, Op<T, T&(const T&)>(&T::operator=), &T::EntryFactory, &T::IsEmpty,
        Op<T, bool(R*)>(&T::AddEntry), Op<T, bool(R&)>(&T::AddEntry), &T::InsertEntry,
        Op<T, void(IdentValue&)>(&T::RemoveEntry), Op<T, void(int)>(&T::RemoveEntry),
        &T::RemoveAllEntries, &T::MoveEntry, Op<T, void(IdentValue&, int)>(&T::MoveEntryRelative),
        Op<T, void(int, int)>(&T::MoveEntryRelative),
        Op<T, R*(const Text&, const Value&) const>(&T::FindEntry),
        Op<T, R*(const IdentValue&) const>(&T::FindEntry), &T::FindEntryIndex, &T::Sort,
        &T::UsesUniqueIdents, Op<T, bool(const Text&, unsigned long&) const>(&T::ExistsRegistry),
        Op<T, void(const Text&, const Text&)>(&T::LoadRegistry), &T::DeclareVersion);
}

}  // namespace
