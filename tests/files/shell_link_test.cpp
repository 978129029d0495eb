#include <kitbag/files/shell_link.h>
#include <tests/support/text_folder.h>

namespace {

template <class Ch>
struct ShellLink : testing::Test, kitbag::test::Com, kitbag::test::TextFolder<Ch> {};
TYPED_TEST_SUITE(ShellLink, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(ShellLink, TellsItsTextsIn8BitsInBothForms) {
    using Ch = TypeParam;
    const std::string longest(258 - this->Path().string().size(), 'x'), tooLong = longest + 'x';
    for (const auto& link : {std::string("link"), longest, tooLong})
        this->WriteLink(link, "C:\\windows");
    this->Write("text", "no link");
    for (const auto& name :
         {std::string("link"), longest, tooLong, std::string("text"), std::string("missing")}) {
        SCOPED_TRACE(name);
        Ch target[MAX_PATH] = {'#'}, description[MAX_PATH] = {'#'};
        const bool isGood = name == "link" || name == longest;
        EXPECT_EQ(isGood, KB(GetLinkInfo)(this->In(name).c_str(), target, description));
        EXPECT_STRCASEEQ(isGood ? "C:\\windows" : "", reinterpret_cast<char*>(target));
        EXPECT_STREQ(isGood ? "A description" : "", reinterpret_cast<char*>(description));
        EXPECT_EQ(isGood, KB(GetLinkInfo)(this->In(name).c_str(), target, nullptr));
    }
}

}  // namespace
