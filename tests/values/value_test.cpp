#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/values/clean_settings.h>

#include <memory>

namespace {

using kitbag::test::RawKey;
using Action = Value::ValueAction;

class Values : public kitbag::test::CleanSettings {};

TEST_F(Values, PackLevelAndFlagsIntoOneWord) {
    BooleanValue value;
    value.SetValueAction(Action{0x1001F});
    EXPECT_EQ(0x110u, value.GetValueActions());
    value.SetValueActions(0x50025);
    value.SetMinimumUserInterfaceLevel(Action{0x1013});
    value.UnsetValueAction(Action{0x50001});
    EXPECT_EQ(0x50023u, value.GetValueActions());
}

TEST_F(Values, LoseTheirPlaceWhenCopiedAndKeepItWhenAssigned) {
    UInt32Value source("S", "Source", true), target("S", "Target", true);
    source.SetValue(7);
    source.SetDefaultValue(3);
    source.SetValueActions(0x3002);
    const std::unique_ptr<Value> copied(source.Copy());
    auto& copy = dynamic_cast<UInt32Value&>(*copied);
    EXPECT_EQ("Source=7", copy.SaveString());
    EXPECT_TRUE(copy.GetDefaultValue() == 3 && !copy.RebootNeeded());
    copy.SetValue(8);
    EXPECT_EQ(7u, RawKey("S").NumberOf(L"Source"));

    target = source;
    EXPECT_EQ("Target=7", target.SaveString());
    EXPECT_TRUE(target.RebootNeeded() && target.RestartNeeded());
    EXPECT_EQ(2, target.GetMinimumUserInterfaceLevel());
    target.SetValue(9);
    EXPECT_EQ(9u, RawKey("S").NumberOf(L"Target"));
    target = UInt32Value();
    EXPECT_TRUE(target.IsEmpty() && !target.RebootNeeded());
}

TEST_F(Values, MoveToASectionEvenWithoutAName) {
    UInt32Value value;
    value.SetDefaultValue(7);
    value.SaveRegistry("S");
    EXPECT_FALSE(RawKey::Exists("S"));
    value.SetValueName("N");
    // A value that was never read stores its default.
    value.SaveRegistry();
    EXPECT_EQ(7u, RawKey("S").NumberOf(L"N"));
}

template <class T, class Datum>
T Named(const char* name, const Datum& datum) {
    T value;
    value.SetValueName(name);
    value.SetValue(datum);
    return value;
}

TEST_F(Values, CompareAsNumbersOrAsTexts) {
    EXPECT_EQ(-1, Named<Int32Value>("N", -1).Compare(Named<Int32Value>("A", 1)));
    EXPECT_EQ(1, Named<UInt32Value>("A", 0xFFFFFFFF).Compare(Named<UInt32Value>("N", 1u)));
    EXPECT_EQ(1, Named<UInt32Enum>("N", 10u).Compare(Named<UInt32Enum>("N", 9u)));
    EXPECT_EQ(0, Named<TStringValue>("N", "a").Compare(Named<TStringValue>("n", "A")));
    EXPECT_GT(0, Named<TStringValue>("A", "z").Compare(Named<TStringValue>("B", "a")));
    // Of different classes: "N='B'" is before "N='a'" in the order that knows case.
    EXPECT_GT(0, Named<TStringValue>("N", "B").Compare(Named<IdentValue>("N", "a")));
}

struct Source : ValueInfoSource {
    using Text = TWinString<char>;
    bool Tell(Text& out, const Text& text) const { return out = text, knows; }
    bool GetDisplayName(const Value&, Text& out) override { return Tell(out, "Shown"); }
    bool GetDescription(const Value&, Text& out) override { return Tell(out, "Described"); }
    bool GetHelpFile(const Value&, Text& out) override { return Tell(out, "help.chm"); }
    bool knows = true;
};

TEST_F(Values, TakeTheirTextsFromTheSourceThatKnowsThem) {
    Source source;
    auto value = Named<BooleanValue>("Mute", true);
    EXPECT_EQ(nullptr, value.SetValueInfoSource(&source));
    EXPECT_EQ("Shown", value.GetDisplayName());
    EXPECT_EQ("Described", value.GetDescription());
    EXPECT_EQ("help.chm", BooleanValue(value).GetHelpFile());
    source.knows = false;
    EXPECT_EQ("Mute", value.GetDisplayName() + value.GetDescription() + value.GetHelpFile());
    EXPECT_EQ(&source, value.SetValueInfoSource(nullptr));
}

TEST_F(Values, FindTheirDisplayNameAmongTheirMembers) {
    TStringValue displayName, name;
    ValueTableEntry row;
    row.SetDisplayName("Row");
    row.DeclareValue(name, "Name");
    EXPECT_EQ("Row", row.GetDisplayName());
    row.SetDisplayName("First");
    row.DeclareValue(displayName, "DisplayName");
    EXPECT_EQ("First", row.GetDisplayName());
    row.SetDisplayName("Second");
    EXPECT_EQ("SecondFirstRow", row.GetDisplayName() + name.GetValue() + row.GetValueName());
    // A row with a class of its own keeps its value name.
    ExternalProgramValueTableEntry program;
    program.DeclareValue(name);
    EXPECT_EQ("", program.GetDisplayName());
}

template <class T, class Other>
void ExpectExactCast(T* (*cast)(const Value*), Other* (*otherCast)(const Value*)) {
    const T value;
    const std::unique_ptr<Value> copy(value.Copy());
    EXPECT_TRUE(cast(&value) == &value && cast(copy.get()) == copy.get());
    EXPECT_FALSE(otherCast(&value) || cast(nullptr));
}

TEST_F(Values, AreCastToTheirExactClass) {
    ExpectExactCast(KB_GetAsValueTableEntry, KB_GetAsValueCollection);
    ExpectExactCast(KB_GetAsBooleanValue, KB_GetAsInt32Value);
    ExpectExactCast(KB_GetAsByteArrayValue, KB_GetAsGuidValue);
    ExpectExactCast(KB_GetAsInt32Value, KB_GetAsUInt32Value);
    ExpectExactCast(KB_GetAsUInt32Value, KB_GetAsUInt32Enum);
    ExpectExactCast(KB_GetAsUInt32Enum, KB_GetAsUInt32Value);
    ExpectExactCast(KB_GetAsTStringValue, KB_GetAsIdentValue);
    ExpectExactCast(KB_GetAsFilenameValue, KB_GetAsTStringValue);
    ExpectExactCast(KB_GetAsIdentValue, KB_GetAsTStringValue);
    ExpectExactCast(KB_GetAsExternalProgramValueTableEntry, KB_GetAsValueTableEntry);
    const ExternalProgramValueTable programs("S");
    const MediaLocationValueTable folders(MediaLocationValueTable::VideoRead);
    EXPECT_TRUE(KB_GetAsValueTable(&programs) && KB_GetAsValueTable(&folders));
    EXPECT_FALSE(KB_GetAsExternalProgramValueTable(&programs));
    EXPECT_FALSE(KB_GetAsMediaLocationValueTable(&folders));
}

}  // namespace
