// Collections, rows, lists and tables of a program's own, with the library calling back.

#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <tests/values/vandal.h>

#include <set>
#include <stdexcept>

/// A row as an application has them; its class name is stored, so it is in no namespace.
struct Recording : ValueTableEntry {
    explicit Recording(unsigned long minutes = 0) {
        ++alive;
        ValueTableEntry::DeclareValue(Channel, "Channel", true);
        ValueTableEntry::DeclareValue(Minutes, "Minutes", false);
        Minutes.SetValue(minutes);
        Minutes.SetDefaultValue(30);
    }
    Recording(const Recording& other) : Recording() { *this = other; }
    ~Recording() override { --alive; }
    Recording& operator=(const Recording&) = default;
    using ValueTableEntry::operator=;
    Value* Copy() const override { return new Recording(*this); }
    TStringValue Channel;
    UInt32Value Minutes;
    static inline int alive = 0;
};

struct Recordings : ValueTable {
    Recordings(std::initializer_list<unsigned long> minutes = {}) {
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

class Containers : public testing::Test {
    void TearDown() override { EXPECT_EQ(0, Recording::alive); }
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
}

/// Elements with gaps and odd names, and more of them where none belong.
void Plant(Vandal& vandal, const std::string& tree, DWORD elements) {
    vandal.Store(RawKey(tree), L"Table Version", {L"3"});
    while (elements-- > 0) {
        const char* const names[] = {"00000000", "00000001", "0000000A", "10000000",
                                     "1",        "Channel",  " \xe9/?",  "FFFFFFFF0"};
        const std::string element = tree + '\\' + names[vandal.Below(std::size(names))];
        const RawKey key(element);
        vandal.Store(key, L"Value Class", {L"class Int32Value", L"Int32Value"});
        vandal.Store(key, L"ValueTableEntry Class", {L"class Recording", L"class recording"});
        vandal.Store(key, L"Value Name", {L"Channel", L"Minutes", L"none"});
        for (const wchar_t* name : {L"Channel", L"Minutes", L"", L"Extra"})
            vandal.Store(key, name, {L"One", L"it's |=\"\u00e9"});
        if (vandal.Below(3) == 0) Plant(vandal, element, elements / 2);
    }
}

/// The texts of the elements of a tree, each as read gives it.
using Texts = std::vector<std::string>;
using Reader = void (*)(const std::string& element, Texts& texts);
Texts Find(const std::string& tree, Reader read, Texts texts = {}) {
    char name[100];
    for (DWORD i = 0; !::RegEnumKeyA(RawKey(tree).Get(), i, name, sizeof name); ++i)
        read(tree + '\\' + name, texts);
    return texts;
}

void ReadNumber(const std::string& element, Texts& texts) {
    if (TextIn(element, "Value Class") != "class Int32Value") return;
    const std::string name = TextIn(element, "Value Name").value_or("");
    // A value without a name reads nothing.
    const auto number = name.empty() ? std::nullopt : NumberIn(element, name);
    texts.push_back(name + '=' + std::to_string(static_cast<int>(number.value_or(0))));
}

void ReadRow(const std::string& element, Texts& texts) {
    if (TextIn(element, "ValueTableEntry Class") != "class Recording") return;
    texts.push_back("={Channel='" + TextIn(element, "Channel").value_or("") +
                    "',Minutes=" + std::to_string(NumberIn(element, "Minutes").value_or(30)) + '}');
}

/// What the container has loaded; once saved, anybody finds the same and nothing else.
template <class Container>
void ExpectLoad(const Texts& expected, Container&& container, Reader read) {
    std::string all;
    for (const auto& text : expected) all += (all.empty() ? "[" : ",\n") + text;
    container.LoadRegistry("S");
    EXPECT_EQ(all + ']', container.SaveStringDataOnly());
    container.SaveRegistry("Saved");
    EXPECT_EQ(expected, Find("Saved\\Tree", read));
    EXPECT_EQ(container.size(), KB_GetKeyCountA("Saved\\Tree"));
    EXPECT_EQ(container.DeclareVersion(), NumberIn("Saved\\Tree", "Table Version"));
}

TEST_F(Containers, LoadWhatIsWholeInADamagedTreeAndSaveItWithoutDamage) {
    Vandal vandal;
    for (int round = 0; round < 120; ++round) {
        SCOPED_TRACE(round);
        ::RegDeleteTreeA(RawKey().Get(), "S");
        Plant(vandal, "S\\Tree", vandal.Below(12));

        // A list replaces what it holds, but not by nothing.
        Notes notes;
        notes.AddEntry(new Int32Value);
        const Texts numbers = Find("S\\Tree", ReadNumber);
        ExpectLoad(numbers.empty() ? Texts{"=0"} : numbers, notes, ReadNumber);

        // A table appends; one with unique identifiers takes each of them once.
        Texts rows = Find("S\\Tree", ReadRow, {"={Channel='',Minutes=1}"});
        ExpectLoad(rows, Recordings{1}, ReadRow);
        std::set<std::string> idents;
        std::erase_if(rows, [&](const std::string& row) {
            return !idents.insert(row.substr(0, row.rfind(','))).second;
        });
        Recordings unique{1};
        unique.unique = true;
        ExpectLoad(rows, unique, ReadRow);
    }
}

TEST_F(Containers, MoveFindSortAndRemoveRows) {
    struct {
        int from, to;
        const char* minutes;
    } const moves[] = {{2, -5, "2 0 1 "}, {0, 1, "1 0 2 "}, {0, 9, "1 2 0 "}, {7, 7, "0 1 2 "}};
    for (const auto& move : moves) {
        Recordings moved{0, 1, 2};
        moved.MoveEntry(move.from, move.to);
        EXPECT_EQ(move.minutes, moved.Minutes());
    }
    Recordings table{0, 1, 2}, copy{7};
    EXPECT_THAT([&] { table.MoveEntryRelative(3, -1); },
                testing::ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
    table.Row(2).Channel = "Two";
    IdentValue two("Channel='Two'"), nobody("nobody");
    table.MoveEntryRelative(two, -1);
    EXPECT_TRUE(table.FindEntryIndex(two) == 1 && table.FindEntryIndex(nobody) == -1);
    EXPECT_EQ(table[1], table.FindEntry("Minutes", table.Row(1).Minutes));
    table.RemoveEntry(two);
    table.RemoveEntry(nobody);
    // Past the end: lengthened to three slots, of which one goes.
    table.RemoveEntry(2);
    for (const unsigned long minutes : {10u, 9u}) table.AddEntry(new Recording(minutes));
    // A row without the member goes to the end.
    table.InsertEntry(2, *new ValueTableEntry);
    table.Sort("Minutes");
    table.RemoveEntry(4);
    copy = table;
    EXPECT_EQ("0 1 9 10 ", copy.Minutes());
}

}  // namespace
