#include <kitbag/files/shell_link.h>
#include <tests/support/leak_check.h>
#include <tests/support/shell_links.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/text_forms.h>

#include <fstream>

namespace {

using kitbag::test::ExpectNoHandleLeak;
using kitbag::test::Pick;
using kitbag::test::Text;

template <class Ch>
class ShellLink : public testing::Test {
 protected:
    /// Reads a link of the folder; the buffers hold 8-bit text in both forms.
    bool Read(const std::string& name, bool withDescription = true) {
        const auto path = folder.Path() / name;
        const Text<Ch> file = Pick<Ch>(path.string(), path.wstring());
        return KB(GetLinkInfo)(file.c_str(), reinterpret_cast<Ch*>(target),
                               withDescription ? reinterpret_cast<Ch*>(description) : nullptr);
    }

    kitbag::test::Com com;
    kitbag::test::TemporaryFolder folder;
    alignas(Ch) char target[MAX_PATH * sizeof(Ch)] = "before";
    alignas(Ch) char description[MAX_PATH * sizeof(Ch)] = "before";
};
TYPED_TEST_SUITE(ShellLink, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(ShellLink, TellsTargetAndDescription) {
    kitbag::test::MakeLink(this->folder / "films.lnk", "C:\\windows", "All my films");
    ExpectNoHandleLeak([&] { ASSERT_TRUE(this->Read("films.lnk")); });
    EXPECT_STRCASEEQ("C:\\windows", this->target);
    EXPECT_STREQ("All my films", this->description);
    *this->target = '\0';
    EXPECT_TRUE(this->Read("films.lnk", false));
    EXPECT_STRCASEEQ("C:\\windows", this->target);
}

TYPED_TEST(ShellLink, EmptiesTheTextsOfWhatIsNoLink) {
    using Ch = TypeParam;
    std::ofstream(this->folder / "text.lnk") << "no link";
    for (const std::string& name :
         {std::string("text.lnk"), std::string("missing.lnk"), std::string(5000, 'x')}) {
        *this->target = *this->description = 'x';
        EXPECT_FALSE(this->Read(name));
        EXPECT_EQ(Ch{}, *reinterpret_cast<Ch*>(this->target));
        EXPECT_EQ(Ch{}, *reinterpret_cast<Ch*>(this->description));
    }
    EXPECT_FALSE(KB(GetLinkInfo)(nullptr, reinterpret_cast<Ch*>(this->target), nullptr));
    EXPECT_FALSE(KB(GetLinkInfo)(T("text.lnk"), nullptr, nullptr));
}

TYPED_TEST(ShellLink, IsFoundAtUpTo259Characters) {
    std::string name(258 - this->folder.Path().string().size(), 'x');
    kitbag::test::MakeLink(this->folder / name.c_str(), "C:\\windows", "");
    EXPECT_TRUE(this->Read(name));
    name += 'x';
    kitbag::test::MakeLink(this->folder / name.c_str(), "C:\\windows", "");
    EXPECT_FALSE(this->Read(name));
}

}  // namespace
