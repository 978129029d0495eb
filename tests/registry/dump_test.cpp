#include <kitbag/registry/dump.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

#include <string>

namespace {

using kitbag::test::RawKey;
using kitbag::test::Text;

template <class Ch>
class SettingsDump : public testing::Test {
 protected:
    static Text<Ch> Dump(const Ch* section) {
        Text<Ch> output;
        EXPECT_TRUE(KB(DumpRegistry)(section, output));
        return output;
    }
    /// The lines that a dump of this section consists of; "@" stands for the section's path.
    static Text<Ch> Lines(const std::string& section, std::string body) {
        const std::string path = std::string(kitbag::test::kRoot) + section;
        for (size_t at; (at = body.find('@')) != body.npos;) body.replace(at, 1, path);
        body.insert(0, "------- HKEY_LOCAL_MACHINE -------\n");
        return Text<Ch>(body.begin(), body.end());
    }
};
TYPED_TEST_SUITE(SettingsDump, kitbag::test::TextForms, kitbag::test::TextFormName);

// Wine enumerates values and keys by name; the tests below create them in that order.
TYPED_TEST(SettingsDump, ListsValuesThenKeysDepthFirst) {
    using Ch = TypeParam;
    RawKey("S\\B\\Inner").Set(L"Text", std::wstring(L"it's"));
    RawKey("S\\A").Set(L"Binary", REG_BINARY, "\1\2", 2);
    RawKey("S").Set(L"Expanded", REG_EXPAND_SZ, L"x", 4);
    RawKey("S").Set(L"Max", 0xffffffffu);
    RawKey("S").Set(L"No text", REG_SZ, "", 0);
    RawKey("S").Set(L"Number", 70u);
    const auto expected = this->Lines("\\S",
                                      "@<p>\n"
                                      "Expanded=[Unhandled type]<p>\n"
                                      "Max=-1 (0xffffffff)<p>\n"
                                      "No text=''<p>\n"
                                      "Number=70 (0x46)<p>\n"
                                      "@\\A<p>\n"
                                      "Binary=[Unhandled type]<p>\n"
                                      "@\\B<p>\n"
                                      "@\\B\\Inner<p>\n"
                                      "Text='it's'<p>\n");
    EXPECT_EQ(expected, this->Dump(T("S")));

    Text<Ch> output = T("before\n");
    EXPECT_TRUE(KB(DumpRegistry)(T("S"), output));
    EXPECT_EQ(T("before\n") + expected, output);
}

TYPED_TEST(SettingsDump, OfAMissingSectionIsTheHeading) {
    using Ch = TypeParam;
    EXPECT_EQ(this->Lines("", ""), this->Dump(T("S")));
    EXPECT_EQ(this->Lines("", ""), this->Dump(nullptr));
    RawKey();
    EXPECT_EQ(this->Lines("", "@<p>\n"), this->Dump(nullptr));
}

TYPED_TEST(SettingsDump, StopsAtTheFirstLargeValueOfAKey) {
    using Ch = TypeParam;
    RawKey("S").Set(L"A", 1u);
    RawKey("S").Set(L"B", REG_BINARY, std::string(257, 'x').data(), 257);
    RawKey("S").Set(L"C", 2u);
    RawKey("S\\Sub").Set(L"N", 3u);
    EXPECT_EQ(this->Lines("\\S", "@<p>\nA=1 (0x1)<p>\n@\\Sub<p>\nN=3 (0x3)<p>\n"),
              this->Dump(T("S")));

    // Full to the last byte, and without a terminator.
    RawKey("T").Set(L"Full", REG_SZ, std::wstring(128, L'x').data(), 256);
    EXPECT_EQ(this->Lines("\\T", "@<p>\nFull='" + std::string(128, 'x') + "'<p>\n"),
              this->Dump(T("T")));
}

TYPED_TEST(SettingsDump, LeavesOutTheVideoCompressorCache) {
    using Ch = TypeParam;
    RawKey("S\\A\\Video Compressor Cache\\Inner").Set(L"N", 1u);
    RawKey("S\\Video Compressor Cache").Set(L"N", 2u);
    RawKey("S\\video compressor cache 2");
    EXPECT_EQ(this->Lines("\\S", "@<p>\n@\\A<p>\n@\\video compressor cache 2<p>\n"),
              this->Dump(T("S")));
    // Asked for by name it is shown.
    EXPECT_EQ(this->Lines("\\S\\Video Compressor Cache", "@<p>\nN=2 (0x2)<p>\n"),
              this->Dump(T("S\\Video Compressor Cache")));
}

}  // namespace
