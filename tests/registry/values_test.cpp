#include <kitbag/registry/values.h>
#include <oleauto.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

#include <string>

namespace {

using kitbag::test::ExpectNoHandleLeak;
using kitbag::test::ImportPatch;
using kitbag::test::RawKey;
using kitbag::test::Text;

template <class Ch>
class SettingsValues : public testing::Test {};
TYPED_TEST_SUITE(SettingsValues, kitbag::test::TextForms, kitbag::test::TextFormName);

/// The bytes of a 16-bit text without a terminator of its own.
std::string Bytes(std::wstring_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

struct Bstr {
    explicit Bstr(const wchar_t* text) : value(::SysAllocString(text)) {}
    ~Bstr() { ::SysFreeString(value); }
    BSTR value;
};

TYPED_TEST(SettingsValues, LieInTheirSectionsKey) {
    using Ch = TypeParam;
    EXPECT_TRUE(KB(SetDWORD)(nullptr, T("At the root"), 7));
    EXPECT_TRUE(KB(SetBool)(T(""), T("Also there"), true));
    EXPECT_TRUE(KB(SetInt)(T("Audio\\Mixer\\Left"), T("Volume"), 3));
    EXPECT_EQ(7u, RawKey().NumberOf(L"At the root"));
    EXPECT_EQ(1u, RawKey().NumberOf(L"Also there"));
    EXPECT_EQ(3u, RawKey("Audio\\Mixer\\Left").NumberOf(L"Volume"));

    bool value = false;
    EXPECT_TRUE(KB(GetBool)(T(""), T("At the root"), &value));
    EXPECT_TRUE(value) << "any number but 0 is true";
    EXPECT_FALSE(KB(GetBool)(T("Video"), T("Volume"), &value));
    EXPECT_FALSE(RawKey::Exists("Video")) << "a getter created the section";
}

TYPED_TEST(SettingsValues, TakeSectionsAsLongAsTheRegistryDoes) {
    using Ch = TypeParam;
    const auto root = static_cast<unsigned>(std::string(kitbag::test::kRoot).size());
    for (const size_t length : {1u, 259 - root, 260 - root, 261u, 600u}) {
        std::basic_string<Ch> section(length, Ch{'k'});
        for (size_t i = 100; i < length; i += 100) section[i] = Ch{'\\'};
        // The system's own 8-bit functions end at key paths of 260 characters.
        const bool taken = std::is_same_v<Ch, wchar_t> || root + 1 + length <= 260;
        int value = 0;
        EXPECT_EQ(taken, KB(SetInt)(section.c_str(), T("Value"), 5));
        EXPECT_EQ(taken, KB(GetInt)(section.c_str(), T("Value"), &value));
        if (!taken) continue;
        EXPECT_EQ(5u, RawKey(std::string(section.begin(), section.end())).NumberOf(L"Value"));
    }
}

TYPED_TEST(SettingsValues, ReadOnlyFourBytesOfNumberAsANumber) {
    using Ch = TypeParam;
    struct {
        DWORD type;
        std::string bytes;
        bool accepted;
    } const stored[] = {
        {REG_DWORD, {"\xfe\xff\xff\xff", 4}, true},  {REG_DWORD, {"\1\0\0", 3}, false},
        {REG_DWORD, {"\1\0\0\0\0\0\0\0", 8}, false}, {REG_DWORD, "", false},
        {REG_BINARY, {"\1\0\0\0", 4}, false},        {REG_SZ, Bytes(L"7"), false},
    };
    for (const auto& value : stored) {
        RawKey("S").Set(L"N", value.type, value.bytes.data(),
                        static_cast<DWORD>(value.bytes.size()));
        int number = 1234;
        DWORD unsignedNumber = 1234;
        bool truth = false;
        EXPECT_EQ(value.accepted, KB(GetInt)(T("S"), T("N"), &number));
        EXPECT_EQ(value.accepted, KB(GetDWORD)(T("S"), T("N"), &unsignedNumber));
        EXPECT_EQ(value.accepted, KB(GetBool)(T("S"), T("N"), &truth));
        EXPECT_EQ(value.accepted ? -2 : 1234, number);
        EXPECT_EQ(value.accepted ? 0xfffffffeu : 1234u, unsignedNumber);
        EXPECT_EQ(value.accepted, truth);
    }
}

// Texts as other tools may have left them, and what each reader makes of them.
TYPED_TEST(SettingsValues, ReadTextsWhateverTheirEnd) {
    using Ch = TypeParam;
    using Str = Text<Ch>;
    struct {
        DWORD type;
        std::string bytes;
        bool accepted;
        Str object;
        std::wstring bstr;
    } const stored[] = {
        {REG_SZ, "", true, T(""), L""},
        {REG_SZ, Bytes({L"", 1}), true, T(""), L""},
        {REG_SZ, Bytes({L"abc", 4}), true, T("abc"), L"abc"},
        {REG_SZ, Bytes({L"abc", 3}), true, T("ab"), L"abc"},
        {REG_SZ, Bytes({L"abc\0", 5}), true, Str(T("abc\0"), 4), L"abc"},
        {REG_SZ, Bytes({L"a\0b", 4}), true, Str(T("a\0b"), 3), L"a"},
        {REG_SZ, Bytes({L"abc", 3}) + 'x', true, T("ab"), L"abc"},
        {REG_SZ, "x", true, T(""), L""},
        {REG_EXPAND_SZ, Bytes({L"abc", 4}), false, T(""), L""},
        {REG_BINARY, Bytes({L"abc", 4}), false, T(""), L""},
    };
    for (const auto& value : stored) {
        SCOPED_TRACE(testing::PrintToString(value.bytes));
        RawKey("S").Set(L"T", value.type, value.bytes.data(),
                        static_cast<DWORD>(value.bytes.size()));
        Str object = T("before");
        EXPECT_EQ(value.accepted, KB(GetTString)(T("S"), T("T"), object));
        EXPECT_EQ(value.accepted ? value.object : Str(T("before")), object);

        const Bstr before(L"before");
        BSTR text = before.value;
        EXPECT_EQ(value.accepted, KB(GetBSTR)(T("S"), T("T"), &text));
        EXPECT_STREQ(value.accepted ? value.bstr.c_str() : L"before", text);
        EXPECT_EQ(value.accepted, text != before.value) << "the old text is the caller's";
        if (text != before.value) ::SysFreeString(text);
    }
}

TYPED_TEST(SettingsValues, ReadTextIntoABufferThatIsLargerThanIt) {
    using Ch = TypeParam;
    RawKey("S").Set(L"T", std::wstring(L"abcd"));  // five characters with the terminator
    Ch buffer[8];
    for (const DWORD size : {0u, 4u, 5u, 6u, 8u}) {
        std::fill_n(buffer, 8, Ch{'#'});
        const bool fits = size > 5;
        EXPECT_EQ(fits, KB(GetString)(T("S"), T("T"), buffer, size));
        EXPECT_EQ(
            fits ? std::basic_string<Ch>(T("abcd\0##"), 7) : std::basic_string<Ch>(7, Ch{'#'}),
            std::basic_string<Ch>(buffer, 7));
    }

    RawKey("S").Set(L"T", REG_SZ, L"ab", 4);  // no terminator is stored, and none is added
    EXPECT_TRUE(KB(GetString)(T("S"), T("T"), buffer, 3));
    EXPECT_EQ(std::basic_string<Ch>(T("abcd")), std::basic_string<Ch>(buffer, 2) + T("cd"));
    RawKey("S").Set(L"T", REG_EXPAND_SZ, L"ab", 6);
    EXPECT_FALSE(KB(GetString)(T("S"), T("T"), buffer, 8));
}

TYPED_TEST(SettingsValues, WriteTextsThatReadBackWhole) {
    using Ch = TypeParam;
    for (const Text<Ch>& text : {Text<Ch>(), Text<Ch>(1, Ch{'x'}), Text<Ch>(5000, Ch{'y'})}) {
        EXPECT_TRUE(KB(SetTString)(T("S"), T("T"), text));
        Text<Ch> object = T("before");
        EXPECT_TRUE(KB(GetTString)(T("S"), T("T"), object));
        EXPECT_EQ(text, object);
        EXPECT_EQ(std::wstring(text.begin(), text.end()), RawKey("S").TextOf(L"T"));
    }
    const Bstr text(L"\u00fcber \u4e2d");
    EXPECT_TRUE(KB(SetBSTR)(T("S"), T("T"), text.value));
    // The 8-bit form loses what the code page lacks.
    EXPECT_EQ(kitbag::test::Pick<Ch>(L"\u00fcber ?", L"\u00fcber \u4e2d"),
              RawKey("S").TextOf(L"T"));
    EXPECT_TRUE(KB(SetBSTR)(T("S"), T("T"), nullptr));
    EXPECT_EQ(L"", RawKey("S").TextOf(L"T"));
}

TYPED_TEST(SettingsValues, ReadAndWriteBlocks) {
    using Ch = TypeParam;
    const std::string block("\0\1\2\xff\0", 5);
    EXPECT_TRUE(KB(SetData)(T("S"), T("D"), 5, block.data()));
    EXPECT_EQ(DWORD{REG_BINARY}, RawKey("S").TypeOf(L"D"));
    EXPECT_EQ(block, RawKey("S").BytesOf(L"D"));

    char buffer[8] = "#######";
    DWORD size = 99;
    EXPECT_FALSE(KB(GetData)(T("S"), T("D"), 4, buffer, &size));
    EXPECT_EQ(99u, size);
    EXPECT_TRUE(KB(GetDataSize)(T("S"), T("D"), &size));
    EXPECT_EQ(5u, size);
    RawKey("S").Set(L"N", 7u);  // any type will do
    EXPECT_TRUE(KB(GetData)(T("S"), T("N"), 8, buffer, &size));
    EXPECT_EQ(4u, size);
    EXPECT_TRUE(KB(GetData)(T("S"), T("D"), 8, buffer, nullptr));
    EXPECT_EQ(block + "##", std::string(buffer, 7));
}

TYPED_TEST(SettingsValues, RefuseOutputsThatCannotBeWritten) {
    using Ch = TypeParam;
    RawKey("S").Set(L"N", 7u);
    RawKey("S").Set(L"T", std::wstring(L"text"));
    static const DWORD constants[16] = {};
    auto* readOnly = const_cast<DWORD*>(constants);  // NOLINT: that is the point
    BSTR nothing = nullptr;
    auto unwritable = reinterpret_cast<BSTR>(readOnly);

    EXPECT_FALSE(KB(GetDWORD)(T("S"), T("N"), nullptr));
    EXPECT_FALSE(KB(GetDWORD)(T("S"), T("N"), readOnly));
    EXPECT_FALSE(KB(GetBool)(T("S"), T("N"), nullptr));
    Ch buffer[16] = {};
    for (Ch* const output : {static_cast<Ch*>(nullptr), reinterpret_cast<Ch*>(readOnly)})
        EXPECT_FALSE(KB(GetString)(T("S"), T("T"), output, 16));
    EXPECT_FALSE(KB(GetString)(T("S"), T("T"), buffer, MAXDWORD));
    for (BSTR* const output : {static_cast<BSTR*>(nullptr), &nothing, &unwritable})
        EXPECT_FALSE(KB(GetBSTR)(T("S"), T("T"), output));
    EXPECT_FALSE(KB(GetDataSize)(T("S"), T("N"), nullptr));
    EXPECT_FALSE(KB(GetData)(T("S"), T("N"), 16, readOnly, nullptr));
    EXPECT_TRUE(KB(GetData)(T("S"), T("N"), 16, buffer, readOnly)) << "the size is a courtesy";
    EXPECT_FALSE(KB(SetData)(T("S"), T("D"), 16, nullptr));
}

TYPED_TEST(SettingsValues, LeaveNoKeyOpen) {
    using Ch = TypeParam;
    RawKey("S").Set(L"N", 7u);
    RawKey("S").Set(L"T", std::wstring(L"text"));
    Text<Ch> text;
    Ch buffer[2];
    DWORD number = 0;
    const Bstr held(L"before");
    // Successes, and failures before and after the key was opened.
    ExpectNoHandleLeak([&] {
        for (const auto* name : {T("N"), T("T"), T("missing")}) {
            KB(GetDWORD)(T("S"), name, &number);
            KB(GetDWORD)(T("S"), name, nullptr);
            KB(GetTString)(T("S"), name, text);
            KB(GetString)(T("S"), name, buffer, 2);
            BSTR result = held.value;
            if (KB(GetBSTR)(T("S"), name, &result)) ::SysFreeString(result);
            KB(GetDataSize)(T("S"), name, &number);
            KB(GetData)(T("S"), name, 1, buffer, &number);
        }
        KB(GetDWORD)(T("missing"), T("N"), &number);
        KB(SetDWORD)(T("S"), T("N"), 8);
        KB(SetString)(T("S"), T("T"), T("text"));
        KB(SetData)(T("S"), T("D"), 4, &number);
    });
}

// Fakes that note what they are called with, in memory that is there already.
std::string calls;
int allocations = 0;

void Note(const char* call, const char* text, unsigned long number) {
    ((calls += call) += text) += ' ';
    calls += std::to_string(number) + '\n';
}
const HKEY fakeKey = reinterpret_cast<HKEY>(4711);

LSTATUS WINAPI Open(HKEY, LPCSTR path, DWORD, REGSAM access, PHKEY key) {
    Note("open ", path, access);
    *key = fakeKey;
    return ERROR_SUCCESS;
}
LSTATUS WINAPI Create(HKEY, LPCSTR path, DWORD, LPSTR, DWORD, REGSAM access, LPSECURITY_ATTRIBUTES,
                      PHKEY key, LPDWORD) {
    Note("create ", path, access);
    *key = fakeKey;
    return ERROR_SUCCESS;
}
LSTATUS WINAPI Query(HKEY, LPCSTR name, LPDWORD, LPDWORD type, LPBYTE, LPDWORD bytes) {
    Note("query ", name, *bytes);
    *type = REG_DWORD;
    return ERROR_SUCCESS;
}
LSTATUS WINAPI Set(HKEY, LPCSTR name, DWORD, DWORD, const BYTE*, DWORD bytes) {
    Note("set ", name, bytes);
    return ERROR_SUCCESS;
}
LSTATUS WINAPI Close(HKEY key) {
    Note("close", "", reinterpret_cast<unsigned long>(key));
    return ERROR_SUCCESS;
}
void* CountedAllocation(size_t size) {
    ++allocations;
    return std::malloc(size);
}
void* NoMemory(size_t) { return nullptr; }
TEST(SettingsCalls, AreTheFewestAndTakeNoHeapForScalars) {
    const ImportPatch open("RegOpenKeyExA", Open), create("RegCreateKeyExA", Create);
    const ImportPatch query("RegQueryValueExA", Query), set("RegSetValueExA", Set);
    const ImportPatch close("RegCloseKey", Close);
    const std::string section(260, 's');
    const std::string path = std::string(kitbag::test::kRoot) + '\\' + section;
    calls.reserve(4096);
    DWORD value = 0;
    {
        const ImportPatch allocate("malloc", CountedAllocation, "libstdc++-6.dll");
        EXPECT_TRUE(KB_GetDWORDA(section.c_str(), "Name", &value));
        EXPECT_TRUE(KB_SetDWORDA(section.c_str(), "Name", 1));
        EXPECT_EQ(0, allocations);
        EXPECT_TRUE(KB_SetDWORDA((section + 's').c_str(), "Name", 1));
        EXPECT_GT(allocations, 0) << "allocations are not seen";
    }
    EXPECT_EQ("open " + path + " 131097\nquery Name 4\nclose 4711\n" +  //
                  "create " + path + " 983103\nset Name 4\nclose 4711\n" + "create " + path +
                  "s 983103\nset Name 4\nclose 4711\n",
              calls);

    calls.clear();
    EXPECT_TRUE(KB_SetStringA("", "T", "abc"));
    EXPECT_EQ(std::string("create ") + kitbag::test::kRoot + " 983103\nset T 3\nclose 4711\n",
              calls);
}

TEST(SettingsCalls, FailCleanlyWithoutMemory) {
    RawKey("S").Set(L"T", std::wstring(L"a text that does not fit into the object itself"));
    TWinString<char> narrow("before");
    std::wstring wide(L"before");
    const std::string longSection(300, 's');
    {
        const ImportPatch none("malloc", NoMemory, "libstdc++-6.dll");
        ExpectNoHandleLeak([&] {
            EXPECT_FALSE(KB_GetTStringA("S", "T", narrow));
            EXPECT_FALSE(KB_GetTStringW(L"S", L"T", wide));
            EXPECT_FALSE(KB_SetDWORDA(longSection.c_str(), "N", 1));
        });
    }
    EXPECT_EQ("before", narrow);
    EXPECT_EQ(L"before", wide);
}

}  // namespace
