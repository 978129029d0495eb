#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>

namespace {

using namespace kitbag::test;

TEST(BooleanValue, IsShownInItsStyle) {
    const struct {
        int style;
        const char *whenFalse, *whenTrue;
    } rows[] = {{0, "False", "True"},
                {1, "Off", "On"},
                {2, "No", "Yes"},
                {3, "False", "True"},
                {-1, "False", "True"}};
    for (const auto& [style, whenFalse, whenTrue] : rows) {
        SCOPED_TRACE(Called("Type", style));
        BooleanValue value;
        value.Type(style);
        EXPECT_EQ(style, value.Type());
        EXPECT_EQ(whenFalse, value.SaveStringDataOnly());
        value.SetValue(true);
        EXPECT_EQ(whenTrue, value.SaveStringDataOnly());
        EXPECT_EQ(whenTrue, BooleanValue(value).SaveStringDataOnly());
    }
}

TEST(BooleanValue, IsComparedByItsDatum) {
    BooleanValue yes, no;
    yes.SetValue(true);
    EXPECT_TRUE(yes);
    EXPECT_FALSE(no);
    EXPECT_TRUE(yes == true);
    EXPECT_FALSE(yes == false);
    EXPECT_TRUE(no == false);
    EXPECT_FALSE(yes == no);
    EXPECT_TRUE(yes == BooleanValue(yes));
}

TEST(BooleanValue, WritesNoDefault) {
    BooleanValue("S", "N", true).SetDefaultValue(true, true);
    EXPECT_FALSE(RawKey::Exists("S"));
}

}  // namespace
