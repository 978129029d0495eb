#include <kitbag/files/names.h>
#include <tests/support/text_forms.h>

#include <algorithm>
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

// The rules, once more as patterns.

bool IsComputerName(const std::string& name) {
    static const std::regex rule(R"((\\\\)?[A-Za-z0-9!#$%&'()\-.@^_{}~]{1,14}(\\(.|[\r\n])*)?)");
    return std::regex_match(name, rule);
}

std::string Repaired(const std::string& component) {
    static const std::regex wrong(R"(^[ .]|[ .]$|[\x01-\x1f?"/\\<>*|:])");
    return std::regex_replace(component, wrong, "_");
}

bool IsDevice(const std::string& component) {
    static const std::regex rule(R"((con|aux|com[1-9]|lpt[1-9]|prn|nul|clock\$)(\..*)?)",
                                 std::regex::icase);
    return std::regex_match(component, rule);
}

std::size_t ComponentIn(const std::string& name, bool isPath) {
    if (!isPath && name.find(':') != 1 && !name.starts_with("\\\\")) return 0;
    return name.find_last_of(name.find('\\') == name.npos ? '/' : '\\') + 1;
}

template <class Ch>
struct Names : testing::Test {};
TYPED_TEST_SUITE(Names, kitbag::test::TextForms, kitbag::test::TextFormName);

/// In 16 bits an e acute becomes a character whose low byte is a backslash's.
template <class Ch>
Text<Ch> Spell(const std::string& text) {
    Text<Ch> spelled(text.begin(), text.end());
    std::ranges::replace(spelled, static_cast<Ch>('\xe9'),
                         kitbag::test::Pick<Ch>('\xe9', L'\x15c'));
    return spelled;
}

TYPED_TEST(Names, AreCheckedAndRepaired) {
    using Ch = TypeParam;
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const std::string name = RandomName(random);
        const bool repair = random() % 2, isPath = random() % 2;
        SCOPED_TRACE(testing::Message() << name << ' ' << repair << isPath);
        const auto validate = random() % 2 ? KB(ValidateFilename) : KB(ValidatePath);
        const auto begin = ComponentIn(name, isPath);
        const auto component = name.substr(begin);
        const auto repaired = Repaired(component);
        auto spelled = Spell<Ch>(name);
        EXPECT_EQ(!name.empty() && (repair || component == repaired) && !IsDevice(repaired),
                  validate(spelled.data(), repair, isPath));
        EXPECT_EQ(Spell<Ch>(repair ? name.substr(0, begin) + repaired : name), spelled);
        EXPECT_EQ(IsComputerName(name), KB(ValidateComputerName)(Spell<Ch>(name).c_str()));
    }
    EXPECT_FALSE(KB(ValidateFilename)(nullptr, true, true) || KB(ValidateComputerName)(nullptr));
}

}  // namespace
