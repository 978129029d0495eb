// One test for both text forms of a function.
//
//     TYPED_TEST(Tree, CountsKeys) {
//         using Kb = Exports<TypeParam>;
//         EXPECT_EQ(0, Kb::GetKeyCount("Audio"_t));  // KB_GetKeyCountA, then KB_GetKeyCountW
//     }
#pragma once

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <type_traits>

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

/// A literal that is a text of either form, whichever a parameter asks for; Latin-1 beyond ASCII.
/// Where nothing asks: Text<Ch>("Audio"_t).
template <std::size_t size>
struct TextLiteral {
    consteval TextLiteral(const char (&text)[size]) {
        std::ranges::copy(text, narrow);
        std::ranges::transform(text, wide, [](char c) { return static_cast<unsigned char>(c); });
    }
    constexpr operator const char*() const { return narrow; }
    constexpr operator const wchar_t*() const { return wide; }

    template <class Ch>
    friend bool operator==(const TextLiteral& literal, const std::basic_string<Ch>& text) {
        return text == static_cast<const Ch*>(literal);
    }
    friend void PrintTo(const TextLiteral& literal, std::ostream* out) {
        *out << testing::PrintToString(literal.narrow);
    }

    char narrow[size] = {};
    wchar_t wide[size] = {};
};

template <TextLiteral literal>
constexpr const auto& operator""_t() {
    return literal;
}

/// The exported pairs, each under the name that its two functions share.
template <class Ch>
struct Exports {
#define PAIR(name) static constexpr auto name = Pick<Ch>(KB_##name##A, KB_##name##W)
    PAIR(GetBool);
    PAIR(SetBool);
    PAIR(GetDWORD);
    PAIR(SetDWORD);
    PAIR(GetInt);
    PAIR(SetInt);
    PAIR(GetString);
    PAIR(SetString);
    PAIR(GetTString);
    PAIR(SetTString);
    PAIR(GetBSTR);
    PAIR(SetBSTR);
    PAIR(GetDataSize);
    PAIR(GetData);
    PAIR(SetData);

    PAIR(DeleteValue);
    PAIR(DeleteKey);
    PAIR(DeleteSection);
    PAIR(GetKeyCount);
    PAIR(EnumKey);
    PAIR(EnumKeyTString);
    PAIR(GetValueCount);
    PAIR(EnumValue);
    PAIR(EnumValueTString);
    PAIR(DumpRegistry);

    PAIR(GetConfigDirectory);
    PAIR(SetConfigDirectory);
    PAIR(GetSkinDirectory);
    PAIR(SetSkinDirectory);
    PAIR(GetDataDirectory);
    PAIR(SetDataDirectory);
    PAIR(GetDocDirectory);
    PAIR(SetDocDirectory);

    PAIR(ValidateFilename);
    PAIR(ValidatePath);
    PAIR(ValidateComputerName);
    PAIR(CreatePath);
    PAIR(CopyFileDeep);
    PAIR(DeleteDirectory);
    PAIR(LocalToUNC);
    PAIR(UNCToLocal);
    PAIR(BrowseForFolder);
    PAIR(GetLinkInfo);

    PAIR(GetModuleVersion);
    PAIR(SetIErrorInfo);
#undef PAIR
};

}  // namespace kitbag::test
