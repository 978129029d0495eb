// One test for both text forms of a function.
//
//     TYPED_TEST(Tree, CountsKeys) {
//         using Ch = TypeParam;
//         EXPECT_EQ(0, KB(GetKeyCount)(T("Audio")));  // KB_GetKeyCountA, then KB_GetKeyCountW
//     }
#pragma once

#include <gtest/gtest.h>
#include <kitbag/frame/win_string.h>

namespace kitbag::test {

template <class Ch>
constexpr auto Pick(auto narrow, auto wide) {
    if constexpr (std::is_same_v<Ch, char>)
        return narrow;
    else
        return wide;
}

template <class Ch>
using Text = std::conditional_t<std::is_same_v<Ch, char>, TWinString<char>, std::wstring>;

using TextForms = testing::Types<char, wchar_t>;

struct TextFormName {
    template <class Ch>
    static std::string GetName(int) {
        return Pick<Ch>("A", "W");
    }
};

}  // namespace kitbag::test

#define KB(name) (kitbag::test::Pick<Ch>(KB_##name##A, KB_##name##W))
#define T(literal) (kitbag::test::Pick<Ch>(literal, L##literal))
