#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/private_registry.h>
#include <tests/values/recordings.h>

#include <deque>
#include <stdexcept>

namespace {

using namespace kitbag::test;

TEST(ValueCollection, PointsAtItsMembers) {
    ValueCollection collection;
    TStringValue first, second, named;
    named.SetValueName("Own name");
    collection.DeclareValue(first, "A");
    collection.DeclareValue(second, "A");
    collection.DeclareValue(named);
    EXPECT_EQ(3, collection.size());
    EXPECT_EQ("{A='',A='',Own name=''}", collection.SaveStringDataOnly());
    EXPECT_EQ(&first, collection.GetValue("A")) << "the first of one name";
    EXPECT_EQ(&named, collection.GetValue("Own name"));
    EXPECT_EQ(nullptr, collection.GetValue("a"));
    EXPECT_EQ(&second, collection[1]);
    EXPECT_EQ(0, ValueCollection(collection).size());
    EXPECT_EQ("{}", ValueCollection().SaveStringDataOnly());
}

TEST(ValueCollection, IsLengthenedPastItsEnd) {
    ValueCollection collection;
    Int32Value member;
    collection.DeclareValue(member, "A");
    EXPECT_EQ(nullptr, collection.at(5));
    EXPECT_EQ(6, collection.size());
    EXPECT_THROW(collection[-1], std::length_error);
    EXPECT_EQ(nullptr, collection.GetValue("B")) << "null members are passed over";
    EXPECT_EQ("{A=0}", collection.SaveStringDataOnly());
}

TEST(ValueCollection, EqualsOneOfTheSameMembers) {
    ValueCollection collection, same, other, longer;
    Int32Value member, twin;
    for (ValueCollection* each : {&collection, &same, &longer}) each->DeclareValue(member, "A");
    longer.DeclareValue(twin, "B");
    other.DeclareValue(twin, "A");
    EXPECT_TRUE(collection == same);
    EXPECT_FALSE(collection == other) << "equal content";
    EXPECT_FALSE(collection == longer);
    EXPECT_FALSE(collection == ValueCollection(collection));
}

TEST(ValueCollection, SavesAndLoadsItsMembersInASection) {
    ValueCollection collection;
    Int32Value first, second;
    Recordings table{4};
    collection.DeclareValue(first, "First");
    collection.DeclareValue(second, "Second");
    collection.DeclareValue(table, "Table");
    first.SetValue(1);
    second.SetValue(2);
    second.SetDefaultValue(9);
    collection.SaveRegistry();
    EXPECT_FALSE(RawKey::Exists()) << "it has no place of its own";
    collection.SaveRegistry("S");
    EXPECT_EQ(1u, RawKey("S").NumberOf(L"First"));
    EXPECT_EQ(2u, RawKey("S").NumberOf(L"Second"));
    EXPECT_EQ(4u, RawKey("S\\Table\\00000000").NumberOf(L"Minutes"));
    KB_SetIntA("S", "First", 7);
    KB_DeleteValueA("S", "Second");
    EXPECT_TRUE(collection.IsEmpty());
    collection.LoadRegistry("S");
    EXPECT_FALSE(collection.IsEmpty());
    EXPECT_EQ(7, first.GetValue());
    EXPECT_EQ(9, second.GetValue());
    EXPECT_EQ("4 4", Shown(table));
}

/// Declares others while it is loaded, saved, shown or takes a level.
struct Spreading : Int32Value {
    using Int32Value::operator=;
    using Int32Value::LoadRegistry;
    using Int32Value::SaveRegistry;
    void SaveRegistry(const TWinString<char>&) const override { Spread(); }
    void LoadRegistry(const TWinString<char>&) override { Spread(); }
    void SetMinimumUserInterfaceLevel(ValueAction) override { Spread(); }
    TWinString<char> ToString() const override { return Spread(), TWinString<char>(); }
    void Spread() const {
        while (others.size() < 100) {
            others.emplace_back();
            collection.DeclareValue(others.back(), std::to_string(others.size()));
        }
    }

    mutable ValueCollection collection;
    mutable std::deque<Int32Value> others;
};

TEST(ValueCollection, VisitsMembersThatAMemberDeclaresMeanwhile) {
    KB_SetIntA("S", "100", 7);
    Spreading loading, saving, taking, showing;
    for (Spreading* each : {&loading, &saving, &taking, &showing})
        each->collection.DeclareValue(*each, "Spreading");
    loading.collection.LoadRegistry("S");
    EXPECT_EQ(7, loading.others.back().GetValue());
    saving.collection.SaveRegistry("T");
    EXPECT_TRUE(RawKey("T").Has(L"100"));
    taking.collection.SetMinimumUserInterfaceLevel(Value::ValueAction{2});
    EXPECT_EQ(2, taking.others.back().GetMinimumUserInterfaceLevel());
    EXPECT_TRUE(showing.collection.SaveStringDataOnly().ends_with(",100=0}"));
}

TEST(ValueTableEntry, IsIdentifiedBySomeOfItsMembers) {
    ValueTableEntry row;
    TStringValue name, note;
    Int32Value number;
    EXPECT_EQ("", row.GetIdent().GetValue());
    row.DeclareValue(name, "Name", true);
    row.DeclareValue(note, "Note", false);
    row.DeclareValue(number, "Number", true);
    name.SetValue("a");
    IdentValue ident;
    row.GetIdent(ident);
    EXPECT_EQ("Name='a'|Number=0", ident.GetValue());
    EXPECT_EQ(ident.GetValue(), row.GetIdent().GetValue());
    EXPECT_EQ("", ValueTableEntry(row).GetIdent().GetValue()) << "a copy has no members";
}

TEST(ValueTableEntry, IsAssignedMemberByMemberThroughItsBases) {
    const Recording source("One", 5);
    Recording asRow, asCollection, row("Own", 1);
    static_cast<ValueTableEntry&>(asRow) = source;
    EXPECT_EQ(source.ToString(), asRow.ToString());
    static_cast<ValueCollection&>(asCollection) = static_cast<const ValueCollection&>(source);
    EXPECT_EQ(source.ToString(), asCollection.ToString());
    // Of any other collection only the flags and the level.
    ValueCollection collection;
    collection.SetValueActions(0x1003);
    static_cast<ValueCollection&>(row) = collection;
    EXPECT_EQ("={Channel='Own',Minutes=1}", row.ToString());
    EXPECT_EQ(0x1003u, row.GetValueActions());
    EXPECT_TRUE(row.RestartNeeded());
}

}  // namespace
