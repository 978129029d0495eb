#include <kitbag/files/names.h>
#include <tests/support/text_forms.h>

namespace {

template <class Ch>
class Names : public testing::Test {};
TYPED_TEST_SUITE(Names, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(Names, AreCheckedAndRepaired) {
    using Ch = TypeParam;
    // Each name, and the same after repair.
    kitbag::test::Text<Ch> cases[][2] = {{T("file"), T("file")},
                                         {T(" file."), T("_file_")},
                                         {T("."), T("_")},
                                         {T("a?\x1f|\xe9"), T("a___\xe9")},
                                         {T("\\di\\a"), T("_di_a")},
                                         {T("C:"), T("C_")},
                                         {T("C:\\d?\\"), T("C:\\d?\\")},
                                         {T("\\\\?\\:b"), T("\\\\?\\_b")},
                                         {T("COM0"), T("COM0")},
                                         {T("con .a"), T("con .a")},
                                         {T("con."), T("con_")}};
    for (auto& [name, repaired] : cases) {
        EXPECT_EQ(name == repaired, KB(ValidateFilename)(name.data(), false, false)) << name;
        EXPECT_TRUE(KB(ValidatePath)(name.data(), true, false)) << name;
        EXPECT_EQ(repaired, name);
    }
    for (kitbag::test::Text<Ch> path : {T("\\d?\\a"), T("a?/b\\c"), T("a/?/")})
        EXPECT_TRUE(KB(ValidateFilename)(path.data(), false, true)) << path;
    for (kitbag::test::Text<Ch> name : {T("prn"), T("C:\\Lpt1.a.b"), T("clock$"), T("")})
        EXPECT_FALSE(KB(ValidateFilename)(name.data(), true, false)) << name;
    EXPECT_FALSE(KB(ValidateFilename)(nullptr, true, true));
}

TYPED_TEST(Names, OfComputersHaveUpTo14Characters) {
    using Ch = TypeParam;
    for (auto* name : {T("\\\\abcdefghijklmn\\x y"), T("{a!#$%&'()-.@^"), T("_}~09AZ")})
        EXPECT_TRUE(KB(ValidateComputerName)(name)) << name;
    for (auto* name : {T(""), T("\\\\"), T("a b"), T("a/b"), T("\xe9"), T("abcdefghijklmno")})
        EXPECT_FALSE(KB(ValidateComputerName)(name)) << name;
}

}  // namespace
