#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <objbase.h>
#include <tests/support/private_registry.h>

namespace {

using namespace kitbag::test;

constexpr GUID kGuid = {0x20f1abcd, 0x12, 0x3e, {0xc0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr char kText[] = "{20F1ABCD-0012-003E-C000-000000000046}";

TEST(GuidValue, IsStoredAndShownAsText) {
    GuidValue value("S", "N", true);
    value.SetValue(kGuid);
    EXPECT_EQ(kText, GuidValue::GUID2TString(kGuid));
    EXPECT_EQ(std::wstring(kText, std::end(kText) - 1), RawKey("S").TextOf(L"N"));
    EXPECT_EQ(kText, GuidValue(kGuid).SaveStringDataOnly()) << "made of a GUID";
    EXPECT_FALSE(GuidValue(kGuid).IsEmpty());
}

TEST(GuidValue, TakesItsDefaultFirst) {
    const struct {
        const char *what, *stored;
        bool exists, isGuid;
    } rows[] = {{"a GUID", kText, true, true},
                {"no GUID", "{20F1ABCD}", true, false},
                {"nothing", nullptr, false, false}};
    for (const auto& [what, stored, exists, isGuid] : rows) {
        SCOPED_TRACE(what);
        KB_DeleteSectionA("S");
        if (stored) KB_SetStringA("S", "N", stored);
        GuidValue value("S", "N", true);
        value.SetDefaultValue(IID_IUnknown, true);
        EXPECT_EQ(exists, value.ExistsRegistry());
        EXPECT_EQ(isGuid ? kGuid : IID_IUnknown, value.GetValue());
        EXPECT_TRUE(value.HasDefaultValue());
        EXPECT_EQ(IID_IUnknown, value.GetDefaultValue());
    }
}

/// A class of the test's own in HKEY_CLASSES_ROOT, which here is a private key.
class GuidDisplay : public testing::Test {
 protected:
    GuidDisplay() {
        ::RegCreateKeyA(HKEY_LOCAL_MACHINE, "Classes", &classes_);
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes_);
    }
    ~GuidDisplay() override {
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        ::RegCloseKey(classes_);
    }

    void Name(DWORD type, std::string_view name) const {
        HKEY key = nullptr;
        ::RegCreateKeyA(classes_, ("CLSID\\" + std::string(kText)).c_str(), &key);
        ::RegSetValueExA(key, nullptr, 0, type, reinterpret_cast<const BYTE*>(name.data()),
                         static_cast<DWORD>(name.size()));
        ::RegCloseKey(key);
    }

 private:
    HKEY classes_ = nullptr;
};

TEST_F(GuidDisplay, IsTheNameOfTheRegisteredClass) {
    using namespace std::string_view_literals;
    EXPECT_EQ(kText, GuidValue::GUID2DisplayString(kGuid)) << "no such class";
    const struct {
        const char* what;
        DWORD type;
        std::string_view stored, shown;
    } rows[] = {{"a name", REG_SZ, "A decoder\0"sv, "A decoder"},
                {"an expandable name", REG_EXPAND_SZ, "A decoder\0"sv, "A decoder"},
                {"text behind a zero", REG_SZ, "A\0decoder\0"sv, "A"},
                {"no terminator", REG_SZ, "A decoder", "A decoder"},
                {"an empty name", REG_SZ, "\0"sv, kText},
                {"bytes", REG_BINARY, "A decoder\0"sv, kText}};
    for (const auto& [what, type, stored, shown] : rows) {
        Name(type, stored);
        EXPECT_EQ(shown, GuidValue::GUID2DisplayString(kGuid)) << what;
    }
}

}  // namespace
