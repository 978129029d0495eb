// Collections, rows, lists and tables of a program's own, with the library calling back.

#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <tests/values/clean_settings.h>

#include <memory>
#include <stdexcept>
#include <vector>

/// A row as an application has them; its class name is stored, so it is in no namespace.
struct Recording : ValueTableEntry {
    explicit Recording(unsigned long minutes = 0) {
        ++alive;
        Recording::DeclareValues();
        Minutes.SetValue(minutes);
        Minutes.SetDefaultValue(30);
    }
    Recording(const Recording& other) : Recording() { *this = other; }
    ~Recording() override { --alive; }
    Recording& operator=(const Recording&) = default;
    using ValueTableEntry::operator=;
    Value* Copy() const override { return new Recording(*this); }
    void DeclareValues() override {
        DeclareValue(Channel, "Channel", true);
        DeclareValue(Minutes, "Minutes", false);
    }
    TStringValue Channel;
    UInt32Value Minutes;
    static inline int alive = 0;
};

struct Recordings : ValueTable {
    Recordings(std::initializer_list<unsigned long> minutes = {}) {
        ValueTable::SetValueName("Recs");
        for (const auto m : minutes) ValueTable::AddEntry(new Recording(m));
    }
    using ValueTable::operator=;
    Value* Copy() const override { return new Recordings(*this); }
    ValueTableEntry* EntryFactory(const TWinString<char>& name) const override {
        return name == "class Recording" ? new Recording : nullptr;
    }
    bool UsesUniqueIdents() const override { return unique; }
    unsigned long DeclareVersion() const override { return 3; }
    Recording& Row(int index) { return dynamic_cast<Recording&>(*at(index)); }
    std::vector<unsigned long> Minutes() {
        std::vector<unsigned long> minutes;
        for (int i = 0; i < size(); ++i) minutes.push_back(Row(i).Minutes.GetValue());
        return minutes;
    }
    bool unique = false;
};

struct Notes : ValueList {
    using ValueList::operator=;
    Value* Copy() const override { return new Notes(*this); }
    Value* EntryFactory(const TWinString<char>& name) const override {
        return name == "class Int32Value" ? new Int32Value : nullptr;
    }
};

namespace {

using kitbag::test::RawKey;
using testing::ElementsAre;

class Containers : public kitbag::test::CleanSettings {
    void TearDown() override {
        CleanSettings::TearDown();
        EXPECT_EQ(0, Recording::alive);
    }
};

TEST_F(Containers, CollectMembersThatTheyDoNotOwn) {
    ValueCollection collection, same;
    TStringValue first, second;
    collection.DeclareValue(first, "A");
    collection.DeclareValue(second, "A");
    same.DeclareValue(second);
    EXPECT_EQ("{A='',A=''}", collection.SaveStringDataOnly());
    EXPECT_TRUE(collection.GetValue("A") == &first && !collection.GetValue("a"));
    EXPECT_FALSE(collection == same || ValueCollection(collection).size());
    EXPECT_TRUE(!collection.at(5) && collection.size() == 6);
    EXPECT_THROW(collection[-1], std::length_error);
}

TEST_F(Containers, PassLevelsOnAndAskTheirChildren) {
    Recordings table{1};
    Recording& row = table.Row(0);
    table.SetValueActions(0x3002);
    EXPECT_TRUE(row.GetValueActions() == 0x132 && row.Minutes.GetValueActions() == 0x102);
    EXPECT_TRUE(table.RebootNeeded() && !row.RebootNeeded());
    table.SetValueActions(0);
    TStringValue other;
    other.SetValueAction(Value::RestartNeededAction);
    row.Channel = other;
    EXPECT_TRUE(table.RestartNeeded() && !table.RebootNeeded());
    // A collection that is no row gives what collections give each other.
    ValueCollection plain;
    plain.SetValueAction(Value::RebootNeededAction);
    static_cast<ValueCollection&>(row) = plain;
    EXPECT_TRUE(table.RebootNeeded() && row.Minutes.GetValue() == 1);
}

TEST_F(Containers, KeepATableAsARegistryTree) {
    Recordings{0, 1, 2}.SaveRegistry("S");
    Recordings table{0, 1}, loaded, unique;
    table.Row(1).Channel = "it's |=\"\xe9";
    table.SaveRegistry("S");
    EXPECT_EQ(3u, RawKey("S\\Recs").NumberOf(L"Table Version"));
    EXPECT_FALSE(RawKey::Exists("S\\Recs\\00000002"));
    const RawKey row("S\\Recs\\00000001");
    EXPECT_EQ(L"class Recording", row.TextOf(L"ValueTableEntry Class"));
    EXPECT_EQ(L"it's |=\"\u00e9", row.TextOf(L"Channel"));
    EXPECT_EQ(1u, row.NumberOf(L"Minutes"));

    // Loading appends; a table with unique identifiers takes a row once.
    unique.unique = true;
    for (Recordings* each : {&loaded, &loaded, &unique, &unique}) each->LoadRegistry("S");
    EXPECT_THAT(loaded.Minutes(), ElementsAre(0, 1, 0, 1));
    EXPECT_EQ(table.SaveStringDataOnly(), unique.SaveStringDataOnly());
    Recordings().SaveRegistry("S");
    EXPECT_TRUE(KB_GetKeyCountA("S\\Recs") == 0 && KB_GetValueCountA("S\\Recs") == 1);
}

TEST_F(Containers, LoadWhatADamagedTreeStillHolds) {
    Recordings many, loaded;
    for (unsigned long i = 0; i < 2000; ++i) many.AddEntry(new Recording(i));
    many.SaveRegistry("S");
    RawKey("S\\Recs\\00000000").Set(L"ValueTableEntry Class", L"class Unknown");
    RawKey("S\\Recs\\00000001").Set(L"ValueTableEntry Class", 1u);
    RawKey("S\\Recs\\00000002").Set(L"Minutes", L"two");
    RawKey("S\\Recs\\unnumbered").Set(L"ValueTableEntry Class", L"class Recording");
    loaded.LoadRegistry("S");
    EXPECT_EQ(1999, loaded.size());
    EXPECT_TRUE(loaded.Minutes()[0] == 30 && loaded.Minutes()[1997] == 1999);
}

TEST_F(Containers, KeepAListAsARegistryTree) {
    Notes notes;
    for (const char* name : {"A", "B"}) {
        EXPECT_TRUE(notes.InsertEntry(0, *new Int32Value));
        notes[0]->SetValueName(name);
    }
    notes.SaveRegistry("S\\Notes");
    const RawKey first("S\\Notes\\00000000"), second("S\\Notes\\00000001");
    EXPECT_EQ(L"class Int32Value", first.TextOf(L"Value Class"));
    EXPECT_TRUE(first.TextOf(L"Value Name") == L"B" && first.NumberOf(L"B") == 0);
    // What can be created replaces what was there; where nothing can, everything stays.
    second.Set(L"Value Class", L"class Unknown");
    for (int i = 0; i < 2; ++i) {
        notes.LoadRegistry("S\\Notes");
        EXPECT_EQ("[B=0]", notes.SaveStringDataOnly());
        first.Set(L"Value Class", L"class Unknown");
    }
}

TEST_F(Containers, MoveFindAndRemoveRows) {
    const int moves[][5] = {{2, -5, 2, 0, 1}, {0, 1, 1, 0, 2}, {0, 9, 1, 2, 0}, {7, 7, 0, 1, 2}};
    for (const auto& [from, to, a, b, c] : moves) {
        Recordings moved{0, 1, 2};
        moved.MoveEntry(from, to);
        EXPECT_THAT(moved.Minutes(), ElementsAre(a, b, c)) << from << " to " << to;
    }
    Recordings table{0, 1, 2};
    try {
        table.MoveEntryRelative(3, -1);
        FAIL();
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ("invalid vector<T> subscript", error.what());
    }
    table.Row(2).Channel = "Two";
    EXPECT_EQ("Channel='Two'", table[2]->GetIdent().GetValue());
    IdentValue two = table[2]->GetIdent(), nobody("nobody");
    table.MoveEntryRelative(two, -1);
    EXPECT_TRUE(table.FindEntryIndex(two) == 1 && table.FindEntryIndex(nobody) == -1);
    EXPECT_EQ(table[1], table.FindEntry("Minutes", table.Row(1).Minutes));
    table.RemoveEntry(two);
    table.RemoveEntry(nobody);
    // Past the end: lengthened to three slots, of which one goes.
    table.RemoveEntry(2);
    EXPECT_EQ(2, table.size());
    table.AddEntry(new Recording(10));
    table.AddEntry(new ValueTableEntry);
    table.AddEntry(new Recording(9));
    table.Sort("Minutes");
    table.RemoveEntry(4);
    EXPECT_THAT(table.Minutes(), ElementsAre(0, 1, 9, 10));
}

}  // namespace
