#include <kitbag/registry/tree.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

namespace {

using namespace kitbag::test;

template <class Ch>
struct SettingsTree : testing::Test {
    /// Asks in both ways for the first name below a section.
    static void Expect(const Text<Ch>& name, const Ch* section, auto toBuffer, auto toObject) {
        const DWORD size = name.size();
        for (const DWORD room : {DWORD{2}, size, size + 1}) {
            std::basic_string<Ch> buffer(300, Ch{'#'});
            DWORD length = room;
            EXPECT_FALSE(toBuffer(section, 0, nullptr, &length));
            EXPECT_EQ(room > size, toBuffer(section, 0, buffer.data(), &length));
            EXPECT_EQ(room > size ? size : room, length);
            EXPECT_TRUE(room <= size || buffer.c_str() == name);
        }
        Text<Ch> object;
        if (section) object = section;
        EXPECT_FALSE(toObject(section, 9, object) || toObject("Missing"_t, 0, object));
        EXPECT_TRUE(toObject(object.c_str(), 0, object)) << "the section lies in the object";
        EXPECT_EQ(name, object);
    }
};
TYPED_TEST_SUITE(SettingsTree, TextForms, TextFormName);

TYPED_TEST(SettingsTree, NamesKeysAndValuesOneByOne) {
    using Ch = TypeParam;
    const std::string narrow(254, 'n');  // no longer name fits the objects' buffer
    const Text<Ch> name(narrow.begin(), narrow.end());
    RawKey("S\\" + narrow);
    RawKey("S").Set(std::wstring(254, L'n').c_str(), 1u);
    // The 8-bit form gives a key's path below the root, the 16-bit form its name alone.
    const Text<Ch> path = Pick<Ch>("S\\" + narrow, name), top = Pick<Ch>("\\S", L"S");
    ExpectNoHandleLeak([&] {
        this->Expect(path, "S"_t, Exports<Ch>::EnumKey, Exports<Ch>::EnumKeyTString);
        this->Expect(name, "S"_t, Exports<Ch>::EnumValue, Exports<Ch>::EnumValueTString);
        this->Expect(top, nullptr, Exports<Ch>::EnumKey, Exports<Ch>::EnumKeyTString);
    });
}

TYPED_TEST(SettingsTree, DeletesWhatIsNamedWithEverythingBelow) {
    using Ch = TypeParam;
    ExpectNoHandleLeak([] {
        RawKey("S\\One\\A\\Deep").Set(L"N", 1u);
        RawKey("S\\One\\B");
        RawKey("S\\Two").Set(L"N", 1u);
        EXPECT_FALSE(Exports<Ch>::DeleteKey("S"_t, ""_t) || Exports<Ch>::DeleteSection(nullptr));
        EXPECT_TRUE(Exports<Ch>::DeleteKey(nullptr, "S\\One"_t));
        EXPECT_EQ(1, Exports<Ch>::GetKeyCount("S"_t));
        EXPECT_EQ(1, Exports<Ch>::GetValueCount("S\\Two"_t));
        EXPECT_TRUE(Exports<Ch>::DeleteValue("S\\Two"_t, "N"_t) &&
                    !Exports<Ch>::GetValueCount("S\\Two"_t));
        EXPECT_TRUE(Exports<Ch>::DeleteSection("S"_t));
        EXPECT_EQ(0, Exports<Ch>::GetKeyCount("S"_t) + Exports<Ch>::GetValueCount("S"_t));
        EXPECT_FALSE(Exports<Ch>::DeleteValue("New\\Section"_t, "N"_t));
        EXPECT_TRUE(RawKey::Exists("New\\Section")) << "created on the way";
    });
}

}  // namespace
