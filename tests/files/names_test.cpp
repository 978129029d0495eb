#include <kitbag/files/names.h>
#include <tests/support/text_forms.h>

#include <random>
#include <regex>

namespace {

using kitbag::test::Text;

/// Up to four pieces: what the rules single out, and single characters of any kind.
std::string RandomName(std::mt19937& random) {
    static const std::string pieces[] = {
        "con",  "AUX.", "Com1", "COM0", "com9", "com10", "lpt1", "LPT9",     "lpt0",
        "Prn",  "nul",  "nul_", ".a.b", " ",    ".",     "\xe9", "C:",       "\\\\",
        "\\ab", "a/b",  "a",    "_}~",  "a-Z.", "09!#$", "{&'",  "()%@^azA", "clock$"};
    std::string name;
    for (auto count = random() % 5; count > 0; --count)
        name += random() % 4 ? pieces[random() % std::size(pieces)]
                             : std::string(1, static_cast<char>(1 + random() % 127));
    return name;
}

// The rules, as patterns.
const std::regex computerName(R"((\\\\)?[A-Za-z0-9!#$%&'()\-.@^_{}~]{1,14}(\\(.|[\r\n])*)?)");
const std::regex toRepair(R"(^[ .]|[ .]$|[\x01-\x1f?"/\\<>*|:])");
const std::regex device(R"((con|aux|com[1-9]|lpt[1-9]|prn|nul|clock\$)(\..*)?)", std::regex::icase);

std::size_t ComponentIn(const std::string& name, bool isPath) {
    if (!isPath && name.find(':') != 1 && !name.starts_with("\\\\")) return 0;
    return name.find_last_of(name.find('\\') == name.npos ? '/' : '\\') + 1;
}

template <class Ch>
struct Names : testing::Test {};
TYPED_TEST_SUITE(Names, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(Names, AreCheckedAndRepaired) {
    using Ch = TypeParam;
    std::mt19937 random;
    for (int i = 0; i < 5000; ++i) {
        const std::string name = RandomName(random);
        const bool repair = random() % 2, isPath = random() % 2;
        const auto begin = ComponentIn(name, isPath);
        const std::string component = name.substr(begin),
                          repaired = std::regex_replace(component, toRepair, "_");
        const bool isGood =
            (repair || component == repaired) && !std::regex_match(repaired, device);

        Text<Ch> text(name.begin(), name.end());
        EXPECT_EQ(std::regex_match(name, computerName), KB(ValidateComputerName)(text.c_str()))
            << name;
        const auto validate = random() % 2 ? KB(ValidateFilename) : KB(ValidatePath);
        EXPECT_EQ(isGood && !name.empty(), validate(text.data(), repair, isPath)) << name;
        const std::string expected = repair ? name.substr(0, begin) + repaired : name;
        EXPECT_EQ(Text<Ch>(expected.begin(), expected.end()), text) << name;
    }
    // In 16 bits, a character whose low byte is a backslash's.
    Ch other[] = {kitbag::test::Pick<Ch>('\xe9', L'\x15c'), 0};
    EXPECT_TRUE(KB(ValidateFilename)(other, false, false) && !KB(ValidateComputerName)(other));
    EXPECT_FALSE(KB(ValidateFilename)(nullptr, true, true) || KB(ValidateComputerName)(nullptr));
}

}  // namespace
