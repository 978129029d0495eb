#include <kitbag/files/names.h>
#include <tests/support/text_forms.h>

namespace {

using kitbag::test::Text;

template <class Ch>
class Names : public testing::Test {};
TYPED_TEST_SUITE(Names, kitbag::test::TextForms, kitbag::test::TextFormName);

struct Case {
    std::string name;
    bool isPath;
    bool isAcceptable;
    /// The name after repair, and whether it is acceptable then.
    std::string repaired;
    bool isAcceptableThen;
};

const Case cases[] = {
    {"report.txt", false, true, "report.txt", true},
    {"", true, false, "", false},
    {"report.", false, false, "report_", true},
    {" report", false, false, "_report", true},
    {".", false, false, "_", true},
    {"a?b\x1f|c\x7f\xe9", false, false, "a_b__c\x7f\xe9", true},
    // What is checked of a path.
    {"\\dir\\file", false, false, "_dir_file", true},
    {"\\di?r\\file", true, true, "\\di?r\\file", true},
    {"C:\\te?mp\\", false, true, "C:\\te?mp\\", true},
    {"C:/te?mp/", false, true, "C:/te?mp/", true},
    {"C:", false, false, "C_", true},
    {"\\\\srv\\sha?re\\file.", false, false, "\\\\srv\\sha?re\\file_", true},
    {"a/b\\c", true, true, "a/b\\c", true},
    {"a\\b/c", true, false, "a\\b_c", true},
    // Names of devices.
    {"PRN", false, false, "PRN", false},
    {"con.", false, false, "con_", true},
    {"Lpt1.log.txt", false, false, "Lpt1.log.txt", false},
    {"C:\\clock$", false, false, "C:\\clock$", false},
    {"COM0", false, true, "COM0", true},
    {"COM10", false, true, "COM10", true},
    {"con .txt", false, true, "con .txt", true},
};

TYPED_TEST(Names, AreCheckedAndRepaired) {
    using Ch = TypeParam;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        for (const auto validate : {KB(ValidateFilename), KB(ValidatePath)}) {
            // Byte by byte: the codes above 127 are just characters.
            Text<Ch> name(c.name.begin(), c.name.end());
            EXPECT_EQ(c.isAcceptable, validate(name.data(), false, c.isPath));
            EXPECT_EQ(Text<Ch>(c.name.begin(), c.name.end()), name);
            EXPECT_EQ(c.isAcceptableThen, validate(name.data(), true, c.isPath));
            EXPECT_EQ(Text<Ch>(c.repaired.begin(), c.repaired.end()), name);
        }
    }
    EXPECT_FALSE(KB(ValidateFilename)(nullptr, true, true));
}

TYPED_TEST(Names, OfComputersHaveUpTo14Characters) {
    using Ch = TypeParam;
    for (const auto* name : {T("n"), T("abcdefghijklmn"), T("\\\\srv\\x y"), T("a!#$%&'()-.@^"),
                             T("_{}~09AZ"), T("\\\\abcdefghijklmn\\share")})
        EXPECT_TRUE(KB(ValidateComputerName)(name)) << name;
    for (const auto* name :
         {static_cast<const Ch*>(nullptr), T(""), T("\\\\"), T("\\srv"), T("\\\\\\x"), T("my pc"),
          T("a/b"), T("srv\xe9"), T("a+b"), T("abcdefghijklmno"), T("abcdefghijklmno\\share")})
        EXPECT_FALSE(KB(ValidateComputerName)(name));
}

}  // namespace
