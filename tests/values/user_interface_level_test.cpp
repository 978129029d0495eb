#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/own_process.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>

#include <algorithm>

namespace {

using namespace kitbag::test;

constexpr char kSection[] = "Screen";
constexpr wchar_t kName[] = L"User experience level";

TEST(UserInterfaceLevel, IsReadOnceAndTheLeastDetailedWhereNothingIsStored) {
    if (RanInAProcessOfItsOwn()) return;
    EXPECT_EQ(3, KB_GetUserInterfaceLevel());
    RawKey(kSection).Set(kName, 1);
    EXPECT_EQ(3, KB_GetUserInterfaceLevel());
}

class StoredLevel : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Users, StoredLevel, testing::Values(-2, 0, 2, 7));

TEST_P(StoredLevel, ShowsValuesOfItsOwnLevelAndAbove) {
    if (RanInAProcessOfItsOwn()) return;
    RawKey(kSection).Set(kName, static_cast<DWORD>(GetParam()));
    const int user = std::clamp(GetParam(), 0, 3);
    EXPECT_EQ(user, KB_GetUserInterfaceLevel());
    BooleanValue value;
    for (const int level : {0, 1, 2, 3}) {
        SCOPED_TRACE(Called("at user's level", user, level));
        value.SetMinimumUserInterfaceLevel(static_cast<Value::ValueAction>(level));
        EXPECT_EQ(user <= level, KB_UILevelShowValue(&value));
        EXPECT_EQ(user <= level, KB_ShowUserInterfaceLevel(level));
    }
    value.SetValueAction(Value::HiddenAction);
    EXPECT_EQ(user == 0, KB_UILevelShowValue(&value)) << "hidden, of level 3";
    EXPECT_FALSE(KB_UILevelShowValue(nullptr));
}

TEST(UserInterfaceLevel, IsComparedByTheDetailThatIsShown) {
    const struct {
        int a, b;
        bool shows;
        int lowest, highest;
    } rows[] = {{1, 3, false, 3, 1}, {3, 1, true, 3, 1}, {2, 2, true, 2, 2}, {-1, 1, false, 1, -1}};
    for (const auto& [a, b, shows, lowest, highest] : rows) {
        SCOPED_TRACE(Called("levels", a, b));
        EXPECT_EQ(shows, KB_CompareUserInterfaceLevels(a, b));
        EXPECT_EQ(lowest, KB_LowestInterfaceLevel(a, b));
        EXPECT_EQ(highest, KB_HighestInterfaceLevel(a, b));
    }
}

}  // namespace
