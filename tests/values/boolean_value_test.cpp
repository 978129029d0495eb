#include <gtest/gtest.h>
#include <kitbag/kitbag.h>

namespace {

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
        BooleanValue value;
        value.Type(style);
        EXPECT_EQ(style, value.Type());
        EXPECT_EQ(whenFalse, value.SaveStringDataOnly()) << style;
        value.SetValue(true);
        EXPECT_EQ(whenTrue, BooleanValue(value).SaveStringDataOnly()) << style;
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

}  // namespace
