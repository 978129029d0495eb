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

template <class... Visited>
void ExpectVisits() {
    ExpectSlots(0, static_cast<void (CValueVisitor::*)(const Visited&)>(&CValueVisitor::Visit)...);
}

/// Behind Value's own operations. A destructor takes two slots.
constexpr int kFirst = 18 + 2 + 28;

/// Where a number leaves slots out, those are of operations that share a name.
TEST(SlotOrder, StaysAsItIs) {
    ExpectVisits<ExternalProgramValueTableEntry, ExternalProgramValueTable,
                 MediaLocationValueTableEntry, MediaLocationValueTable, ValueTableEntry, IdentValue,
                 FilenameValue, UInt32Enum, TStringValue, UInt32Value, Int32Value, GuidValue,
                 ByteArrayValue, BooleanValue, ValueCollection, ValueList, ValueTable, Value>();
    using V = Value;
    ExpectSlots(20, &V::Copy, &V::operator=, &V::GetValueName, &V::SetValueName, &V::Compare,
                &V::IsCollection, &V::IsTable, &V::IsTableEntry, &V::ToString, &V::SaveString,
                &V::SaveStringDataOnly, &V::SetRegistrySection);
    ExpectSlots(39, &V::SaveFixar, &V::LoadFixar, &V::Accept, &V::SetValueActions,
                &V::SetMinimumUserInterfaceLevel, &V::RebootNeeded, &V::RestartNeeded);
    using F = FilenameValue;
    ExpectSlots(kFirst + 9, &F::GetFilename, &F::GetFilenameNoExtension, &F::GetDirectory,
                &F::GetExtension, &F::GetFileSize);
    using E = UInt32Enum;
    ExpectSlots(kFirst + 4, &E::size, &E::InitialiseElements, &E::AddElement, &E::Lookup);
    using C = ValueTableEntry;
    ExpectSlots(kFirst + 9, static_cast<IdentValue (C::*)() const>(&C::GetIdent));
    using L = ValueList;
    ExpectSlots(kFirst + 5, &L::InsertEntry, &L::RemoveEntry, &L::RemoveAllEntries, &L::MoveEntry,
                &L::MoveEntryRelative);
    ExpectSlots(kFirst + 11, &L::DeclareVersion);
    using T = ValueTable;
    ExpectSlots(kFirst + 1, &T::EntryFactory, &T::IsEmpty);
    ExpectSlots(kFirst + 14, &T::FindEntryIndex, &T::Sort, &T::UsesUniqueIdents);
    ExpectSlots(kFirst + 19, &T::DeclareVersion);
}

}  // namespace
