#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/private_registry.h>

namespace {

using namespace kitbag::test;

TEST(NumberValues, AreShownAsDecimalNumbers) {
    Int32Value number;
    UInt32Value natural;
    for (const auto& [datum, text] : {std::pair(-5L, "-5"), {0L, "0"}, {LONG_MIN, "-2147483648"}}) {
        number.SetValue(datum);
        EXPECT_EQ(text, number.SaveStringDataOnly());
    }
    natural.SetValue(0xFFFFFFFF);
    EXPECT_EQ("4294967295", natural.SaveStringDataOnly());
}

TEST(NumberValues, WriteTheDefaultOnlyWhereTheUnsignedOneIsAskedTo) {
    const RawKey key("S");
    key.Set(L"There", 7u);
    UInt32Value missing("S", "Missing", true), there("S", "There", true), sourceless;
    sourceless.SetRegistrySection("S");
    sourceless.SetValueName("Sourceless");
    for (UInt32Value* value : {&missing, &there, &sourceless}) value->SetDefaultValue(5, true);
    EXPECT_EQ(5u, key.NumberOf(L"Missing"));
    EXPECT_TRUE(missing.IsEmpty()) << "the datum is not touched";
    EXPECT_EQ(7u, key.NumberOf(L"There"));
    EXPECT_FALSE(key.Has(L"Sourceless"));
    UInt32Value("S", "Other", true).SetDefaultValue(5);
    BooleanValue("S", "Other", true).SetDefaultValue(true, true);
    TStringValue("S", "Other", true).SetDefaultValue("default", true);
    GuidValue("S", "Other", true).SetDefaultValue(GUID(), true);
    EXPECT_FALSE(key.Has(L"Other")) << "not asked to, or of another class";
}

}  // namespace
