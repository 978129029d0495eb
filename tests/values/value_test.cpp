#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/values/damaged_settings.h>

#include <memory>

namespace {

using namespace kitbag::test;
using Text = TWinString<char>;

TEST(Values, LoseTheirPlaceWhenCopiedAndKeepItWhenAssigned) {
    UInt32Value source("S", "Source", true), target("S", "Target", true);
    source.SetValue(7);
    source.SetDefaultValue(3);
    source.SetValueActions(0x3002);
    UInt32Value copy(source);
    EXPECT_TRUE(copy.SaveString() == "Source=7" && copy.GetDefaultValue() == 3);
    copy.SetValue(8);
    target = source;
    EXPECT_EQ("Target=7", target.SaveString());
    EXPECT_TRUE(target.RebootNeeded() && target.GetMinimumUserInterfaceLevel() == 2);
    EXPECT_FALSE(source.RebootNeeded() || copy.RebootNeeded());
    target.SetValue(9);
    EXPECT_TRUE(NumberIn("S", "Source") == 7u && NumberIn("S", "Target") == 9u);
}

/// Each cast knows its own class alone.
template <class... T>
void ExpectExactCasts(T* (*... casts)(const Value*)) {
    const auto expect = [&](const Value& value, auto* cast) {
        const std::unique_ptr<Value> copy(value.Copy());
        EXPECT_TRUE(cast(copy.get()) && !cast(nullptr));
        EXPECT_EQ(1, ((casts(&value) != nullptr) + ...));
    };
    (expect(T(), casts), ...);
}

TEST(Values, AreCastToAndVisitedAsTheirExactClass) {
    ExpectExactCasts(KB_GetAsValueTableEntry, KB_GetAsValueCollection, KB_GetAsBooleanValue,
                     KB_GetAsByteArrayValue, KB_GetAsGuidValue, KB_GetAsInt32Value,
                     KB_GetAsUInt32Value, KB_GetAsUInt32Enum, KB_GetAsTStringValue,
                     KB_GetAsFilenameValue, KB_GetAsIdentValue,
                     KB_GetAsExternalProgramValueTableEntry, KB_GetAsMediaLocationValueTableEntry);

    struct : CValueVisitor {
        using CValueVisitor::Visit;
        void Visit(const IdentValue&) override { ++seen; }
        int seen = 0;
    } visitor;
    IdentValue().Accept(visitor);
    EXPECT_EQ(1, visitor.seen);
}

TEST(Values, CompareAsNumbersOrAsTexts) {
    UInt32Enum none, ten;
    ten.SetValue(10);
    EXPECT_EQ(-1, none.Compare(ten));
    EXPECT_EQ(0, IdentValue("A").Compare(IdentValue("a")));
    // Of two classes, with regard to case.
    TStringValue small;
    small.SetValue("a");
    EXPECT_EQ(1, small.Compare(IdentValue("A")));
}

TEST(Values, HaveTextsOfTheirOwn) {
    UInt32Enum quality;
    for (const char* name : {"Low", "Also low", "High"}) quality.AddElement(*name == 'H', name);
    EXPECT_EQ("Low=0High", quality.ToString() + quality.SaveString() + quality.Lookup(1));
    EXPECT_TRUE(quality[2] == 1 && quality[3] == 0 && quality[-1] == 0);
    BooleanValue truth;
    Text texts;
    for (const int sixth : {0, 1, 2, 3, 4, 5}) {
        truth.Type(sixth / 2);
        truth.SetValue(sixth % 2);
        texts += truth.SaveStringDataOnly() + ' ';
    }
    EXPECT_EQ("False True Off On No Yes ", texts);
    const IdentValue ident("id='3' name='Disk");
    EXPECT_TRUE(ident.GetStringField("id") == "3" && ident.GetStringField("name").empty());
}

TEST(Values, AreDescribedByTheirSourceElseByThemselves) {
    struct : ValueInfoSource {
        bool GetDisplayName(const Value&, Text& text) override { return text = "Shown", knows; }
        bool GetDescription(const Value&, Text& text) override { return text = "About", knows; }
        bool GetHelpFile(const Value&, Text& text) override { return text = "Help", knows; }
        bool knows = true;
    } source;
    ValueCollection value;
    TStringValue name, displayName;
    const auto texts = [&] {
        return value.GetDisplayName() + '|' + value.GetDescription() + '|' + value.GetHelpFile();
    };
    value.SetValueInfoSource(&source);
    EXPECT_EQ("Shown|About|Help", texts());
    source.knows = false;
    value.SetDisplayName("Own");
    value.DeclareValue(name, "Name");
    value.SetDisplayName("By name");
    value.DeclareValue(displayName, "DisplayName");
    EXPECT_EQ("By name||", texts()) << "the other member is empty";
    value.SetDisplayName("By display name");
    EXPECT_EQ("By display name||By nameOwn", texts() + name.GetValue() + value.GetValueName());
}

TEST(Values, AreReadOnFirstUseOrOnEveryUse) {
    const RawKey key("S");
    key.Set(L"N", 7u);
    UInt32Value once("S", "N", true), always("S", "N", false), missing("S", "M", true);
    EXPECT_TRUE(once.IsEmpty() && once.GetValue() == 7 && always.GetValue() == 7);
    key.Set(L"N", 8u);
    EXPECT_TRUE(once.GetValue() == 7 && always.GetValue() == 8);
    // What was just set is what is written, not what was read back.
    always.SetValue(9);
    EXPECT_EQ(9u, key.NumberOf(L"N"));
    // An unsigned number alone writes its default, and only where nothing is stored.
    BooleanValue("S", "B", true).SetDefaultValue(true, true);
    for (const unsigned long value : {5u, 6u}) missing.SetDefaultValue(value, true);
    EXPECT_TRUE(key.NumberOf(L"M") == 5 && !key.Has(L"B"));
}

TEST(Values, TakeWhatIsStoredWholeAndElseTheirDefaults) {
    const std::string guidText = "{00020400-0000-0000-C000-000000000046}";
    const RawKey key("S");
    for (int round = 0; round < 500; ++round) {
        SCOPED_TRACE(round);
        for (const wchar_t* name : {L"N", L"N/filter", L"N/Is directory"})
            Store(key, name, {{guidText.begin(), guidText.end()}, L"it's \u00e9", L"{}"});
        // What it loads, and what it writes elsewhere.
        const auto expect = [](auto&& value, auto byDefault, auto read, bool exists = false) {
            const auto stored = read("S", "N");
            value.SetValueName("N");
            value.SetDefaultValue(byDefault);
            value.LoadRegistry("S");
            EXPECT_TRUE(value.GetValue() == stored.value_or(byDefault));
            EXPECT_TRUE(value.HasDefaultValue() == !stored && value.ExistsRegistry() == exists);
            value.SaveRegistry("T");
            EXPECT_TRUE(read("T", "N") == value.GetValue());
        };
        const auto text = TextIn("S", "N");
        const bool isText = text.has_value(), isNumber = NumberIn("S", "N").has_value();
        expect(BooleanValue(), true, NumberIn<bool>, isNumber);
        EXPECT_GE(1u, NumberIn("T", "N"));
        expect(UInt32Enum(), 5ul, NumberIn<DWORD>, isNumber);
        expect(Int32Value(), -5l, NumberIn<long>);
        expect(IdentValue(), "default", TextIn, isText);

        // Its attributes stay where nothing is stored, as the bytes of an array do.
        FilenameValue file;
        file.SetFilterString("*");
        file.SetIsDirectory(true);
        expect(file, "default", TextIn, isText);
        EXPECT_EQ(TextIn("S", "N/filter").value_or("*"), TextIn("T", "N/filter"));
        EXPECT_EQ(NumberIn<bool>("S", "N/Is directory").value_or(true),
                  NumberIn<bool>("T", "N/Is directory"));
        ByteArrayValue bytes("S", "N", true);
        *bytes.SetValueSize(1) = 'k';
        const std::string expected = BytesIn("S", "N").value_or("k");
        EXPECT_EQ(std::string(expected.size(), '\7'), bytes.SaveStringDataOnly());
        EXPECT_FALSE(bytes.ExistsRegistry() || bytes.HasDefaultValue());
        bytes.SaveRegistry("T");
        EXPECT_EQ(expected, BytesIn("T", "N", REG_BINARY));

        // The default is taken first, so that it shows wherever the text is no GUID.
        GuidValue identity;
        identity.SetValueName("N");
        identity.SetDefaultValue(IID_IUnknown);
        identity.LoadRegistry("S");
        EXPECT_TRUE(identity.GetValue() == (text == guidText ? IID_IDispatch : IID_IUnknown));
        EXPECT_TRUE(identity.HasDefaultValue() && identity.ExistsRegistry() == isText);
        identity.SaveRegistry("T");
        EXPECT_EQ(text == guidText, TextIn("T", "N") == guidText);
    }
}

}  // namespace
