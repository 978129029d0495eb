#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/private_registry.h>
#include <tests/values/recordings.h>

#include <memory>
#include <utility>

namespace {

using namespace kitbag::test;

IdentValue Channel(const std::string& name) { return IdentValue("Channel='" + name + "'"); }

TEST(ValueTable, FindsRowsByTheirIdentifier) {
    Recordings table{1, 2, 3};
    table.Row(2).Channel = "2";
    table.at(3);
    const struct {
        const char* channel;
        int index;
    } rows[] = {{"1", 0}, {"2", 1}, {"3", -1}, {"", -1}};
    for (const auto& [channel, index] : rows) {
        SCOPED_TRACE(channel);
        EXPECT_EQ(index, table.FindEntryIndex(Channel(channel)));
        EXPECT_EQ(index < 0 ? nullptr : table[index], table.FindEntry(Channel(channel)));
    }
    EXPECT_EQ(-1, table.FindEntryIndex(IdentValue("2"))) << "a text that is no identifier";
}

TEST(ValueTable, FindsRowsByAMembersText) {
    Recordings table{1, 2, 2};
    table.InsertEntry(0, *new ValueTableEntry);
    Int32Value two;
    two.SetValueName("Other name");
    two.SetValue(2);
    EXPECT_EQ(table[2], table.FindEntry("Minutes", two));
    EXPECT_EQ(nullptr, table.FindEntry("minutes", two));
    two.SetValue(3);
    EXPECT_EQ(nullptr, table.FindEntry("Minutes", two));
}

TEST(ValueTable, MovesAndRemovesTheFirstRowOfAnIdentifier) {
    const struct {
        const char *channel, *moved, *removed;
    } rows[] = {{"2", "2 1 3 2", "1 3 2"}, {"4", "1 2 3 2", "1 2 3 2"}};
    for (const auto& [channel, moved, removed] : rows) {
        SCOPED_TRACE(channel);
        Recordings moving{1, 2, 3, 2}, removing{1, 2, 3, 2};
        IdentValue ident = Channel(channel);
        moving.MoveEntryRelative(ident, -1);
        EXPECT_EQ(moved, Shown(moving));
        removing.RemoveEntry(ident);
        EXPECT_EQ(removed, Shown(removing));
    }
}

TEST(ValueTable, RefusesASecondRowOfOneIdentifierWhereItIsToldTo) {
    Recordings table{1};
    EXPECT_TRUE(table.AddEntry(new Recording("1", 2))) << "not told yet";
    table.unique = true;
    const auto refused = std::make_unique<Recording>("1", 3);
    EXPECT_FALSE(table.AddEntry(*refused));
    EXPECT_FALSE(table.AddEntry(refused.get()));
    EXPECT_TRUE(table.AddEntry(new Recording("2", 4)));
    EXPECT_TRUE(table.InsertEntry(0, *new Recording("1", 5))) << "an insertion is not refused";
    EXPECT_EQ("5 1 2 4", Shown(table));
    EXPECT_EQ(3, refused->Minutes.GetValue()) << "stays the caller's";
    EXPECT_EQ("5 1 2 4", Shown(Recordings(table)));
    Recordings unique;
    unique.unique = true;
    static_cast<ValueTable&>(unique) = table;
    EXPECT_EQ("5 4", Shown(unique));
    EXPECT_FALSE(ExternalProgramValueTable("S").UsesUniqueIdents());
}

TEST(ValueTable, SortsByAMemberAndKeepsTheOrderOfEqualOnes) {
    Recordings table{10, 9, 2, 9};
    table.Row(3).Channel = "first no more";
    table.InsertEntry(1, *new ValueTableEntry);
    const ValueTableEntry* lacking = table[1];
    const ValueTableEntry* equal[] = {table[2], table[4]};
    table.Sort("Minutes");
    EXPECT_EQ(lacking, table[4]) << "without the member: last";
    table.RemoveEntry(4);
    EXPECT_EQ("2 9 9 10", Shown(table));
    EXPECT_EQ(equal[0], table[1]);
    EXPECT_EQ(equal[1], table[2]);
    table.Sort("Nobody's member");
    EXPECT_EQ("2 9 9 10", Shown(table));
}

TEST(ValueTable, AppendsAStoredTree) {
    Recordings{1, 2}.SaveRegistry("S");
    Recordings table{7}, unique{2}, other;
    table.LoadRegistry("S");
    EXPECT_EQ("7 1 2", Shown(table));
    unique.unique = true;
    unique.LoadRegistry("S");
    EXPECT_EQ("2 1", Shown(unique)) << "a second row of one identifier is refused";
    other.SetValueName("Other");
    other.LoadRegistry("S", "Tree");
    EXPECT_EQ("1 2", Shown(other));
}

/// Enough rows for the table to remember what it has asked.
constexpr int kMany = 100;

Recordings ManyUnique() {
    Recordings table;
    table.unique = true;
    for (int i = 0; i < kMany; ++i) table.AddEntry(new Recording(std::to_string(i).c_str(), i));
    return table;
}

bool Takes(Recordings& table, const char* channel) {
    auto row = std::make_unique<Recording>(channel);
    if (!table.AddEntry(*row)) return false;
    static_cast<void>(row.release());
    return true;
}

TEST(ValueTable, SeesWhatBecameOfManyRowsSinceItAskedThem) {
    using T = Recordings;
    using C = TStringValue;
    const struct {
        const char* what;
        void (*change)(T& table, C& seventh);
        bool takes7, takesNew;
    } rows[] = {
        {"nothing", [](T&, C&) {}, false, true},
        {"set", [](T&, C& seventh) { seventh.SetValue("new"); }, true, false},
        {"row assigned", [](T& table, C&) { table.Row(7) = Recording("new"); }, true, false},
        {"member assigned", [](T&, C& seventh) { seventh = IdentValue("new"); }, true, false},
        {"row loaded", [](T& table, C&) { table.Row(7).LoadRegistry("S"); }, true, false},
        {"default", [](T&, C& seventh) { seventh.LoadRegistry("None"); }, true, true},
        {"reread", [](T&, C& c) { c.SetAutoRegistrySource("S", "Channel", false); }, true, false},
        {"renamed", [](T&, C& seventh) { seventh.SetValueName("X"); }, true, true},
        {"displayed", [](T&, C& seventh) { seventh.SetDisplayName("X"); }, true, true},
        {"more parts", [](T& t, C& c) { t.Row(7).DeclareValue(c, "M", true); }, true, true},
        {"removed", [](T& table, C&) { table.RemoveEntry(7); }, true, true},
        {"replaced", [](T& t, C&) { delete std::exchange(t[7], new Recording("new")); }, true,
         false},
        {"taken out", [](T& table, C&) { delete std::exchange(table[7], nullptr); }, true, true},
        {"moved", [](T& table, C&) { table.MoveEntry(7, 90); }, false, true},
        {"all removed", [](T& table, C&) { table.RemoveAllEntries(); }, true, true}};
    KB_SetStringA("S", "Channel", "new");
    for (const auto& [what, change, takes7, takesNew] : rows) {
        SCOPED_TRACE(what);
        Recordings table = ManyUnique();
        EXPECT_FALSE(Takes(table, "99"));
        change(table, table.Row(7).Channel);
        EXPECT_EQ(takesNew, Takes(table, "new"));
        EXPECT_EQ(takes7, Takes(table, "7"));
        EXPECT_FALSE(Takes(table, "7")) << "now it is there";
    }
}

TEST(ValueTable, FindsTheFirstOfManyRowsOfOneIdentifier) {
    Recordings table = ManyUnique();
    EXPECT_EQ(60, table.FindEntryIndex(Channel("60")));
    table.InsertEntry(20, *new Recording("60"));
    EXPECT_EQ(20, table.FindEntryIndex(Channel("60")));
    table.MoveEntry(20, 80);
    EXPECT_EQ(60, table.FindEntryIndex(Channel("60")));
    EXPECT_EQ(table[60], table.FindEntry(Channel("60")));
    EXPECT_EQ(-1, table.FindEntryIndex(Channel("none")));
    Recordings other = ManyUnique();
    other.Row(60).Channel = "other";
    EXPECT_EQ(-1, other.FindEntryIndex(Channel("60"))) << "another table";
    EXPECT_EQ(60, table.FindEntryIndex(Channel("60")));
}

/// A row whose identifier is not made by the library alone.
struct Renamed : Recording {
    using Recording::operator=;
    void GetIdent(IdentValue& ident) const override { ident.SetValue(alias); }
    IdentValue GetIdent() const override { return IdentValue(alias); }
    std::string alias = "old";
};

/// A member whose text is not made by the library alone.
struct Noted : TStringValue {
    using TStringValue::operator=;
    TWinString<char> SaveStringDataOnly() const override { return note; }
    TWinString<char> note = "old";
};

TEST(ValueTable, AsksManyRowsAgainWhereAProgramHasAHandInTheirIdentifiers) {
    const auto expect = [](ValueTableEntry* row, const char* before, auto change,
                           const char* after) {
        SCOPED_TRACE(after);
        Recordings table = ManyUnique();
        table.AddEntry(row);
        EXPECT_EQ(kMany, table.FindEntryIndex(IdentValue(before)));
        change();
        EXPECT_EQ(-1, table.FindEntryIndex(IdentValue(before)));
        EXPECT_EQ(kMany, table.FindEntryIndex(IdentValue(after)));
    };
    Noted note;
    BooleanValue truth;
    auto* renamed = new Renamed;
    auto *noted = new ValueTableEntry, *styled = new ValueTableEntry;
    noted->DeclareValue(note, "Note", true);
    styled->DeclareValue(truth, "On", true);
    expect(
        renamed, "old", [&] { renamed->alias = "new"; }, "new");
    expect(
        noted, "Note=old", [&] { note.note = "new"; }, "Note=new");
    expect(
        styled, "On=False", [&] { truth.Type(2); }, "On=No");
}

TEST(ValueTable, LoadsManyRowsOnceEach) {
    const Recordings many = ManyUnique();
    many.SaveRegistry("S");
    Recordings table;
    table.unique = true;
    table.LoadRegistry("S");
    table.LoadRegistry("S");
    EXPECT_EQ(Shown(many), Shown(table));
}

}  // namespace
