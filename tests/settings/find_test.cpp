// Reads of single values that say what they found.

#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <kitbag/settings.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>

#include <concepts>

namespace {

using namespace kitbag::test;
using kitbag::Find;
using kitbag::Get;
using kitbag::NotFound;
using Bytes = std::vector<unsigned char>;

enum class Deinterlace { Off, Bob };

/// One value of each type: "number", "text", "bytes".
void StoreValues() {
    const RawKey key("Audio");
    key.Set(L"number", 0xFFFFFFFFu);
    key.Set(L"text", L"日本語 é");
    key.Set(L"bytes", REG_BINARY, "\1\2\3\4", 4);
    key.Set(L"short", REG_DWORD, "\1", 1);
}

TEST(Find, ReadsEveryTypeWithNamesOfBothForms) {
    StoreValues();
    EXPECT_EQ(0xFFFFFFFFu, Find<unsigned long>("Audio", "number"));
    EXPECT_EQ(0xFFFFFFFFu, Find<unsigned>(L"Audio", L"number"));
    EXPECT_EQ(-1, Find<int>("Audio", "number"));
    EXPECT_EQ(-1, Find<long>("Audio", "number"));
    EXPECT_EQ(true, Find<bool>("Audio", "number"));
    EXPECT_EQ(L"日本語 é", Find<std::wstring>(L"Audio", L"text"));
    EXPECT_EQ(L"日本語 é", Find<std::wstring>("Audio", "text"));
    EXPECT_EQ("??? \xE9", Find<std::string>("Audio", "text"));
    EXPECT_EQ((Bytes{1, 2, 3, 4}), Find<Bytes>("Audio", "bytes"));
    KB_SetDWORDA("Video", "Deinterlace", 1);
    EXPECT_EQ(Deinterlace::Bob, Find<Deinterlace>("Video", "Deinterlace"));
}

LSTATUS WINAPI Refuse(HKEY, LPCWSTR, DWORD, REGSAM, PHKEY) { return ERROR_ACCESS_DENIED; }

TEST(Find, TellsWhyThereIsNoValue) {
    StoreValues();
    EXPECT_EQ(NotFound::Missing, Find<int>("Audio", "no such value").error());
    EXPECT_EQ(NotFound::Missing, Find<int>("No such section", "number").error());
    EXPECT_EQ(NotFound::OtherType, Find<int>("Audio", "text").error());
    EXPECT_EQ(NotFound::OtherType, Find<int>("Audio", "bytes").error());
    EXPECT_EQ(NotFound::OtherType, Find<int>("Audio", "short").error());
    EXPECT_EQ(NotFound::OtherType, Find<std::string>("Audio", "number").error());
    EXPECT_EQ(NotFound::OtherType, Find<std::wstring>(L"Audio", L"bytes").error());
    EXPECT_EQ(NotFound::OtherType, Find<Bytes>("Audio", "number").error());
    EXPECT_FALSE(RawKey::Exists("No such section"));
    const ImportPatch inTheLibrary("RegOpenKeyExW", Refuse);
    const ImportPatch inTheProgram("RegOpenKeyExW", Refuse, nullptr);
    EXPECT_EQ(NotFound::NoAccess, Find<int>("Audio", "number").error());
}

TEST(Get, GivesTheFallbackWhereTheValueIsNotFoundAsItsType) {
    StoreValues();
    EXPECT_EQ(0xFFFFFFFFu, Get("Audio", "number", 70ul));
    EXPECT_EQ(70u, Get("Audio", "no such value", 70ul));
    EXPECT_EQ(70u, Get(L"Audio", L"text", 70ul));
    EXPECT_EQ("Speakers", Get("Audio", "number", "Speakers"));
    EXPECT_EQ(L"日本語 é", Get(L"Audio", L"text", L"Speakers"));
    static_assert(std::same_as<std::string, decltype(Get("", "", ""))>);
}

}  // namespace
