#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>

namespace {

using namespace kitbag::test;
using Text = TWinString<char>;

TEST(TextValues, ShowTheTextInQuotesWithNothingEscaped) {
    TStringValue value;
    value.SetValueName("Path");
    value.SetValue("it's C:\\x");
    EXPECT_EQ("Path='it's C:\\x'", value.ToString());
}

TEST(TextValues, AreSetByAssignmentAndReadByConversion) {
    TStringValue value("S", "N", true), other;
    value = Text("text");
    EXPECT_EQ(L"text", RawKey("S").TextOf(L"N"));
    EXPECT_EQ("text", static_cast<Text>(value));
    EXPECT_TRUE(value == Text("text"));
    EXPECT_FALSE(value == Text("Text"));
    EXPECT_FALSE(value == other);
    other = value;
    EXPECT_TRUE(value == other);
}

TEST(TextValues, FindFieldsOfAnIdentifier) {
    const struct {
        const char *ident, *field, *content;
    } rows[] = {{"id='3' name='Disk'", "name", "Disk"},
                {"id='3' name='Disk'", "id", "3"},
                {"id='3' id='4'", "id", "3"},
                {"name=Disk", "name", ""},
                {"name='Disk", "name", ""},
                {"name='Disk'", "size", ""},
                {"name=''", "name", ""},
                {"", "name", ""}};
    for (const auto& [ident, field, content] : rows)
        EXPECT_EQ(content, IdentValue(ident).GetStringField(field)) << Called(field, ident);
}

}  // namespace
