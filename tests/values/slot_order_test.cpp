// The order of the virtual operations, which programs built against earlier libraries count on.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace {

/// A pointer to a virtual operation holds the operation's offset in the class's table plus one. A
/// number stands for so many operations of one name.
template <class... Item>
void ExpectSlots(int slot, Item... items) {
    const auto expect = [&slot](auto item) {
        if constexpr (std::is_integral_v<decltype(item)>) {
            slot += item;
        } else {
            std::intptr_t raw = 0;
            std::memcpy(&raw, &item, sizeof raw);
            EXPECT_EQ(slot++ * int{sizeof(void*)} + 1, raw);
        }
    };
    (expect(items), ...);
}

template <class... Visited>
void ExpectVisits() {
    ExpectSlots(0, static_cast<void (CValueVisitor::*)(const Visited&)>(&CValueVisitor::Visit)...);
}

/// Behind Value's own operations. A destructor takes two slots.
constexpr int kFirst = 18 + 2 + 28;

TEST(SlotOrder, StaysAsItIs) {
    ExpectVisits<ExternalProgramValueTableEntry, ExternalProgramValueTable,
                 MediaLocationValueTableEntry, MediaLocationValueTable, ValueTableEntry, IdentValue,
                 FilenameValue, UInt32Enum, TStringValue, UInt32Value, Int32Value, GuidValue,
                 ByteArrayValue, BooleanValue, ValueCollection, ValueList, ValueTable, Value>();
    using V = Value;
    ExpectSlots(20, &V::Copy, &V::operator=, &V::GetValueName, &V::SetValueName, &V::Compare,
                &V::IsCollection, &V::IsTable, &V::IsTableEntry, &V::ToString, &V::SaveString,
                &V::SaveStringDataOnly, &V::SetRegistrySection, 2, &V::ExistsRegistry, 2, 2,
                &V::SaveFixar, &V::LoadFixar, &V::Accept, &V::SetValueActions,
                &V::SetMinimumUserInterfaceLevel, &V::RebootNeeded, &V::RestartNeeded);
    ExpectSlots(kFirst + 2, &BooleanValue::GetValue, &BooleanValue::SetValue,
                &BooleanValue::SetDefaultValue);
    using F = FilenameValue;
    ExpectSlots(kFirst, &F::GetValue, &F::SetValue, 2, &F::operator TWinString<char>, 2,
                &F::SetDefaultValue, 1, &F::GetFilename, &F::GetFilenameNoExtension,
                &F::GetDirectory, &F::GetExtension, &F::GetFileSize);
    using E = UInt32Enum;
    ExpectSlots(kFirst + 4, &E::size, &E::InitialiseElements, &E::AddElement, &E::Lookup);
    using C = ValueCollection;
    ExpectSlots(kFirst + 1, &C::operator==, &C::DeclareValues, 2, &C::GetValue);
    using L = ValueList;
    ExpectSlots(kFirst + 1, &L::EntryFactory, &L::IsEmpty, 2, &L::InsertEntry, &L::RemoveEntry,
                &L::RemoveAllEntries, &L::MoveEntry, &L::MoveEntryRelative, 1, &L::DeclareVersion);
    using T = ValueTable;
    ExpectSlots(kFirst + 1, &T::EntryFactory, &T::IsEmpty, 2, &T::InsertEntry, 2,
                &T::RemoveAllEntries, &T::MoveEntry, 2, 2, &T::FindEntryIndex, &T::Sort,
                &T::UsesUniqueIdents, 1, 1, &T::DeclareVersion);
}

}  // namespace
