#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>
#include <tests/values/recordings.h>

#include <memory>
#include <stdexcept>
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

TEST(ValueTable, MovesAndRemovesRowsByIndexOrIdentifier) {
    using T = Recordings;
    using Id = IdentValue;
    const struct {
        const char* what;
        void (*change)(T& table, Id& two, Id& nobody);
        const char* minutes;
    } rows[] = {
        {"move", [](T& table, Id&, Id&) { table.MoveEntry(0, 2); }, "2 3 1"},
        {"move past the end", [](T& table, Id&, Id&) { table.MoveEntry(0, 9); }, "2 3 1"},
        {"move on", [](T& table, Id&, Id&) { table.MoveEntryRelative(1, 1); }, "1 3 2"},
        {"move far", [](T& table, Id&, Id&) { table.MoveEntryRelative(2, INT_MIN); }, "3 1 2"},
        {"move two", [](T& table, Id& two, Id&) { table.MoveEntryRelative(two, -1); }, "2 1 3"},
        {"move nobody", [](T& table, Id&, Id& no) { table.MoveEntryRelative(no, -1); }, "1 2 3"},
        {"remove", [](T& table, Id&, Id&) { table.RemoveEntry(1); }, "1 3"},
        {"remove past the end", [](T& table, Id&, Id&) { table.RemoveEntry(3); }, "1 2 3"},
        {"remove two", [](T& table, Id& two, Id&) { table.RemoveEntry(two); }, "1 3"},
        {"remove nobody", [](T& table, Id&, Id& no) { table.RemoveEntry(no); }, "1 2 3"},
        {"remove all", [](T& table, Id&, Id&) { table.RemoveAllEntries(); }, ""},
    };
    for (const auto& [what, change, minutes] : rows) {
        Recordings table{1, 2, 3};
        IdentValue two = Channel("2"), nobody = Channel("4");
        change(table, two, nobody);
        EXPECT_EQ(minutes, table.Minutes()) << what;
        EXPECT_EQ(*minutes == '\0', table.IsEmpty()) << what;
    }
    EXPECT_THAT([] { Recordings{1}.MoveEntryRelative(1, -1); },
                testing::ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
}

TEST(ValueTable, InsertsBeforeAnIndexWhateverTheIdentifier) {
    const struct {
        int index;
        const char* minutes;
    } rows[] = {{0, "1 1 2"}, {1, "1 1 2"}, {2, "1 2 1"}, {3, "1 2 1"}, {-1, "1 2 1"}};
    for (const auto& [index, minutes] : rows) {
        Recordings table{1, 2};
        table.unique = true;
        EXPECT_TRUE(table.InsertEntry(index, *new Recording("1", 1))) << index;
        EXPECT_EQ(minutes, table.Minutes()) << index;
    }
}

TEST(ValueTable, RefusesASecondRowOfOneIdentifierWhereItIsToldTo) {
    Recordings table{1};
    EXPECT_FALSE(table.AddEntry(static_cast<ValueTableEntry*>(nullptr)));
    EXPECT_TRUE(table.AddEntry(new Recording("1", 2))) << "not told yet";
    table.unique = true;
    auto refused = std::make_unique<Recording>("1", 3);
    EXPECT_FALSE(table.AddEntry(*refused));
    EXPECT_FALSE(table.AddEntry(refused.get()));
    EXPECT_TRUE(table.AddEntry(new Recording("2", 4)));
    EXPECT_EQ("1 2 4", table.Minutes());
    EXPECT_EQ("3", refused->Minutes.SaveStringDataOnly()) << "stays the caller's";
    Recordings assigned, unique;
    assigned = table;
    EXPECT_EQ("1 2 4", Recordings(table).Minutes());
    unique.unique = true;
    static_cast<ValueTable&>(unique) = table;
    EXPECT_EQ("1 4", unique.Minutes());
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
    EXPECT_EQ("2 9 9 10", table.Minutes());
    EXPECT_EQ(equal[0], table[1]);
    EXPECT_EQ(equal[1], table[2]);
    table.Sort("Nobody's member");
    EXPECT_EQ("2 9 9 10", table.Minutes());
}

TEST(ValueTable, AppendsAStoredTree) {
    Recordings{1, 2}.SaveRegistry("S");
    EXPECT_EQ(3u, RawKey("S\\Tree").NumberOf(L"Table Version"));
    Recordings table{7}, unique{2}, other;
    table.LoadRegistry("S");
    EXPECT_EQ("7 1 2", table.Minutes());
    EXPECT_FALSE(table.Value::IsEmpty()) << "it has been loaded";
    unique.unique = true;
    unique.LoadRegistry("S");
    EXPECT_EQ("2 1", unique.Minutes()) << "a second row of one identifier is refused";
    other.SetValueName("Other");
    other.LoadRegistry("S", "Tree");
    EXPECT_EQ("1 2", other.Minutes());
    KB_DeleteKeyA("S\\Tree", "00000001");
    other.Row(1).SaveRegistry("S\\Tree\\00000001");
    EXPECT_TRUE(RawKey::Exists("S\\Tree\\00000001"));
    unsigned long version = 0;
    EXPECT_TRUE(table.ExistsRegistry("S\\Tree", version));
    EXPECT_EQ(3u, version);
    EXPECT_FALSE(table.ExistsRegistry("S\\Other", version));
    EXPECT_EQ(0xFFFFFFFF, version);
}

TEST(ValueTable, TakesOverATableThatLiesInOneOfItsRows) {
    struct Owner : Recording {
        using Recording::operator=;
        Recordings part{4, 5};
    };
    Recordings table{1};
    auto* owner = new Owner;
    table.AddEntry(owner);
    table = owner->part;
    EXPECT_EQ("4 5", table.Minutes());
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
        {"read every time",
         [](T&, C& seventh) { seventh.SetAutoRegistrySource("S", "Channel", false); }, true, false},
        {"renamed", [](T&, C& seventh) { seventh.SetValueName("X"); }, true, true},
        {"displayed", [](T&, C& seventh) { seventh.SetDisplayName("X"); }, true, true},
        {"more parts", [](T& t, C& seventh) { t.Row(7).DeclareValue(seventh, "M", true); }, true,
         true},
        {"removed", [](T& table, C&) { table.RemoveEntry(7); }, true, true},
        {"replaced", [](T& t, C&) { delete std::exchange(t[7], new Recording("new")); }, true,
         false},
        {"taken out", [](T& table, C&) { delete std::exchange(table[7], nullptr); }, true, true},
        {"moved", [](T& table, C&) { table.MoveEntry(7, 90); }, false, true},
        {"all removed", [](T& table, C&) { table.RemoveAllEntries(); }, true, true},
    };
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
    using Recording::Recording;
    using Recording::operator=;
    void GetIdent(IdentValue& ident) const override {
        Recording::GetIdent(ident);
        if (!alias.empty()) ident.SetValue(alias);
    }
    IdentValue GetIdent() const override {
        return shown.empty() ? Recording::GetIdent() : IdentValue(shown);
    }
    std::string alias, shown;
};

/// A member whose text is not made by the library alone.
struct Noted : TStringValue {
    using TStringValue::operator=;
    TWinString<char> SaveStringDataOnly() const override { return note; }
    TWinString<char> note = "''";
};

TEST(ValueTable, AsksManyRowsAgainWhereAProgramHasAHandInTheirIdentifiers) {
    Recordings table = ManyUnique();
    auto* renamed = new Renamed("renamed");
    table.AddEntry(renamed);
    EXPECT_EQ(-1, table.FindEntryIndex(IdentValue("alias")));
    renamed->alias = "alias";
    EXPECT_EQ(kMany, table.FindEntryIndex(IdentValue("alias")));
    EXPECT_EQ(-1, table.FindEntryIndex(Channel("renamed")));
    renamed->shown = "shown";
    EXPECT_EQ(kMany, table.FindEntryIndex(IdentValue("shown")));

    Recordings noted = ManyUnique();
    auto* row = new ValueTableEntry;
    Noted member;
    row->DeclareValue(member, "Channel", true);
    noted.AddEntry(row);
    EXPECT_EQ(-1, noted.FindEntryIndex(Channel("later")));
    member.note = "'later'";
    EXPECT_EQ(kMany, noted.FindEntryIndex(Channel("later")));

    BooleanValue truth;
    Recordings styled = ManyUnique();
    row = new ValueTableEntry;
    row->DeclareValue(truth, "On", true);
    styled.AddEntry(row);
    EXPECT_EQ(kMany, styled.FindEntryIndex(IdentValue("On=False")));
    truth.Type(2);
    EXPECT_EQ(-1, styled.FindEntryIndex(IdentValue("On=False")));
}

TEST(ValueTable, LoadsManyRowsOnceEach) {
    ManyUnique().SaveRegistry("S");
    Recordings table;
    table.unique = true;
    table.LoadRegistry("S");
    table.LoadRegistry("S");
    EXPECT_EQ(kMany, table.size());
    Recordings copy(table);
    EXPECT_EQ(table.Minutes(), copy.Minutes());
}

}  // namespace
