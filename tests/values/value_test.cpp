#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>

namespace {

using namespace kitbag::test;
using Text = TWinString<char>;
using Action = Value::ValueAction;

TEST(Value, IsNewWithoutNameTextsOrNeeds) {
    const TStringValue value;
    EXPECT_TRUE(value.IsEmpty());
    EXPECT_EQ(0x100u, value.GetValueActions());
    EXPECT_EQ(0, value.GetMinimumUserInterfaceLevel());
    EXPECT_EQ("", value.GetValueName());
    EXPECT_EQ("", value.GetDisplayName());
    EXPECT_EQ("", value.GetDescription());
    EXPECT_EQ("", value.GetHelpFile());
    EXPECT_FALSE(value.RebootNeeded());
    EXPECT_FALSE(value.RestartNeeded());
}

TEST(Value, ChangesFlagsWithoutTheLevelAndTheLevelWithoutFlags) {
    const struct {
        const char* what;
        void (*change)(Value&);
        unsigned long word;
    } rows[] = {
        {"set", [](Value& value) { value.SetValueAction(Action{0xFFFF0C1A}); }, 0x13D35},
        {"unset", [](Value& value) { value.UnsetValueAction(Action{0xFFFF2105}); }, 0x11025},
        {"level", [](Value& value) { value.SetMinimumUserInterfaceLevel(Action{0xD3}); }, 0x13123},
        {"word", [](Value& value) { value.SetValueActions(0x2005); }, 0x2005},
    };
    for (const auto& [what, change, word] : rows) {
        SCOPED_TRACE(what);
        Int32Value value;
        value.SetValueActions(0x13125);
        change(value);
        EXPECT_EQ(word, value.GetValueActions());
        EXPECT_EQ(int(word & 0xF), value.GetMinimumUserInterfaceLevel());
    }
}

TEST(Value, HasAnActionWhereAllOfItsBitsAreSet) {
    Int32Value value;
    value.SetValueActions(0x3002);
    const struct {
        unsigned long action;
        bool has;
    } rows[] = {{0x3000, true}, {0x1000, true}, {0x3800, false}, {2, true}, {3, false}, {0, true}};
    for (const auto& [action, has] : rows)
        EXPECT_EQ(has, value.HasValueAction(Action{action})) << std::hex << action;
}

TEST(Value, LosesItsPlaceWhenItIsCopied) {
    UInt32Value source("S", "N", true);
    source.SetValue(7);
    source.SetDefaultValue(3);
    source.SetValueActions(0x1002);
    UInt32Value copy(source);
    EXPECT_EQ("N=7", copy.SaveString());
    EXPECT_EQ(3u, copy.GetDefaultValue());
    EXPECT_EQ(0x1002u, copy.GetValueActions());
    EXPECT_FALSE(copy.RestartNeeded()) << "only an assignment asks for it";
    copy.SetValue(8);
    copy.SaveRegistry();
    EXPECT_EQ(7u, RawKey("S").NumberOf(L"N"));
    EXPECT_TRUE(UInt32Value(UInt32Value("S", "N", true)).IsEmpty());
}

TEST(Value, KeepsItsPlaceWhenItIsAssigned) {
    UInt32Value source("S", "Source", true), target("S", "Target", true);
    source.SetValue(7);
    source.SetDefaultValue(3);
    source.SetMinimumUserInterfaceLevel(Action{2});
    target = source;
    EXPECT_EQ("Target=7", target.SaveString());
    EXPECT_EQ(3u, target.GetDefaultValue());
    EXPECT_EQ(2, target.GetMinimumUserInterfaceLevel());
    EXPECT_FALSE(RawKey("S").Has(L"Target")) << "an assignment writes nothing";
    target.SetValue(9);
    EXPECT_EQ(9u, RawKey("S").NumberOf(L"Target"));
    EXPECT_EQ(7u, RawKey("S").NumberOf(L"Source"));
}

TEST(Value, NeedsWhatTheAssignedOnesActionsSay) {
    const struct {
        unsigned long actions;
        bool reboot, restart;
    } rows[] = {
        {0x1000, false, true}, {0x2000, true, false}, {0x3000, true, true}, {0, false, false}};
    Int32Value target;
    for (const auto& [actions, reboot, restart] : rows) {
        SCOPED_TRACE(actions);
        Int32Value source;
        source.SetValueActions(actions);
        target = source;
        EXPECT_EQ(reboot, target.RebootNeeded());
        EXPECT_EQ(restart, target.RestartNeeded());
        EXPECT_EQ(actions, target.GetValueActions());
        EXPECT_EQ(reboot, Int32Value(target).RebootNeeded());
        EXPECT_EQ(restart, Int32Value(target).RestartNeeded());
        EXPECT_FALSE(source.RebootNeeded());
    }
    Int32Value& self = target;
    target.SetValueAction(Value::RebootNeededAction);
    target = self;
    EXPECT_FALSE(target.RebootNeeded()) << "assigned to itself";
}

TEST(Value, KeepsItsDatumWhenItIsAssignedAsAValue) {
    Int32Value source, target;
    source.SetValue(7);
    target.SetValue(8);
    static_cast<Value&>(target) = source;
    EXPECT_EQ(8, target.GetValue());
}

template <class Class>
Class Named(const char* name, auto value) {
    Class made;
    made.SetValueName(name);
    made.SetValue(value);
    return made;
}

int SignOf(int number) { return (number > 0) - (number < 0); }

TEST(Value, IsComparedAsANumberOrAsAText) {
    const auto signedOnes = [](long value) { return Named<Int32Value>("", value); };
    const auto numbers = [](unsigned long value) { return Named<UInt32Value>("", value); };
    const auto enums = [](unsigned long value) { return Named<UInt32Enum>("", value); };
    const auto texts = [](const char* value) { return Named<TStringValue>("", value); };
    const auto idents = [](const char* value) { return Named<IdentValue>("", value); };
    const auto expect = [](const char* what, int sign, const Value& a, const Value& b) {
        EXPECT_EQ(sign, SignOf(a.Compare(b))) << what;
        EXPECT_EQ(-sign, SignOf(b.Compare(a))) << what << ", the other way";
    };
    expect("signed numbers", -1, signedOnes(-1), signedOnes(1));
    expect("equal signed numbers", 0, signedOnes(5), signedOnes(5));
    expect("unsigned numbers", 1, numbers(0xFFFFFFFF), numbers(1));
    expect("equal unsigned numbers", 0, numbers(5), numbers(5));
    expect("numbers of derived classes", 1, enums(10), enums(9));
    expect("texts without regard to case", 0, texts("A"), texts("a"));
    expect("texts by their letters", -1, texts("a"), texts("B"));
    expect("names before texts", 1, Named<TStringValue>("B", "a"), Named<TStringValue>("A", "b"));
    expect("two classes with regard to case", 1, texts("a"), idents("B"));
    expect("two classes of numbers as texts", -1, signedOnes(10), numbers(9));
}

TEST(Value, KnowsWhatItIs) {
    const ValueCollection collection;
    const ValueTableEntry row;
    const ExternalProgramValueTableEntry program;
    const ExternalProgramValueTable table("Tools");
    const Int32Value number;
    const struct {
        const char* what;
        const Value& value;
        bool isCollection, isTableEntry;
    } rows[] = {{"collection", collection, true, false},
                {"row", row, true, true},
                {"program row", program, true, true},
                {"table", table, false, false},
                {"number", number, false, false}};
    for (const auto& [what, value, isCollection, isTableEntry] : rows) {
        SCOPED_TRACE(what);
        EXPECT_EQ(isCollection, value.IsCollection());
        EXPECT_EQ(isTableEntry, value.IsTableEntry());
        EXPECT_FALSE(value.IsTable());
    }
}

struct Source : ValueInfoSource {
    bool GetDisplayName(const Value& value, Text& text) override {
        return Tell("Shown", value, text);
    }
    bool GetDescription(const Value& value, Text& text) override {
        return Tell("About", value, text);
    }
    bool GetHelpFile(const Value& value, Text& text) override { return Tell("Help", value, text); }
    bool Tell(const char* what, const Value& value, Text& text) const {
        text = what + (' ' + value.GetValueName());
        return knows;
    }
    bool knows = true;
};

TEST(Value, IsDescribedByItsSource) {
    Source first, second;
    BooleanValue value;
    value.SetValueName("Mute");
    EXPECT_EQ(nullptr, value.SetValueInfoSource(&first));
    EXPECT_EQ(&first, value.SetValueInfoSource(&second));
    BooleanValue assigned;
    assigned = value;
    for (const Value& described : {value, BooleanValue(value)}) {
        EXPECT_EQ("Shown Mute", described.GetDisplayName());
        EXPECT_EQ("About Mute", described.GetDescription());
        EXPECT_EQ("Help Mute", described.GetHelpFile());
    }
    EXPECT_EQ("About ", assigned.GetDescription());
    second.knows = false;
    EXPECT_EQ("Mute", value.GetDisplayName());
    EXPECT_EQ("", value.GetDescription());
    EXPECT_EQ("", value.GetHelpFile());
}

TEST(Value, IsDisplayedByItsMembersElseByItsName) {
    ValueCollection value;
    TStringValue name, displayName;
    value.SetDisplayName("Own");
    EXPECT_EQ("Own", value.GetValueName());
    value.DeclareValue(name, "Name");
    EXPECT_EQ("Own", value.FabricateDisplayName()) << "the member is empty";
    value.SetDisplayName("By name");
    EXPECT_EQ("By name", name.GetValue());
    value.DeclareValue(displayName, "DisplayName");
    EXPECT_EQ("By name", value.GetDisplayName()) << "the other member is empty";
    value.SetDisplayName("By display name");
    EXPECT_EQ("By display name", displayName.GetValue());
    EXPECT_EQ("By display name", value.GetDisplayName());
    EXPECT_EQ("By name", name.GetValue());
    EXPECT_EQ("Own", value.GetValueName());
}

TEST(Value, IsDisplayedByTextMembersOfCollectionsAndPlainRowsOnly) {
    TStringValue text;
    FilenameValue file;
    text.SetValue("Member");
    file.SetValue("Member");
    ValueTableEntry row;
    row.DeclareValue(text, "Name");
    EXPECT_EQ("Member", row.GetDisplayName());
    ValueCollection withFile;
    withFile.DeclareValue(file, "Name");
    EXPECT_EQ("", withFile.GetDisplayName()) << "a file name is no text";
    MediaLocationValueTableEntry folder;
    folder.ValueCollection::DeclareValue(text, "Name");
    EXPECT_EQ("", folder.GetDisplayName()) << "a class of its own";
}

TEST(Value, IsReadOnFirstUseOrOnEveryUse) {
    const RawKey key("S");
    key.Set(L"N", 7u);
    UInt32Value once("S", "N", true), always("S", "N", false);
    EXPECT_TRUE(once.IsEmpty());
    EXPECT_EQ(7u, once.GetValue());
    EXPECT_EQ(7u, always.GetValue());
    EXPECT_FALSE(once.IsEmpty());
    key.Set(L"N", 8u);
    EXPECT_EQ(7u, once.GetValue());
    EXPECT_EQ(8u, always.GetValue());
    // What was just set is written, not what was read back.
    always.SetValue(9);
    EXPECT_EQ(9u, key.NumberOf(L"N"));
}

TEST(Value, WritesChangesFromTheTimeOnThatItHasASource) {
    UInt32Value value;
    value.SetRegistrySection("S");
    value.SetValueName("N");
    value.SetValue(5);
    EXPECT_FALSE(RawKey::Exists("S"));
    value.SetAutoRegistrySource(true);
    value.SetValue(6);
    EXPECT_EQ(6u, RawKey("S").NumberOf(L"N"));
    value.SetAutoRegistrySource("T", "M", false);
    EXPECT_EQ("M=0", value.SaveString()) << "read anew, and nothing is stored there";
}

TEST(Value, MovesToASectionAndIsWrittenThereWhereItHasAName) {
    UInt32Value value;
    value.SetValue(5);
    value.SaveRegistry("S");
    EXPECT_FALSE(RawKey::Exists("S"));
    value.SetValueName("N");
    value.SaveRegistry();
    EXPECT_EQ(5u, RawKey("S").NumberOf(L"N"));

    RawKey("T").Set(L"M", 6u);
    UInt32Value loaded;
    loaded.LoadRegistry("T");
    EXPECT_TRUE(loaded.IsEmpty());
    loaded.SetValueName("M");
    loaded.LoadRegistry();
    EXPECT_EQ(6u, loaded.GetValue());
}

}  // namespace
