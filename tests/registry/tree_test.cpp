#include <kitbag/registry/dump.h>
#include <kitbag/registry/tree.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

#include <string>

namespace {

using kitbag::test::ExpectNoHandleLeak;
using kitbag::test::RawKey;
using kitbag::test::Text;

template <class Ch>
class SettingsTree : public testing::Test {};
TYPED_TEST_SUITE(SettingsTree, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(SettingsTree, DeletesValuesAndCreatesTheSectionOnTheWay) {
    using Ch = TypeParam;
    RawKey("S").Set(L"N", 1u);
    EXPECT_TRUE(KB(DeleteValue)(T("S"), T("N")));
    EXPECT_FALSE(RawKey("S").Has(L"N"));
    EXPECT_FALSE(KB(DeleteValue)(T("S"), T("N")));
    EXPECT_FALSE(KB(DeleteValue)(T("New\\Section"), T("N")));
    EXPECT_TRUE(RawKey::Exists("New\\Section"));
}

TYPED_TEST(SettingsTree, DeletesKeysWithEverythingBelow) {
    using Ch = TypeParam;
    RawKey("S\\One\\A\\Deep").Set(L"N", 1u);
    RawKey("S\\One\\B");
    RawKey("S\\Two\\A");
    RawKey("S").Set(L"N", 1u);
    EXPECT_EQ(2, KB(GetKeyCount)(T("S")));
    EXPECT_EQ(1, KB(GetValueCount)(T("S")));
    EXPECT_FALSE(KB(DeleteKey)(T("S"), T("Three")));
    EXPECT_TRUE(KB(DeleteKey)(T("S"), T("One")));
    EXPECT_FALSE(RawKey::Exists("S\\One"));
    EXPECT_TRUE(RawKey::Exists("S\\Two\\A"));
    EXPECT_TRUE(KB(DeleteKey)(nullptr, T("S\\Two")));
    EXPECT_FALSE(RawKey::Exists("S\\Two"));
    EXPECT_TRUE(RawKey("S").Has(L"N"));

    EXPECT_TRUE(KB(DeleteSection)(T("S")));
    EXPECT_EQ(0, KB(GetKeyCount)(T("S")) + KB(GetValueCount)(T("S")));
    EXPECT_FALSE(RawKey::Exists("S"));
    EXPECT_FALSE(KB(DeleteSection)(T("S")));
    EXPECT_TRUE(RawKey::Exists());
}

TYPED_TEST(SettingsTree, NeverDeletesAParentByAccident) {
    using Ch = TypeParam;
    RawKey("S\\One").Set(L"N", 1u);
    EXPECT_FALSE(KB(DeleteKey)(T("S"), T("")));
    EXPECT_FALSE(KB(DeleteKey)(T("S"), nullptr));
    EXPECT_FALSE(KB(DeleteSection)(T("")));
    EXPECT_FALSE(KB(DeleteSection)(nullptr));
    EXPECT_TRUE(RawKey("S\\One").Has(L"N"));
}

TYPED_TEST(SettingsTree, EnumeratesKeysIntoBuffers) {
    using Ch = TypeParam;
    RawKey("S\\Child");
    // The 8-bit form gives the path below the root, the 16-bit form the name alone.
    const Text<Ch> inSection = kitbag::test::Pick<Ch>("S\\Child", L"Child");
    const Text<Ch> atRoot = kitbag::test::Pick<Ch>("\\S", L"S");

    Ch name[20];
    DWORD length = 20;
    EXPECT_TRUE(KB(EnumKey)(T("S"), 0, name, &length));
    EXPECT_EQ(inSection, Text<Ch>(name));
    EXPECT_EQ(inSection.size(), length);
    for (const auto* root : {T(""), static_cast<const Ch*>(nullptr)}) {
        length = 20;
        EXPECT_TRUE(KB(EnumKey)(root, 0, name, &length));
        EXPECT_EQ(atRoot, Text<Ch>(name, length));
    }

    // One character too few, down to none, some of them too few for the section alone.
    for (DWORD size = 0; size <= inSection.size(); ++size) {
        length = size;
        EXPECT_FALSE(KB(EnumKey)(T("S"), 0, name, &length));
        EXPECT_EQ(size, length);
    }
    length = static_cast<DWORD>(inSection.size()) + 1;
    EXPECT_TRUE(KB(EnumKey)(T("S"), 0, name, &length));

    std::fill_n(name, 20, Ch{'#'});
    length = 20;
    EXPECT_FALSE(KB(EnumKey)(T("S"), 1, name, &length));
    EXPECT_FALSE(KB(EnumKey)(T("Missing"), 0, name, &length));
    EXPECT_FALSE(KB(EnumKey)(T("S"), 0, nullptr, &length));
    EXPECT_FALSE(KB(EnumKey)(T("S"), 0, name, nullptr));
    EXPECT_EQ(20u, length);
    EXPECT_EQ(std::basic_string<Ch>(20, Ch{'#'}), std::basic_string<Ch>(name, 20));
}

TYPED_TEST(SettingsTree, EnumeratesNamesUpToTheirLimit) {
    using Ch = TypeParam;
    RawKey("Longest\\" + std::string(254, 'k'));
    RawKey("Too long\\" + std::string(255, 'k'));
    Text<Ch> name;
    EXPECT_TRUE(KB(EnumKeyTString)(T("Longest"), 0, name));
    EXPECT_EQ(kitbag::test::Pick<Ch>(8u, 0u) + 254, name.size());
    EXPECT_FALSE(KB(EnumKeyTString)(T("Too long"), 0, name));

    RawKey("Longest").Set(std::wstring(254, L'v').c_str(), 1u);
    RawKey("Too long").Set(std::wstring(255, L'v').c_str(), 1u);
    EXPECT_TRUE(KB(EnumValueTString)(T("Longest"), 0, name));
    EXPECT_EQ(Text<Ch>(254, Ch{'v'}), name);
    EXPECT_FALSE(KB(EnumValueTString)(T("Too long"), 0, name));
    EXPECT_EQ(Text<Ch>(254, Ch{'v'}), name);
}

TYPED_TEST(SettingsTree, EnumeratesValuesByTheirBareNames) {
    using Ch = TypeParam;
    RawKey("S").Set(L"Volume", 1u);
    Ch name[20];
    DWORD length = 7;
    EXPECT_TRUE(KB(EnumValue)(T("S"), 0, name, &length));
    EXPECT_EQ(Text<Ch>(T("Volume")), Text<Ch>(name));
    EXPECT_EQ(6u, length);
    EXPECT_FALSE(KB(EnumValue)(T("S"), 0, name, &length)) << "six characters leave no room";
    EXPECT_EQ(6u, length);
    length = 20;
    EXPECT_FALSE(KB(EnumValue)(T("S"), 1, name, &length));

    RawKey("Default").Set(L"", 1u);
    Text<Ch> object = T("before");
    EXPECT_FALSE(KB(EnumValueTString)(T("S"), 1, object));
    EXPECT_EQ(T("before"), object);
    EXPECT_TRUE(KB(EnumValueTString)(T("Default"), 0, object));
    EXPECT_EQ(T(""), object) << "the key's default value has no name";
}

TYPED_TEST(SettingsTree, LeavesNoKeyOpen) {
    using Ch = TypeParam;
    RawKey("S\\One").Set(L"N", 1u);
    Text<Ch> text;
    ExpectNoHandleLeak([&] {
        RawKey("T\\One\\Two");
        for (const auto* section : {T("S"), T("T"), T("missing\\too"), T("")}) {
            KB(GetKeyCount)(section);
            KB(GetValueCount)(section);
            for (const DWORD index : {0u, 9u}) {
                KB(EnumKeyTString)(section, index, text);
                KB(EnumValueTString)(section, index, text);
            }
        }
        KB(DumpRegistry)(T("T"), text);
        KB(DeleteValue)(T("S"), T("missing"));
        KB(DeleteKey)(T("S"), T(""));
        KB(DeleteSection)(T("T"));
        text.clear();
    });
}

}  // namespace
