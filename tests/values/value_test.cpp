#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>
#include <tests/values/recordings.h>

#include <algorithm>

namespace {

using namespace kitbag::test;
using Text = TWinString<char>;
using Action = Value::ValueAction;

TEST(Value, ChangesFlagsWithoutTheLevelAndTheLevelWithoutFlags) {
    const struct {
        const char* what;
        void (*change)(Value&);
        unsigned long word;
    } rows[] = {
        {"set", [](Value& value) { value.SetValueAction(Action{0xFFFF0C1A}); }, 0x13D35},
        {"unset", [](Value& value) { value.UnsetValueAction(Action{0xFFFF2105}); }, 0x11025},
        {"level", [](Value& value) { value.SetMinimumUserInterfaceLevel(Action{0xD3}); }, 0x13123},
        {"word", [](Value& value) { value.SetValueActions(0x2005); }, 0x2005}};
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

TEST(Value, LosesItsPlaceWhenItIsCopiedAndKeepsItWhenItIsAssigned) {
    UInt32Value source("S", "N", true), target("S", "Target", true);
    source.SetValue(7);
    source.SetDefaultValue(3);
    source.SetValueActions(0x1002);
    UInt32Value copy(source);
    target = source;
    EXPECT_EQ("N=7", copy.SaveString());
    EXPECT_EQ("Target=7", target.SaveString());
    for (const UInt32Value* each : {&copy, &target}) {
        EXPECT_EQ(3u, each->GetDefaultValue());
        EXPECT_EQ(0x1002u, each->GetValueActions());
        EXPECT_EQ(each == &target, each->RestartNeeded()) << "only an assignment asks for it";
    }
    const RawKey key("S");
    EXPECT_FALSE(key.Has(L"Target")) << "an assignment writes nothing";
    for (UInt32Value* each : {&copy, &target}) each->SetValue(9);
    copy.SaveRegistry();
    EXPECT_EQ(9u, key.NumberOf(L"Target"));
    EXPECT_EQ(7u, key.NumberOf(L"N"));
    EXPECT_TRUE(UInt32Value(UInt32Value("S", "N", true)).IsEmpty());
}

TEST(Value, NeedsWhatTheAssignedOnesActionsSay) {
    Int32Value source, target;
    source.SetValue(7);
    target.SetValue(8);
    for (const unsigned long actions : {0x1000ul, 0x2000ul, 0x3000ul, 0ul}) {
        SCOPED_TRACE(actions);
        source.SetValueActions(actions);
        static_cast<Value&>(target) = source;
        for (const Int32Value& needing : {target, Int32Value(target)}) {
            EXPECT_EQ((actions & 0x2000) != 0, needing.RebootNeeded());
            EXPECT_EQ((actions & 0x1000) != 0, needing.RestartNeeded());
        }
        EXPECT_EQ(actions, target.GetValueActions());
        EXPECT_FALSE(source.RebootNeeded());
    }
    EXPECT_EQ(8, target.GetValue()) << "assigned as a value, it keeps its datum";
    const Int32Value& self = target;
    target.SetValueAction(Value::RebootNeededAction);
    target = self;
    EXPECT_FALSE(target.RebootNeeded()) << "assigned to itself";
}

template <class Class>
Class Of(decltype(Class().GetValue()) datum, const char* name = "") {
    Class made;
    made.SetValueName(name);
    made.SetValue(datum);
    return made;
}

TEST(Value, IsComparedAsANumberOrAsAText) {
    using Signed = Int32Value;
    using Unsigned = UInt32Value;
    using String = TStringValue;
    const auto expect = [](const char* what, int sign, const Value& a, const Value& b) {
        EXPECT_EQ(sign, std::clamp(a.Compare(b), -1, 1)) << what;
        EXPECT_EQ(-sign, std::clamp(b.Compare(a), -1, 1)) << what << ", the other way";
    };
    expect("signed numbers", -1, Of<Signed>(-1), Of<Signed>(1));
    expect("equal signed numbers", 0, Of<Signed>(5), Of<Signed>(5));
    expect("unsigned numbers", 1, Of<Unsigned>(0xFFFFFFFF), Of<Unsigned>(1));
    expect("equal unsigned numbers", 0, Of<Unsigned>(5), Of<Unsigned>(5));
    expect("numbers of derived classes", 1, Of<UInt32Enum>(10), Of<UInt32Enum>(9));
    expect("texts without regard to case", 0, Of<String>("A"), Of<String>("a"));
    expect("texts by their letters", -1, Of<String>("a"), Of<String>("B"));
    expect("names before texts", 1, Of<String>("a", "B"), Of<String>("b", "A"));
    expect("two classes with regard to case", 1, Of<String>("a"), Of<IdentValue>("B"));
    expect("two classes of numbers as texts", -1, Of<Signed>(10), Of<Unsigned>(9));
}

TEST(Value, KnowsWhatItIs) {
    const auto expect = [](const Value& value, bool isCollection, bool isTableEntry) {
        EXPECT_EQ(isCollection, value.IsCollection()) << typeid(value).name();
        EXPECT_EQ(isTableEntry, value.IsTableEntry()) << typeid(value).name();
        EXPECT_FALSE(value.IsTable()) << typeid(value).name();
    };
    expect(ValueCollection(), true, false);
    expect(ValueTableEntry(), true, true);
    expect(ExternalProgramValueTable("Tools"), false, false);
    expect(Notes(), false, false);
    expect(Int32Value(), false, false);
}

struct Source : ValueInfoSource {
    bool GetDisplayName(const Value& of, Text& text) override { return Tell("Shown", of, text); }
    bool GetDescription(const Value& of, Text& text) override { return Tell("About", of, text); }
    bool GetHelpFile(const Value& of, Text& text) override { return Tell("Help", of, text); }
    bool Tell(const char* what, const Value& of, Text& text) const {
        text = what + (' ' + of.GetValueName());
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
    value.DeclareValue(name, "Name");
    EXPECT_EQ("Own", value.FabricateDisplayName()) << "the member is empty";
    value.SetDisplayName("By name");
    value.DeclareValue(displayName, "DisplayName");
    EXPECT_EQ("By name", value.GetDisplayName()) << "the other member is empty";
    value.SetDisplayName("By display name");
    EXPECT_EQ("By display name", value.GetDisplayName());
    EXPECT_EQ("By display name", displayName.GetValue());
    EXPECT_EQ("By name", name.GetValue());
    EXPECT_EQ("Own", value.GetValueName());
}

TEST(Value, IsDisplayedByTextMembersOfCollectionsAndPlainRowsOnly) {
    auto text = Of<TStringValue>("Member");
    auto file = Of<FilenameValue>("Member");
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
    value.SetValue(5);
    value.SaveRegistry("S");
    EXPECT_FALSE(RawKey::Exists("S")) << "it moves there, but has no name";
    value.SetValueName("N");
    value.SaveRegistry();
    const RawKey key("S");
    EXPECT_EQ(5u, key.NumberOf(L"N"));
    value.SetValue(6);
    EXPECT_EQ(5u, key.NumberOf(L"N")) << "no source yet";
    value.SetAutoRegistrySource(true);
    value.SetValue(7);
    EXPECT_EQ(7u, key.NumberOf(L"N"));
    value.SetAutoRegistrySource("T", "M", false);
    EXPECT_EQ("M=0", value.SaveString()) << "read anew, and nothing is stored there";
}

TEST(Value, LoadsWhereItHasMovedOnceItHasAName) {
    RawKey("S").Set(L"N", 6u);
    UInt32Value loaded;
    loaded.LoadRegistry("S");
    EXPECT_TRUE(loaded.IsEmpty());
    loaded.SetValueName("N");
    loaded.LoadRegistry();
    EXPECT_EQ(6u, loaded.GetValue());
}

}  // namespace
