#include <kitbag/registry/dump.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

namespace {

using namespace kitbag::test;

template <class Ch>
struct SettingsDump : testing::Test {};
TYPED_TEST_SUITE(SettingsDump, TextForms, TextFormName);

// Wine enumerates values and keys by name.
TYPED_TEST(SettingsDump, ListsValuesThenKeysDepthFirst) {
    using Ch = TypeParam;
    const std::string heading = "------- HKEY_LOCAL_MACHINE -------\n", root = kRoot;
    // A string that names the section takes its dump.
    const auto dump = [](Text<Ch> output) {
        EXPECT_TRUE(Exports<Ch>::DumpRegistry(output.empty() ? nullptr : output.c_str(), output));
        return std::string(output.begin(), output.end());
    };
    RawKey("A").Set(L"Expanded", REG_EXPAND_SZ, L"x", 4);
    RawKey("A").Set(L"Full", REG_SZ, std::wstring(128, L'x').data(), 256);
    RawKey("A").Set(L"Large", REG_BINARY, std::string(257, 'x').data(), 257);
    RawKey("A").Set(L"Unseen", 1u);
    RawKey("A\\Inner").Set(L"Max", 0xffffffffu);
    RawKey("A\\Inner").Set(L"No text", REG_SZ, "", 0);
    RawKey("A\\Video Compressor Cache");
    RawKey("B\\video compressor cache");
    RawKey("Video Compressor Cache").Set(L"N", 70u);
    ExpectNoHandleLeak([&] {
        EXPECT_EQ(heading + root + "<p>\n" + root + "\\A<p>\nExpanded=[Unhandled type]<p>\nFull='" +
                      std::string(128, 'x') + "'<p>\n" + root +
                      "\\A\\Inner<p>\nMax=-1 (0xffffffff)<p>\nNo text=''<p>\n" + root + "\\B<p>\n" +
                      root + "\\B\\video compressor cache<p>\n",
                  dump(Text<Ch>()));
    });
    const std::string skipped = "Video Compressor Cache";  // unless it is what is asked for
    EXPECT_EQ(skipped + heading + root + "\\" + skipped + "<p>\nN=70 (0x46)<p>\n",
              dump(Text<Ch>(skipped.begin(), skipped.end())));
}

}  // namespace
