#include <gmock/gmock.h>
#include <kitbag/values/scalar_values.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/values/clean_settings.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

using kitbag::test::ImportPatch;
using kitbag::test::RawKey;

const GUID kGuid = {0x01234567, 0x89ab, 0xcdef, {1, 2, 3, 4, 5, 6, 7, 0xfe}};
constexpr wchar_t kGuidText[] = L"{01234567-89AB-CDEF-0102-0304050607FE}";

class ScalarValues : public kitbag::test::CleanSettings {};

/// A value that loads and writes itself.
template <class T>
T Sourced(const char* name, bool cached = true) {
    T value;
    value.SetAutoRegistrySource("S", name, cached);
    return value;
}

TEST_F(ScalarValues, WriteEveryChangeOfASourcedValue) {
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
    EXPECT_EQ(1u, key.NumberOf(L"Flag"));
    EXPECT_EQ(0xFFFFFFFBu, key.NumberOf(L"Number"));
    EXPECT_EQ(0xFFFFFFFFu, key.NumberOf(L"Count"));
    EXPECT_EQ(kGuidText, key.TextOf(L"Guid"));
    EXPECT_EQ(std::string("\1\0\xff\0", 4), key.BytesOf(L"Bytes"));
    EXPECT_EQ(DWORD{REG_BINARY}, key.TypeOf(L"Bytes"));
    EXPECT_EQ(L"it's \"50%\" |=\u00e9", key.TextOf(L"Text"));
}

TEST_F(ScalarValues, AreReadOnFirstUseOrOnEveryUse) {
    const RawKey key("S");
    key.Set(L"N", 7u);
    UInt32Value once("S", "N", true);
    UInt32Value always("S", "N", false);
    EXPECT_TRUE(once.IsEmpty());
    EXPECT_EQ(7u, once.GetValue());
    EXPECT_EQ(7u, always.GetValue());
    EXPECT_FALSE(once.IsEmpty());
    key.Set(L"N", 8u);
    EXPECT_EQ(7u, once.GetValue());
    EXPECT_EQ(8u, always.GetValue());
    // What was just set is what is written, not what was read back.
    always.SetValue(9);
    EXPECT_EQ(9u, key.NumberOf(L"N"));
    // Unlike a read, a load is a load.
    once.LoadRegistry();
    EXPECT_EQ(9u, once.GetValue());
    EXPECT_FALSE(once.HasDefaultValue());
}

LSTATUS WINAPI NoKey(HKEY, LPCSTR, DWORD, REGSAM, PHKEY) {
    ADD_FAILURE() << "the registry was read";
    return ERROR_ACCESS_DENIED;
}

TEST_F(ScalarValues, StayAwayFromTheRegistryOnceCached) {
    RawKey("S").Set(L"N", 7u);
    const UInt32Value cached("S", "N", true);
    cached.GetValue();
    const ImportPatch patch("RegOpenKeyExA", NoKey);
    EXPECT_EQ(7u, cached.GetValue());
    EXPECT_EQ("N=7", cached.ToString());
}

/// Every way in which the registry may hold no datum for a value.
enum class Damage { kMissing, kWrongType, kWrongSize };

TEST_F(ScalarValues, TakeTheirDefaultsFromADamagedRegistry) {
    for (const Damage damage : {Damage::kMissing, Damage::kWrongType, Damage::kWrongSize}) {
        SCOPED_TRACE(static_cast<int>(damage));
        const RawKey key("S");
        for (const wchar_t* name : {L"Number", L"Text"}) {
            if (damage == Damage::kWrongType) key.Set(name, REG_BINARY, "abcd", 4);
            if (damage == Damage::kWrongSize) key.Set(name, REG_DWORD, "abc", 3);
        }
        auto flag = Sourced<BooleanValue>("Number");
        auto number = Sourced<Int32Value>("Number");
        auto count = Sourced<UInt32Value>("Number");
        auto guid = Sourced<GuidValue>("Text");
        auto text = Sourced<TStringValue>("Text");
        auto ident = Sourced<IdentValue>("Text");
        flag.SetDefaultValue(true);
        number.SetDefaultValue(-5);
        count.SetDefaultValue(5);
        guid.SetDefaultValue(kGuid);
        text.SetDefaultValue("t");
        ident.SetDefaultValue("i");
        EXPECT_TRUE(flag);
        EXPECT_EQ(-5, number.GetValue());
        EXPECT_EQ(5u, count.GetValue());
        EXPECT_EQ(kGuid, guid.GetValue());
        EXPECT_EQ("t", text.GetValue());
        EXPECT_EQ("i", ident.GetValue());
        EXPECT_TRUE(flag.HasDefaultValue() && text.HasDefaultValue());
        EXPECT_FALSE(flag.ExistsRegistry() || count.ExistsRegistry() || text.ExistsRegistry());
    }
}

TEST_F(ScalarValues, TellWhetherTheyAreStoredExceptNumbersAndBytes) {
    const RawKey key("S");
    key.Set(L"Number", 1u);
    key.Set(L"Text", L"no GUID");
    EXPECT_TRUE(Sourced<BooleanValue>("Number").ExistsRegistry());
    EXPECT_TRUE(Sourced<UInt32Value>("Number").ExistsRegistry());
    EXPECT_TRUE(Sourced<TStringValue>("Text").ExistsRegistry());
    EXPECT_TRUE(Sourced<GuidValue>("Text").ExistsRegistry());
    EXPECT_FALSE(Sourced<Int32Value>("Number").ExistsRegistry());
    EXPECT_FALSE(Sourced<ByteArrayValue>("Number").ExistsRegistry());
}

TEST_F(ScalarValues, WriteADefaultOnlyForUnsignedNumbersAndOnlyWhereNoneIsStored) {
    auto count = Sourced<UInt32Value>("Count");
    count.SetDefaultValue(7, false);
    Sourced<BooleanValue>("Flag").SetDefaultValue(true, true);
    Sourced<TStringValue>("Text").SetDefaultValue("t", true);
    UInt32Value().SetDefaultValue(7, true);
    EXPECT_FALSE(RawKey::Exists());
    count.SetDefaultValue(7, true);
    EXPECT_EQ(7u, RawKey("S").NumberOf(L"Count"));
    count.SetDefaultValue(8, true);
    EXPECT_EQ(7u, RawKey("S").NumberOf(L"Count"));
    EXPECT_EQ(8u, count.GetDefaultValue());
    EXPECT_EQ(7u, count.GetValue());
}

TEST_F(ScalarValues, StoreTheDefaultOfAValueThatWasNeverTouched) {
    UInt32Value count;
    count.SetValueName("N");
    count.SetDefaultValue(7);
    count.SaveRegistry("S");
    EXPECT_EQ(7u, RawKey("S").NumberOf(L"N"));
}

TEST_F(ScalarValues, RenderTheirData) {
    BooleanValue flag;
    const char* const texts[][2] = {{"False", "True"}, {"Off", "On"}, {"No", "Yes"}};
    for (const bool on : {false, true})
        for (const int style : {0, 1, 2, 5, -1}) {
            flag.SetValue(on);
            flag.Type(style);
            EXPECT_EQ(texts[style == 1 || style == 2 ? style : 0][on], flag.SaveStringDataOnly());
        }

    Int32Value number;
    number.SetValue(-5);
    EXPECT_EQ("-5", number.SaveStringDataOnly());
    UInt32Value count;
    count.SetValue(0xFFFFFFFF);
    EXPECT_EQ("4294967295", count.SaveStringDataOnly());
    EXPECT_EQ("{01234567-89AB-CDEF-0102-0304050607FE}", GuidValue(kGuid).SaveStringDataOnly());
    ByteArrayValue bytes;
    EXPECT_EQ("", bytes.SaveStringDataOnly());
    std::ranges::copy("ab", bytes.SetValueSize(3));
    bytes.SetValue();
    EXPECT_EQ("\7\7\7", bytes.SaveStringDataOnly());
    TStringValue path;
    path.SetValueName("Path");
    path = "C:\\it's";
    EXPECT_EQ("Path='C:\\it's'", path.SaveString());
    path = std::string(100'000, 'x');
    EXPECT_EQ(100'007u, path.ToString().size());
}

TEST_F(ScalarValues, TakeAGuidsDefaultBeforeReading) {
    const RawKey key("S");
    key.Set(L"G", L"no GUID at all");
    auto guid = Sourced<GuidValue>("G", false);
    guid.SetDefaultValue(kGuid);
    EXPECT_EQ(kGuid, guid.GetValue());
    key.Set(L"G", L"{00000000-0000-0000-c000-000000000046}");
    EXPECT_EQ(IID_IUnknown, guid.GetValue());
    EXPECT_TRUE(guid.HasDefaultValue());
}

TEST_F(ScalarValues, DisplayAGuidByTheNameOfItsClass) {
    HKEY classes = nullptr;
    RegCreateKeyExA(RawKey("Classes").Get(), nullptr, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                    &classes, nullptr);
    RegOverridePredefKey(HKEY_CLASSES_ROOT, classes);
    const TWinString<char> text = GuidValue::GUID2TString(kGuid);
    EXPECT_EQ(text, GuidValue::GUID2DisplayString(kGuid));
    const RawKey key("Classes\\CLSID\\" + text);
    EXPECT_EQ(text, GuidValue::GUID2DisplayString(kGuid));
    key.Set(L"", L"Video mixer");
    EXPECT_EQ("Video mixer", GuidValue::GUID2DisplayString(kGuid));
    key.Set(L"", L"");
    EXPECT_EQ(text, GuidValue::GUID2DisplayString(kGuid));
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    RegCloseKey(classes);
}

TEST_F(ScalarValues, KeepBytesWhereNothingIsStored) {
    auto bytes = Sourced<ByteArrayValue>("B");
    std::ranges::copy("ab", bytes.SetValueSize(3));
    bytes.LoadRegistry();
    EXPECT_TRUE(bytes.IsEmpty());
    EXPECT_STREQ("ab", reinterpret_cast<char*>(bytes.GetValue()));
    EXPECT_FALSE(bytes.IsEmpty() || bytes.HasDefaultValue());
    RawKey("S").Set(L"B", REG_BINARY, "", 0);
    bytes.LoadRegistry();
    unsigned long size = 9;
    EXPECT_EQ(nullptr, bytes.GetValue(&size));
    EXPECT_EQ(0u, size);
}

TEST_F(ScalarValues, CopyBytesIntoABufferThatIsLargeEnough) {
    ByteArrayValue bytes;
    std::ranges::copy("abc", bytes.SetValueSize(4));
    bytes.SetValue();
    unsigned char buffer[] = {'#', '#', '#', '#'};
    unsigned long size = 3;
    EXPECT_FALSE(bytes.GetValue(buffer, &size));
    EXPECT_EQ(4u, size);
    EXPECT_EQ('#', buffer[0]);
    EXPECT_TRUE(bytes.GetValue(buffer, &size));
    EXPECT_STREQ("abc", reinterpret_cast<char*>(buffer));
    const std::unique_ptr<Value> copy(bytes.Copy());
    EXPECT_TRUE(bytes == static_cast<const ByteArrayValue&>(*copy));
    EXPECT_TRUE(bytes != ByteArrayValue());
}

TEST_F(ScalarValues, FindTheFieldsOfAnIdentifier) {
    const struct {
        const char *text, *field, *expected;
    } cases[] = {
        {"id='3' name='Disk'", "name", "Disk"},
        {"id='3' name='Disk'", "id", "3"},
        {"name=Disk", "name", ""},
        {"name='Disk", "name", ""},
        {"name=''", "name", ""},
        {"rename='x' name='y'", "name", "x"},
        {"", "name", ""},
    };
    for (const auto& [text, field, expected] : cases)
        EXPECT_EQ(expected, IdentValue(TWinString<char>(text)).GetStringField(field)) << text;
}

}  // namespace
