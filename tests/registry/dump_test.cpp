#include <kitbag/registry/dump.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

#include <string>

namespace {

using kitbag::test::RawKey;
using kitbag::test::Text;

template <class Ch>
class SettingsDump : public testing::Test {
 protected:
    /// What a dump adds to a string; "@" stands for the settings root.
    static std::string Dump(const Ch* section) {
        Text<Ch> output = T("before ");
        EXPECT_TRUE(KB(DumpRegistry)(section, output));
        std::string text(output.begin(), output.end());
        const std::string root = kitbag::test::kRoot;
        for (size_t at; (at = text.find(root)) != text.npos;) text.replace(at, root.size(), "@");
        return text;
    }
};
TYPED_TEST_SUITE(SettingsDump, kitbag::test::TextForms, kitbag::test::TextFormName);

const std::string heading = "before ------- HKEY_LOCAL_MACHINE -------\n";

// Wine enumerates values and keys by name.
TYPED_TEST(SettingsDump, ListsValuesThenKeysDepthFirst) {
    using Ch = TypeParam;
    RawKey("S").Set(L"Expanded", REG_EXPAND_SZ, L"x", 4);
    RawKey("S").Set(L"Full", REG_SZ, std::wstring(128, L'x').data(), 256);
    RawKey("S").Set(L"Max", 0xffffffffu);
    RawKey("S").Set(L"No text", REG_SZ, "", 0);
    RawKey("S").Set(L"Number", 70u);
    RawKey("S\\A").Set(L"Binary", REG_BINARY, "\1\2", 2);
    RawKey("S\\A").Set(L"Large", REG_BINARY, std::string(257, 'x').data(), 257);
    RawKey("S\\A").Set(L"Unseen", 1u);
    RawKey("S\\A\\Inner").Set(L"Text", std::wstring(L"it's"));
    RawKey("S\\A\\Video Compressor Cache\\Inner").Set(L"N", 1u);
    RawKey("S\\B\\video compressor cache");
    RawKey("S\\Video Compressor Cache").Set(L"N", 2u);
    const std::string full(128, 'x');
    EXPECT_EQ(heading + "@\\S<p>\nExpanded=[Unhandled type]<p>\nFull='" + full +
                  "'<p>\nMax=-1 (0xffffffff)<p>\nNo text=''<p>\nNumber=70 (0x46)<p>\n"
                  "@\\S\\A<p>\nBinary=[Unhandled type]<p>\n"
                  "@\\S\\A\\Inner<p>\nText='it's'<p>\n"
                  "@\\S\\B<p>\n@\\S\\B\\video compressor cache<p>\n",
              this->Dump(T("S")));
}

TYPED_TEST(SettingsDump, ShowsWhateverSectionIsAskedFor) {
    using Ch = TypeParam;
    EXPECT_EQ(heading, this->Dump(nullptr)) << "nothing is there yet";
    RawKey("Video Compressor Cache").Set(L"N", 2u);
    kitbag::test::ExpectNoHandleLeak([this] {
        EXPECT_EQ(heading + "@<p>\n", this->Dump(nullptr));
        EXPECT_EQ(heading + "@\\Video Compressor Cache<p>\nN=2 (0x2)<p>\n",
                  this->Dump(T("Video Compressor Cache")));
    });
}

}  // namespace
