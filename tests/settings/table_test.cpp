// Tables and lists that are declared in a section.

#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <tests/settings/player.h>
#include <tests/support/private_registry.h>

#include <algorithm>
#include <stdexcept>

namespace {

using namespace kitbag::test;

Channel Named(const char* name, unsigned long frequency = 1) {
    Channel channel;
    channel.name = name;
    channel.frequency = frequency;
    return channel;
}

/// The rows' names, in order.
std::string NamesIn(const kitbag::Table<Channel>& channels) {
    std::string names;
    for (const Channel& channel : channels) names += channel.name.Get() + ' ';
    return names;
}

/// What is stored of a row: "name frequency".
std::wstring RowIn(const std::string& key) {
    const RawKey row("Player\\Channels\\" + key);
    return row.TextOf(L"Name") + L' ' + std::to_wstring(row.NumberOf(L"Frequency"));
}

TEST(Table, WritesItselfAtEveryChange) {
    Player player("Player");
    EXPECT_TRUE(player.channels.push_back(Named("Arte")));
    EXPECT_TRUE(player.channels.push_back(Named("ZDF", 2)));
    EXPECT_EQ(1u, RawKey("Player\\Channels").NumberOf(L"Table Version"));
    EXPECT_EQ(L"Arte 1", RowIn("00000000"));
    EXPECT_EQ(L"ZDF 2", RowIn("00000001"));
    EXPECT_EQ(L"class Channel",
              RawKey("Player\\Channels\\00000001").TextOf(L"ValueTableEntry Class"));
    player.channels.MoveEntry(1, 0);
    EXPECT_EQ(L"ZDF 2", RowIn("00000000"));
    player.channels[0].frequency = 3;
    EXPECT_EQ(L"ZDF 3", RowIn("00000000")) << "a moved row writes to its new key";
    player.channels.Sort("Name");
    EXPECT_EQ(L"Arte 1", RowIn("00000000"));
    player.channels.erase(std::next(player.channels.begin()));
    EXPECT_EQ(1, KB_GetKeyCountA("Player\\Channels"));
    player.channels.clear();
    EXPECT_EQ(0, KB_GetKeyCountA("Player\\Channels"));
}

TEST(Table, ReadsRowsOfItsClassThatProgramsWithoutTheLayerWrote) {
    for (const char* key : {"0", "1", "2"}) {
        const std::string row = std::string("Player\\Channels\\") + key;
        KB_SetStringA(row.c_str(), "ValueTableEntry Class",
                      *key == '1' ? "class Radio" : "class Channel");
        KB_SetStringA(row.c_str(), "Name", key);
    }
    Player player("Player");
    EXPECT_EQ("0 2 ", NamesIn(player.channels));
    EXPECT_EQ(506000u, player.channels[0].frequency.Get());
    player.LoadRegistry();
    EXPECT_EQ("0 2 ", NamesIn(player.channels)) << "loaded again, not twice";
    player.channels[1].frequency = 4;
    EXPECT_EQ(4u, RawKey("Player\\Channels\\2").NumberOf(L"Frequency"));
}

/// The row as a program without the layer has it.
struct PlainChannel : ValueTableEntry {
    PlainChannel() {
        ValueTableEntry::DeclareValue(name, "Name", true);
        ValueTableEntry::DeclareValue(frequency, "Frequency", false);
    }
    using ValueTableEntry::operator=;
    TStringValue name;
    UInt32Value frequency;
};
struct PlainChannels : ValueTable {
    using ValueTable::operator=;
    Value* Copy() const override { return nullptr; }
    ValueTableEntry* EntryFactory(const TWinString<char>& className) const override {
        return className == "class Channel" ? new PlainChannel : nullptr;
    }
};

TEST(Table, IsReadByProgramsWithoutTheLayer) {
    Player player("Player");
    player.channels.push_back(Named("Arte", 7));
    PlainChannels plain;
    plain.LoadRegistry("Player", "Channels");
    ASSERT_EQ(1, plain.size());
    EXPECT_EQ("{Name='Arte',Frequency=7}", plain[0]->SaveStringDataOnly());
    EXPECT_EQ(plain[0]->GetIdent().GetValue(), player.channels[0].GetIdent().GetValue());
    EXPECT_EQ(&player.channels[0], player.channels.FindEntry(plain[0]->GetIdent()));
}

TEST(Table, IsARangeOfItsRows) {
    Player player("Player");
    for (const char* name : {"c", "a", "b"}) player.channels.push_back(Named(name));
    static_assert(std::ranges::forward_range<kitbag::Table<Channel>>);
    static_assert(std::ranges::forward_range<const kitbag::Table<Channel>>);
    const auto found = std::ranges::find(player.channels, "a",
                                         [](const Channel& channel) { return channel.name.Get(); });
    EXPECT_EQ(&player.channels.at(1), &*found);
    EXPECT_THROW(player.channels.at(3), std::out_of_range);
    EXPECT_THROW(player.channels.at(-1), std::out_of_range);
    static_cast<ValueTable&>(player.channels).at(4);
    EXPECT_EQ("c a b ", NamesIn(player.channels)) << "without the gaps that probing leaves";
}

struct Radio : kitbag::Row<Radio> {};

TEST(Table, RefusesRowsOfAnotherClassAndWhereItIsUniqueOfOneIdentifier) {
    struct Stations : kitbag::Section<Stations> {
        using Section::Section;
        kitbag::Table<Channel> channels{*this, "Channels", {.unique = true}};
    } stations("Player");
    Radio radio;
    PlainChannel plain;
    ValueTable& table = stations.channels;
    EXPECT_FALSE(table.AddEntry(radio));
    EXPECT_FALSE(table.InsertEntry(0, plain));
    EXPECT_TRUE(stations.channels.push_back(Named("Arte", 1)));
    EXPECT_FALSE(stations.channels.push_back(Named("Arte", 2)));
    EXPECT_EQ(L"Arte 1", RowIn("00000000"));
    EXPECT_EQ(1, KB_GetKeyCountA("Player\\Channels"));
}

TEST(Table, AsksForARestartOnlyWhereAnAssignmentChangesIt) {
    Player player("Player");
    player.channels.push_back(Named("Arte"));
    const auto edited = player.Edit();
    player = *edited;
    EXPECT_FALSE(player.RestartNeeded());
    edited->channels[0].frequency = 9;
    edited->channels.push_back(Named("ZDF", 2));
    EXPECT_EQ(L"Arte 1", RowIn("00000000"));
    player = *edited;
    EXPECT_TRUE(player.RestartNeeded());
    EXPECT_TRUE(player.channels[0].frequency.RestartNeeded());
    EXPECT_EQ(L"Arte 9", RowIn("00000000"));
    EXPECT_EQ(L"ZDF 2", RowIn("00000001"));
    edited->channels.erase(edited->channels.begin());
    player = *edited;
    EXPECT_EQ("ZDF ", NamesIn(player.channels));
    EXPECT_EQ(1, KB_GetKeyCountA("Player\\Channels"));
    player = *edited;
    EXPECT_FALSE(player.RestartNeeded());
}

TEST(Row, IsCopiedAndAssignedWhole) {
    Channel channel = Named("Arte", 7);
    channel.streams.push_back(3);
    Channel copy = channel;
    EXPECT_EQ(channel.ToString(), copy.ToString());
    EXPECT_EQ("Name='Arte'", copy.GetIdent().GetValue());
    EXPECT_EQ(&copy.frequency, copy.GetValue("Frequency"));
    copy.name = "ZDF";
    copy.streams.clear();
    EXPECT_EQ("Name='Arte'", channel.GetIdent().GetValue());
    EXPECT_EQ(1, channel.streams.size());
    static_cast<ValueTableEntry&>(channel) = copy;
    EXPECT_TRUE(channel.SameAs(copy)) << channel.ToString();
    const std::unique_ptr<Value> cloned(channel.Copy());
    EXPECT_EQ(typeid(Channel), typeid(*cloned));
}

TEST(Row, WritesTheListsInItBelowItsOwnKey) {
    Player player("Player");
    player.channels.push_back(Named("Arte"));
    player.channels.push_back(Named("ZDF"));
    player.channels[1].streams.push_back(7);
    player.channels.MoveEntry(1, 0);
    player.channels[0].streams.push_back(8);
    const Player again("Player");
    EXPECT_EQ("[Value=7,\nValue=8]", again.channels[0].streams.SaveStringDataOnly());
    EXPECT_TRUE(again.channels[1].streams.empty());
}

/// The list as a program without the layer has it.
struct PlainRecent : ValueList {
    using ValueList::operator=;
    Value* Copy() const override { return nullptr; }
    Value* EntryFactory(const TWinString<char>& className) const override {
        return className == "class TStringValue" ? new TStringValue : nullptr;
    }
};

TEST(List, WritesItselfAtEveryChangeAsProgramsWithoutTheLayerReadIt) {
    Player player("Player");
    player.recent.push_back("a");
    player.recent.push_front("b");
    player.recent[1] = TWinString<char>("c");
    player.recent.AddEntry(new TStringValue);
    EXPECT_EQ(L"c", RawKey("Player\\Recent files\\00000001").TextOf(L"Value"));
    PlainRecent plain;
    plain.SetValueName("Recent files");
    plain.LoadRegistry("Player");
    EXPECT_EQ("[Value='b',\nValue='c',\nValue='']", plain.SaveStringDataOnly());
}

TEST(List, ReadsWhatProgramsWithoutTheLayerWroteButForOtherClasses) {
    PlainRecent plain;
    plain.SetValueName("Recent files");
    for (Value* entry : std::initializer_list<Value*>{new TStringValue, new UInt32Value}) {
        entry->SetValueName("File");
        plain.AddEntry(entry);
    }
    plain.SaveRegistry("Player");
    Player player("Player");
    EXPECT_EQ("[File='']", player.recent.SaveStringDataOnly());
    UInt32Value number;
    EXPECT_FALSE(player.recent.AddEntry(number));
    player.recent.push_back("b");
    static_cast<Value&>(player.recent) = plain;
    EXPECT_EQ("[File='']", player.recent.SaveStringDataOnly()) << "assigned";
    EXPECT_EQ(1, KB_GetKeyCountA("Player\\Recent files"));
    plain.RemoveAllEntries();
    plain.SaveRegistry("Player");
    player.LoadRegistry();
    EXPECT_TRUE(player.recent.empty()) << "an empty list replaces the elements too";
}

}  // namespace
