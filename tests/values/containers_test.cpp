// Collections, rows, lists and tables of a program's own, with the library calling back.

#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <tests/values/damaged_settings.h>

#include <stdexcept>

/// A row as an application has them; its class name is stored, so it is in no namespace.
struct Recording : ValueTableEntry {
    explicit Recording(long minutes = 0) {
        ValueTableEntry::DeclareValue(Channel, "Channel", true);
        ValueTableEntry::DeclareValue(Minutes, "Minutes", false);
        Minutes.SetValue(minutes);
        Minutes.SetDefaultValue(30);
    }
    Recording(const Recording& other) : Recording() { *this = other; }
    Recording& operator=(const Recording&) = default;
    using ValueTableEntry::operator=;
    Value* Copy() const override { return new Recording(*this); }
    TStringValue Channel;
    Int32Value Minutes;
};

struct Recordings : ValueTable {
    Recordings(std::initializer_list<long> minutes = {}) {
        ValueTable::SetValueName("Tree");
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
    std::string Minutes() {
        std::string all;
        for (int i = 0; i < size(); ++i) all += Row(i).Minutes.SaveStringDataOnly() + ' ';
        return all;
    }
    bool unique = false;
};

struct Notes : ValueList {
    Notes() { ValueList::SetValueName("Tree"); }
    using ValueList::operator=;
    Value* Copy() const override { return new Notes(*this); }
    Value* EntryFactory(const TWinString<char>& name) const override {
        return name == "class Int32Value" ? new Int32Value : nullptr;
    }
};

namespace {

using namespace kitbag::test;

TEST(Containers, CollectMembersThatTheyDoNotOwn) {
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

TEST(Containers, PassLevelsOnAndAskTheirChildren) {
    Recordings table{1};
    Recording& row = table.Row(0);
    TStringValue other;
    other.SetValueAction(Value::RestartNeededAction);
    row.Channel = other;
    EXPECT_TRUE(table.RestartNeeded() && !table.RebootNeeded());
    table.SetValueActions(0x3002);
    EXPECT_TRUE(row.GetValueActions() == 0x132 && row.Minutes.GetValueActions() == 0x102);
    EXPECT_TRUE(table.RebootNeeded() && !row.RebootNeeded());
}

void Plant(const std::string& tree) {
    Store(RawKey(tree), L"Table Version", {L"3"});
    for (DWORD elements = Below(12); elements > 0; --elements) {
        const RawKey key(tree + '\\' + std::to_string(Below(20)));
        Store(key, L"Value Class", {L"class Int32Value", L"Int32Value"});
        Store(key, L"ValueTableEntry Class", {L"class Recording", L"class recording"});
        Store(key, L"Value Name", {L"Channel", L"Minutes", L"none"});
        for (const wchar_t* name : {L"Channel", L"Minutes", L"Extra"})
            Store(key, name, {L"One", L"it's |=\"\u00e9"});
    }
}

using Texts = std::vector<std::string>;

/// The texts of a tree's elements: a list's numbers, or a table's rows.
Texts Find(const std::string& tree, bool rows, Texts texts = {}) {
    char key[100];
    for (DWORD i = 0; !::RegEnumKeyA(RawKey(tree).Get(), i, key, sizeof key); ++i) {
        const std::string element = tree + '\\' + key;
        const std::string name = rows ? "Minutes" : TextIn(element, "Value Name").value_or("");
        const auto number = std::to_string(NumberIn<int>(element, name).value_or(rows ? 30 : 0));
        if (!rows && TextIn(element, "Value Class") == "class Int32Value")
            texts.push_back(name + '=' + number);
        if (rows && TextIn(element, "ValueTableEntry Class") == "class Recording")
            texts.push_back("={Channel='" + TextIn(element, "Channel").value_or("") +
                            "',Minutes=" + number + '}');
    }
    return texts;
}

/// What the container has loaded; once saved, anybody finds the same and nothing else.
template <class Container>
void ExpectLoad(const Texts& expected, Container&& container, bool rows) {
    std::string all;
    for (const auto& text : expected) all += (all.empty() ? "[" : ",\n") + text;
    container.LoadRegistry("S");
    EXPECT_EQ(all + ']', container.SaveStringDataOnly());
    container.SaveRegistry("Saved");
    EXPECT_EQ(expected, Find("Saved\\Tree", rows));
    EXPECT_EQ(container.DeclareVersion(), NumberIn("Saved\\Tree", "Table Version"));
}

TEST(Containers, LoadWhatIsWholeInADamagedTreeAndSaveItWithoutDamage) {
    for (int round = 0; round < 120; ++round) {
        ::RegDeleteTreeA(RawKey().Get(), "S");
        Plant("S\\Tree");
        // A list replaces what it holds, but not by nothing; a table appends.
        Notes notes;
        notes.AddEntry(new Int32Value);
        const Texts numbers = Find("S\\Tree", false);
        ExpectLoad(numbers.empty() ? Texts{"=0"} : numbers, notes, false);
        ExpectLoad(Find("S\\Tree", true, {"={Channel='',Minutes=1}"}), Recordings{1}, true);
    }
}

TEST(Containers, MoveFindSortAndRemoveRows) {
    Recordings table{0, 1, 2}, copy{7}, unique;
    const int moves[][2] = {{2, -5}, {0, 1}, {0, 9}, {7, 7}};
    for (const auto& [from, to] : moves) table.MoveEntry(from, to);
    EXPECT_EQ("2 1 0 ", table.Minutes());
    EXPECT_THAT([&] { table.MoveEntryRelative(3, -1); },
                testing::ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
    table.Row(2).Channel = "Two";
    IdentValue two("Channel='Two'"), nobody("nobody");
    table.MoveEntryRelative(two, -1);
    EXPECT_TRUE(table.FindEntryIndex(two) == 1 && table.FindEntryIndex(nobody) == -1);
    EXPECT_EQ(table[1], table.FindEntry("Minutes", table.Row(1).Minutes));
    for (IdentValue* ident : {&two, &nobody}) table.RemoveEntry(*ident);
    // Past the end: lengthened to three slots, of which one goes.
    table.RemoveEntry(2);
    for (const long minutes : {10, 9}) table.AddEntry(new Recording(minutes));
    // A row without the member goes to the end.
    table.InsertEntry(2, *new ValueTableEntry);
    table.Sort("Minutes");
    table.RemoveEntry(4);
    copy = table;
    EXPECT_EQ("1 2 9 10 ", copy.Minutes());
    // Its rows have one identifier.
    unique.unique = true;
    unique = copy;
    EXPECT_EQ("1 ", unique.Minutes());
}

}  // namespace
