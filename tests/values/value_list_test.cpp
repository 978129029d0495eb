// What a list does in its own way; container_value_test.cpp has the rest.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/private_registry.h>
#include <tests/values/recordings.h>

namespace {

using namespace kitbag::test;

TEST(ValueList, IsSavedWithClassesAndNames) {
    Notes list{7, 8};
    list.at(0)->SetValueName("Seven");
    list.at(2);
    EXPECT_EQ("[Seven=7,\n=8]", list.SaveStringDataOnly());
    list.SaveRegistry("S");
    EXPECT_EQ(1u, RawKey("S\\Tree").NumberOf(L"Table Version"));
    const RawKey first("S\\Tree\\00000000");
    EXPECT_EQ(L"class Int32Value", first.TextOf(L"Value Class"));
    EXPECT_EQ(L"Seven", first.TextOf(L"Value Name"));
    EXPECT_EQ(7u, first.NumberOf(L"Seven"));
    Notes loaded{1, 2, 3};
    loaded.LoadRegistry("S");
    EXPECT_EQ("[Seven=7,\n=0]", loaded.SaveStringDataOnly()) << "replaced";
}

TEST(ValueList, LoadsPastAKeyWhoseNameIsTooLong) {
    Notes{1, 2}.SaveRegistry("S");
    const RawKey foreign("S\\Tree\\00000000" + std::string(247, 'x'));
    TWinString<char> name;
    EXPECT_FALSE(KB_EnumKeyTStringA("S\\Tree", 1, name));
    Notes list;
    list.LoadRegistry("S");
    EXPECT_EQ(2, list.size());
}

}  // namespace
