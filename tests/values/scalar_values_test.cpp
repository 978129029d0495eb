#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/import_patch.h>
#include <tests/values/clean_settings.h>

#include <algorithm>
#include <string>

namespace {

using kitbag::test::RawKey;

const GUID kGuid = {0x01234567, 0x89ab, 0xcdef, {1, 2, 3, 4, 5, 6, 7, 0xfe}};
constexpr char kGuidText[] = "{01234567-89AB-CDEF-0102-0304050607FE}";

class ScalarValues : public kitbag::test::CleanSettings {};

TEST_F(ScalarValues, WriteEveryChangeOfASourcedValueAndRenderIt) {
    BooleanValue flag("S", "Flag", true);
    Int32Value number("S", "Number", true);
    UInt32Value count("S", "Count", true);
    GuidValue guid("S", "Guid", true);
    ByteArrayValue bytes("S", "Bytes", true);
    TStringValue text("S", "Text", true);
    EXPECT_FALSE(RawKey::Exists("S"));
    flag.SetValue(true);
    number.SetValue(-5);
    count.SetValue(0xFFFFFFFF);
    guid.SetValue(kGuid);
    std::ranges::copy("\1\0\xff", bytes.SetValueSize(4));
    bytes.SetValue();
    text = "it's \"50%\" |=\xe9";

    const RawKey key("S");
    EXPECT_TRUE(key.NumberOf(L"Flag") == 1 && key.NumberOf(L"Number") == 0xFFFFFFFB);
    EXPECT_EQ(0xFFFFFFFFu, key.NumberOf(L"Count"));
    EXPECT_EQ(std::wstring(kGuidText, kGuidText + 38), key.TextOf(L"Guid"));
    EXPECT_EQ(std::string("\1\0\xff\0", 4), key.BytesOf(L"Bytes"));
    EXPECT_EQ(DWORD{REG_BINARY}, key.TypeOf(L"Bytes"));
    EXPECT_EQ(L"it's \"50%\" |=\u00e9", key.TextOf(L"Text"));

    EXPECT_EQ("-5", number.SaveStringDataOnly());
    EXPECT_EQ("Count=4294967295", count.ToString());
    EXPECT_EQ(kGuidText, guid.SaveStringDataOnly());
    EXPECT_EQ("\7\7\7\7", bytes.SaveStringDataOnly());
    EXPECT_EQ("Text='it's \"50%\" |=\xe9'", text.SaveString());
    EXPECT_EQ("Flag=True", flag.SaveString());
    flag.Type(2);
    flag.SetValue(false);
    EXPECT_EQ("Flag=No", flag.SaveString());
}

LSTATUS WINAPI NoKey(HKEY, LPCSTR, DWORD, REGSAM, PHKEY) { return ERROR_ACCESS_DENIED; }

TEST_F(ScalarValues, AreReadOnFirstUseOrOnEveryUse) {
    const RawKey key("S");
    key.Set(L"N", 7u);
    UInt32Value once("S", "N", true), always("S", "N", false);
    EXPECT_TRUE(once.IsEmpty());
    EXPECT_TRUE(once.GetValue() == 7 && always.GetValue() == 7);
    key.Set(L"N", 8u);
    EXPECT_TRUE(once.GetValue() == 7 && always.GetValue() == 8);
    // What was just set is what is written, not what was read back.
    always.SetValue(9);
    EXPECT_EQ(9u, key.NumberOf(L"N"));
    EXPECT_FALSE(always.IsEmpty() || always.HasDefaultValue());
    const kitbag::test::ImportPatch patch("RegOpenKeyExA", NoKey);
    EXPECT_TRUE(once.GetValue() == 7 && always.GetValue() == 0);
}

TEST_F(ScalarValues, TakeTheirDefaultsFromADamagedRegistry) {
    const RawKey key("S");
    for (const DWORD type : {0u, 1u, 3u, 4u}) {
        // Missing at first, then of a wrong type or size each.
        if (type != REG_NONE) key.Set(L"Number", type, "abc", 3);
        if (type != REG_NONE) key.Set(L"Text", type == REG_SZ ? REG_BINARY : type, "abcd", 4);
        BooleanValue flag("S", "Number", true);
        GuidValue guid("S", "Text", true);
        TStringValue text("S", "Text", true);
        flag.SetDefaultValue(true, true);
        guid.SetDefaultValue(kGuid, true);
        text.SetDefaultValue("t", true);
        EXPECT_EQ(type != REG_NONE, key.Has(L"Number") && key.Has(L"Text"));
        EXPECT_TRUE(flag && guid.GetValue() == kGuid && text == "t");
        EXPECT_TRUE(flag.HasDefaultValue() && text.HasDefaultValue());
        EXPECT_FALSE(flag.ExistsRegistry() || guid.ExistsRegistry() || text.ExistsRegistry());
    }
    key.Set(L"Text", L"{no GUID}");
    GuidValue guid("S", "Text", false);
    guid.SetDefaultValue(kGuid);
    EXPECT_TRUE(guid.GetValue() == kGuid && guid.ExistsRegistry());
    key.Set(L"Text", L"{00000000-0000-0000-c000-000000000046}");
    EXPECT_TRUE(guid.GetValue() == IID_IUnknown && guid.HasDefaultValue());
}

TEST_F(ScalarValues, WriteADefaultOnlyWhereAnUnsignedNumberIsMissing) {
    UInt32Value count("S", "N", true);
    count.SetDefaultValue(7, false);
    EXPECT_FALSE(RawKey::Exists("S"));
    count.SetDefaultValue(7, true);
    count.SetDefaultValue(8, true);
    EXPECT_EQ(7u, RawKey("S").NumberOf(L"N"));
    EXPECT_TRUE(count.ExistsRegistry() && !Int32Value("S", "N", true).ExistsRegistry());
}

TEST_F(ScalarValues, DisplayAGuidByTheNameOfItsClass) {
    const RawKey classes("Classes");
    RawKey(std::string("Classes\\CLSID\\") + kGuidText).Set(L"", L"Video mixer");
    RegOverridePredefKey(HKEY_CLASSES_ROOT, classes.Get());
    EXPECT_EQ("Video mixer", GuidValue::GUID2DisplayString(kGuid));
    EXPECT_EQ('{', GuidValue::GUID2DisplayString(IID_IUnknown)[0]);
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
}

TEST_F(ScalarValues, KeepBytesWhereNothingIsStored) {
    ByteArrayValue bytes("S", "B", true);
    std::ranges::copy("abc", bytes.SetValueSize(4));
    bytes.LoadRegistry();
    EXPECT_TRUE(bytes.IsEmpty());
    unsigned char buffer[] = "####";
    unsigned long size = 3;
    EXPECT_TRUE(!bytes.GetValue(buffer, &size) && buffer[0] == '#');
    EXPECT_TRUE(bytes.GetValue(buffer, &size) && size == 4);
    EXPECT_STREQ("abc", reinterpret_cast<char*>(buffer));
    EXPECT_TRUE(bytes == ByteArrayValue(bytes) && bytes != ByteArrayValue());
    RawKey("S").Set(L"B", REG_BINARY, "", 0);
    bytes.LoadRegistry();
    EXPECT_TRUE(bytes.GetValue(&size) == nullptr && size == 0);
}

TEST_F(ScalarValues, FindTheFieldsOfAnIdentifier) {
    EXPECT_EQ("Disk", IdentValue("id='3' name='Disk'").GetStringField("name"));
    EXPECT_EQ("", IdentValue("name=Disk").GetStringField("name"));
}

}  // namespace
