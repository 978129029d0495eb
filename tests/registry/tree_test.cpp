#include <kitbag/registry/tree.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

#include <string>
#include <utility>

namespace {

using kitbag::test::ExpectNoHandleLeak;
using kitbag::test::RawKey;
using kitbag::test::Text;

template <class Ch>
class SettingsTree : public testing::Test {};
TYPED_TEST_SUITE(SettingsTree, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(SettingsTree, DeletesWhatIsNamedWithEverythingBelow) {
    using Ch = TypeParam;
    ExpectNoHandleLeak([] {
        RawKey("S\\One\\A\\Deep").Set(L"N", 1u);
        RawKey("S\\One\\B");
        RawKey("S\\Two");
        RawKey("S").Set(L"N", 1u);
        for (const Ch* const none : {T(""), static_cast<const Ch*>(nullptr)}) {
            EXPECT_FALSE(KB(DeleteKey)(T("S"), none));
            EXPECT_FALSE(KB(DeleteSection)(none));
        }
        EXPECT_FALSE(KB(DeleteKey)(T("S"), T("Three")));
        EXPECT_EQ(2, KB(GetKeyCount)(T("S")));
        EXPECT_TRUE(KB(DeleteKey)(nullptr, T("S\\One")));
        EXPECT_EQ(1, KB(GetKeyCount)(T("S")));
        EXPECT_EQ(1, KB(GetValueCount)(T("S")));
        EXPECT_TRUE(KB(DeleteValue)(T("S"), T("N")));
        EXPECT_EQ(0, KB(GetValueCount)(T("S")));
        EXPECT_TRUE(RawKey::Exists("S\\Two"));
        EXPECT_TRUE(KB(DeleteSection)(T("S")));
        EXPECT_FALSE(RawKey::Exists("S"));
        EXPECT_EQ(0, KB(GetKeyCount)(T("S")) + KB(GetValueCount)(T("S")));
        EXPECT_FALSE(KB(DeleteSection)(T("S")));
        EXPECT_FALSE(KB(DeleteValue)(T("New\\Section"), T("N")));
        EXPECT_TRUE(RawKey::Exists("New\\Section")) << "created on the way";
        EXPECT_TRUE(KB(DeleteSection)(T("New")));
    });
}

TYPED_TEST(SettingsTree, NamesKeysAndValuesOneByOne) {
    using Ch = TypeParam;
    const std::string longest(254, 'n'), tooLong(255, 'n');
    RawKey("S\\Child").Set(L"", 1u);
    RawKey("S").Set(L"Volume", 1u);
    RawKey("L\\" + longest);
    RawKey("L").Set(std::wstring(254, L'n').c_str(), 1u);
    RawKey("T\\" + tooLong);
    RawKey("T").Set(std::wstring(255, L'n').c_str(), 1u);
    const std::pair keys(KB(EnumKey), KB(EnumKeyTString));
    const std::pair values(KB(EnumValue), KB(EnumValueTString));
    struct {
        decltype(keys) functions;
        const Ch* section;
        std::string prefix, name;
        DWORD index = 0;
    } const rows[] = {
        {keys, T("S"), "S\\", "Child"}, {keys, T("L"), "L\\", longest},
        {keys, T("T"), "T\\", tooLong}, {keys, T("Missing"), "", "", 9},
        {keys, T("S"), "", "", 9},      {keys, T(""), "\\", "L"},
        {keys, nullptr, "\\", "L"},     {values, T("S"), "", "Volume"},
        {values, T("L"), "", longest},  {values, T("T"), "", tooLong},
        {values, T("S"), "", "", 9},    {values, T("S\\Child"), "", ""},
    };
    size_t round = 0;
    ExpectNoHandleLeak([&] {
        const auto& [functions, section, prefix, bareName, index] = rows[round % std::size(rows)];
        // The 8-bit form gives a key's path below the root, the 16-bit form its name alone.
        const std::string name = kitbag::test::Pick<Ch>(prefix + bareName, bareName);
        const auto size = static_cast<DWORD>(name.size());
        const DWORD rooms[] = {0, 2, size, size + 1, 290};
        const DWORD room = rooms[round++ / std::size(rows) % std::size(rooms)];
        std::basic_string<Ch> buffer(300, Ch{'#'});
        DWORD length = room;
        bool fits = index == 0 && room > size;
        EXPECT_EQ(fits, functions.first(section, index, buffer.data(), &length));
        EXPECT_EQ(fits ? size : room, length);
        EXPECT_TRUE(!fits || buffer.c_str() == Text<Ch>(name.begin(), name.end()));
        EXPECT_EQ(buffer.npos, buffer.find_first_not_of(Ch{'#'}, room));
        EXPECT_FALSE(functions.first(section, index, nullptr, &length));
        EXPECT_FALSE(functions.first(section, index, buffer.data(), nullptr));

        fits = index == 0 && bareName.size() < 255;
        Text<Ch> object = T("before");
        EXPECT_EQ(fits, functions.second(section, index, object));
        EXPECT_EQ(fits ? name : "before", std::string(object.begin(), object.end()));
    });
}

}  // namespace
