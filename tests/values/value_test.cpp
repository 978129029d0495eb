#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/values/clean_settings.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

using kitbag::test::RawKey;

class Values : public kitbag::test::CleanSettings {};

TEST_F(Values, LoseTheirPlaceWhenCopiedAndKeepItWhenAssigned) {
    UInt32Value source("S", "Source", true), target("S", "Target", true);
    source.SetValue(7);
    source.SetDefaultValue(3);
    source.SetValueActions(0x3002);
    const std::unique_ptr<Value> copied(source.Copy());
    auto& copy = dynamic_cast<UInt32Value&>(*copied);
    EXPECT_TRUE(copy.SaveString() == "Source=7" && copy.GetDefaultValue() == 3);
    EXPECT_FALSE(copy.RebootNeeded());
    copy.SetValue(8);
    target = source;
    EXPECT_EQ("Target=7", target.SaveString());
    EXPECT_TRUE(target.RebootNeeded() && target.GetMinimumUserInterfaceLevel() == 2);
    target.SetValue(9);
    const RawKey key("S");
    EXPECT_TRUE(key.NumberOf(L"Source") == 7 && key.NumberOf(L"Target") == 9);
}

/// Each cast knows its own class alone.
template <class... T>
void ExpectExactCasts(T* (*... casts)(const Value*)) {
    const auto expect = [&](const Value& value, auto* cast) {
        const std::unique_ptr<Value> copy(value.Copy());
        EXPECT_TRUE(cast(copy.get()) == copy.get() && !cast(nullptr));
        EXPECT_EQ(1, ((casts(&value) != nullptr) + ...));
    };
    (expect(T(), casts), ...);
}

TEST_F(Values, AreCastToTheirExactClass) {
    ExpectExactCasts(KB_GetAsValueTableEntry, KB_GetAsValueCollection, KB_GetAsBooleanValue,
                     KB_GetAsByteArrayValue, KB_GetAsGuidValue, KB_GetAsInt32Value,
                     KB_GetAsUInt32Value, KB_GetAsUInt32Enum, KB_GetAsTStringValue,
                     KB_GetAsFilenameValue, KB_GetAsIdentValue);
    const ExternalProgramValueTable programs("S");
    const MediaLocationValueTable folders(MediaLocationValueTable::VideoRead);
    EXPECT_TRUE(KB_GetAsValueTable(&programs) && KB_GetAsValueTable(&folders));
    // These two give null for every value.
    EXPECT_FALSE(KB_GetAsExternalProgramValueTable(&programs));
    EXPECT_FALSE(KB_GetAsMediaLocationValueTable(&folders));
}

const GUID kGuid = {0x01234567, 0x89ab, 0xcdef, {1, 2, 3, 4, 5, 6, 7, 0xfe}};
constexpr char kGuidText[] = "{01234567-89AB-CDEF-0102-0304050607FE}";

TEST_F(Values, WriteEveryChangeOfASourcedValueAndRenderIt) {
    BooleanValue flag("S", "Flag", true);
    Int32Value number("S", "Number", true);
    GuidValue guid("S", "Guid", true);
    ByteArrayValue bytes("S", "Bytes", true);
    TStringValue text("S", "Text", true);
    EXPECT_FALSE(RawKey::Exists("S"));
    flag.SetValue(true);
    number.SetValue(-5);
    guid.SetValue(kGuid);
    std::ranges::copy("\1\0\xff", bytes.SetValueSize(4));
    bytes.SetValue();
    text = "it's \"50%\" |=\xe9";

    const RawKey key("S");
    EXPECT_TRUE(key.NumberOf(L"Flag") == 1 && key.NumberOf(L"Number") == 0xFFFFFFFB);
    EXPECT_EQ(std::wstring(kGuidText, kGuidText + 38), key.TextOf(L"Guid"));
    EXPECT_EQ(std::string("\1\0\xff\0", 4), key.BytesOf(L"Bytes"));
    EXPECT_EQ(L"it's \"50%\" |=\u00e9", key.TextOf(L"Text"));

    EXPECT_EQ("Number=-5", number.SaveString());
    EXPECT_EQ("\7\7\7\7", bytes.SaveStringDataOnly());
    EXPECT_EQ("Text='it's \"50%\" |=\xe9'Flag=True", text.SaveString() + flag.SaveString());
}

TEST_F(Values, AreReadOnFirstUseOrOnEveryUse) {
    const RawKey key("S");
    key.Set(L"N", 7u);
    UInt32Value once("S", "N", true), always("S", "N", false);
    EXPECT_TRUE(once.IsEmpty() && once.GetValue() == 7 && always.GetValue() == 7);
    key.Set(L"N", 8u);
    EXPECT_TRUE(once.GetValue() == 7 && always.GetValue() == 8);
    // What was just set is what is written, not what was read back.
    always.SetValue(9);
    EXPECT_EQ(9u, key.NumberOf(L"N"));
}

TEST_F(Values, TakeTheirDefaultsFromADamagedRegistry) {
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
        EXPECT_EQ(type != REG_NONE, key.Has(L"Number"));
        EXPECT_TRUE(flag && guid.GetValue() == kGuid && text == "t");
        EXPECT_FALSE(flag.ExistsRegistry() || guid.ExistsRegistry() || text.ExistsRegistry());
    }
    key.Set(L"Text", L"{00000000-0000-0000-c000-000000000046}");
    GuidValue guid("S", "Text", false);
    guid.SetDefaultValue(kGuid);
    EXPECT_TRUE(guid.GetValue() == IID_IUnknown && guid.HasDefaultValue());
    key.Set(L"Text", L"{no GUID}");
    EXPECT_TRUE(guid.GetValue() == kGuid && guid.ExistsRegistry());
}

TEST_F(Values, WriteADefaultOnlyWhereAnUnsignedNumberIsMissing) {
    UInt32Value count("S", "N", true);
    for (const unsigned long value : {7u, 8u}) count.SetDefaultValue(value, true);
    EXPECT_EQ(7u, RawKey("S").NumberOf(L"N"));
    EXPECT_TRUE(count.ExistsRegistry() && !Int32Value("S", "N", true).ExistsRegistry());
}

TEST_F(Values, KeepBytesWhereNothingIsStored) {
    ByteArrayValue bytes("S", "B", true);
    std::ranges::copy("abc", bytes.SetValueSize(4));
    bytes.LoadRegistry();
    unsigned long size = 0;
    EXPECT_STREQ("abc", reinterpret_cast<const char*>(bytes.GetValue(&size)));
    EXPECT_TRUE(size == 4 && bytes == ByteArrayValue(bytes) && bytes != ByteArrayValue());
    RawKey("S").Set(L"B", REG_BINARY, "", 0);
    EXPECT_FALSE(bytes.ExistsRegistry());
    bytes.LoadRegistry();
    EXPECT_TRUE(bytes.GetValue(&size) == nullptr && size == 0);
}

}  // namespace
