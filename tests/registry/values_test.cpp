#include <kitbag/registry/values.h>
#include <oleauto.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>

namespace {

using kitbag::test::ExpectNoHandleLeak;
using kitbag::test::ImportPatch;
using kitbag::test::Pick;
using kitbag::test::RawKey;
using kitbag::test::Text;

template <class Ch>
class SettingsValues : public testing::Test {};
TYPED_TEST_SUITE(SettingsValues, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(SettingsValues, LieInTheirSectionsKey) {
    using Ch = TypeParam;
    ExpectNoHandleLeak([] {
        EXPECT_TRUE(KB(SetDWORD)(nullptr, T("At the root"), 7));
        EXPECT_TRUE(KB(SetBool)(T(""), T("Also there"), true));
        EXPECT_TRUE(KB(SetInt)(T("Audio\\Mixer\\Left"), T("Balance"), -3));
        EXPECT_TRUE(KB(SetData)(T("Audio"), nullptr, 5, "\0\1\2\xff"));
        EXPECT_FALSE(KB(SetData)(T("Audio"), T("No data"), 5, nullptr));
    });
    EXPECT_EQ(7u, RawKey().NumberOf(L"At the root"));
    EXPECT_EQ(1u, RawKey().NumberOf(L"Also there"));
    EXPECT_EQ(-3u, RawKey("Audio\\Mixer\\Left").NumberOf(L"Balance"));
    EXPECT_EQ(DWORD{REG_BINARY}, RawKey("Audio").TypeOf(L""));
    EXPECT_EQ(std::string("\0\1\2\xff", 5), RawKey("Audio").BytesOf(L""));

    DWORD value = 0;
    EXPECT_TRUE(KB(GetDWORD)(T(""), T("At the root"), &value));
    EXPECT_EQ(7u, value);
    EXPECT_FALSE(KB(GetDWORD)(T("Video"), T("N"), &value));
    EXPECT_FALSE(RawKey::Exists("Video")) << "a getter created the section";
}

TYPED_TEST(SettingsValues, WriteTextsThatReadBackWhole) {
    using Ch = TypeParam;
    for (const size_t size : {0u, 1u, 5000u}) {
        const Text<Ch> text(size, Ch{'x'});
        Text<Ch> object = T("before");
        // What follows a zero is not stored.
        EXPECT_TRUE(KB(SetTString)(T("S"), T("T"), text + Text<Ch>(T("\0x"), 2)));
        EXPECT_TRUE(KB(GetTString)(T("S"), T("T"), object));
        EXPECT_EQ(text, object);
        EXPECT_EQ(std::wstring(size, L'x'), RawKey("S").TextOf(L"T"));
    }
    BSTR text = ::SysAllocString(L"\u00fcber \u4e2d");
    EXPECT_TRUE(KB(SetBSTR)(T("S"), T("T"), text));
    ::SysFreeString(text);
    // The 8-bit form loses what the code page lacks.
    EXPECT_EQ(Pick<Ch>(L"\u00fcber ?", L"\u00fcber \u4e2d"), RawKey("S").TextOf(L"T"));
    EXPECT_TRUE(KB(SetBSTR)(T("S"), T("T"), nullptr));
    EXPECT_EQ(L"", RawKey("S").TextOf(L"T"));
}

void* NoMemory(size_t) { return nullptr; }

TYPED_TEST(SettingsValues, FailCleanlyWithoutMemory) {
    using Ch = TypeParam;
    RawKey("S").Set(L"T", std::wstring(L"a text that does not fit into the object itself"));
    const std::basic_string<Ch> longSection(300, Ch{'s'});
    Text<Ch> object = T("before");
    {
        const ImportPatch none("malloc", NoMemory, "libstdc++-6.dll");
        ExpectNoHandleLeak([&] {
            EXPECT_FALSE(KB(GetTString)(T("S"), T("T"), object));
            EXPECT_FALSE(KB(SetDWORD)(longSection.c_str(), T("N"), 1));
        });
    }
    EXPECT_EQ(T("before"), object);
}

// Values as any program may have left them, of every type and size and ending as they please. What
// each getter must make of one follows from the bytes that the system's own call hands out.
constexpr unsigned kSeed = 1809;
constexpr DWORD kRoom = 512;  // no value needs as much
const char readOnly[kRoom] = {};

/// A place that passes for whatever a getter wants to write to.
struct Output {
    const void* place;
    template <class T>
    operator T*() const {
        return static_cast<T*>(const_cast<void*>(place));  // NOLINT: some are not to be written to
    }
};

std::wstring Wide(const wchar_t* text) { return text; }
std::wstring Wide(const char* text) {
    wchar_t wide[kRoom];
    ::MultiByteToWideChar(CP_ACP, 0, text, -1, wide, kRoom);
    return wide;
}

template <class Ch>
struct RandomSettings : testing::Test {
    DWORD Below(DWORD limit) { return random() % limit; }
    DWORD Near(size_t size) { return std::max<DWORD>(size + Below(5), 2) - 2; }

    void StoreOne() {
        const DWORD types[] = {REG_SZ, REG_SZ, REG_DWORD, REG_DWORD, Below(12), Below(MAXDWORD)};
        const DWORD sizes[] = {0, 1, 2, 3, 4, 4, 4, 5, 8, Below(40), Below(300)};
        const DWORD size = sizes[Below(std::size(sizes))];
        // Mostly 16-bit text of one byte each with a zero here and there, then terminators.
        std::string stored(size - std::min(size, Below(2) * Below(7)), '\0');
        for (size_t i = 0; i < stored.size(); ++i)
            if (Below(16) < (i % 2 ? 4u : 15u)) stored[i] = static_cast<char>(Below(256));
        stored.resize(size);
        section.Set(Below(2) ? L"Value" : L"", types[Below(6)], stored.data(), size);
        ++count;
    }

    void ChooseOne() {
        const Ch* const names[] = {T("Value"), T("Value"), T(""), nullptr, T("Missing")};
        name = names[Below(std::size(names))];
        DWORD size = kRoom;
        bytes.resize(kRoom);
        isFound = Ask(bytes, size);
        bytes.resize(isFound ? size : 0);
        isText = isFound && type == REG_SZ;
    }

    bool Ask(std::string& buffer, DWORD& size) {
        return Pick<Ch>(::RegQueryValueExA, ::RegQueryValueExW)(
                   section.Get(), name, nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()),
                   &size) == ERROR_SUCCESS;
    }

    /// Expects these bytes at the start of the output, or an output that is as it was, and refusal
    /// of an output that cannot be written to.
    template <class Getter>
    static void Expect(bool isTaken, std::string expected, Getter&& get) {
        std::string output(kRoom, '#');
        if (!isTaken) expected.clear();
        expected.resize(kRoom, '#');
        EXPECT_EQ(isTaken, get(Output{output.data()}));
        EXPECT_EQ(expected, output);
        EXPECT_FALSE(get(Output{nullptr}));
        EXPECT_FALSE(get(Output{readOnly}));
    }

    void ExpectNumbers() {
        const bool isNumber = isFound && type == REG_DWORD && bytes.size() == sizeof(DWORD);
        const bool isTrue = bytes.find_first_not_of('\0') != bytes.npos;
        const auto to = [this](auto getter) {
            return [getter, this](Output output) { return getter(T("S"), name, output); };
        };
        Expect(isNumber, bytes, to(KB(GetDWORD)));
        Expect(isNumber, bytes, to(KB(GetInt)));
        Expect(isNumber, std::string(1, isTrue), to(KB(GetBool)));
    }

    void ExpectBuffers() {
        const DWORD length = Near(bytes.size() / sizeof(Ch)), size = Near(bytes.size());
        // A text that would fill the buffer is refused; the system, which may add a terminator
        // where there is room, is asked for just what is stored.
        std::string text(kRoom, '#'), data = text, output = text;
        DWORD exactly = bytes.size(), room = size, returned = 1234;
        Ask(text, exactly);
        Expect(isText && bytes.size() < length * sizeof(Ch), text,
               [&](Output buffer) { return KB(GetString)(T("S"), name, buffer, length); });

        const bool fits = Ask(data, room);
        EXPECT_EQ(fits, KB(GetData)(T("S"), name, size, output.data(), &returned));
        EXPECT_EQ(data, output);
        EXPECT_EQ(fits ? bytes.size() : 1234, returned);
        EXPECT_EQ(fits, KB(GetData)(T("S"), name, size, output.data(), Output{readOnly}));
        EXPECT_EQ(isFound, KB(GetDataSize)(T("S"), name, &returned));
        EXPECT_TRUE(!isFound || returned == bytes.size()) << returned;
        EXPECT_FALSE(KB(GetDataSize)(T("S"), name, Output{readOnly}));
        EXPECT_FALSE(KB(GetData)(T("S"), name, kRoom, Output{readOnly}, nullptr));
    }

    void ExpectTexts() {
        std::basic_string<Ch> text(bytes.size() / sizeof(Ch), Ch{});
        std::memcpy(text.data(), bytes.data(), text.size() * sizeof(Ch));
        const BSTR before = ::SysAllocString(L"before");
        BSTR bstr = before;
        EXPECT_EQ(isText, KB(GetBSTR)(T("S"), name, &bstr));
        EXPECT_EQ(isText ? Wide(text.c_str()) : L"before",
                  std::wstring(bstr, ::SysStringLen(bstr)));
        EXPECT_EQ(isText, bstr != before) << "the old text is the caller's";
        if (bstr != before) ::SysFreeString(bstr);
        ::SysFreeString(before);
        for (BSTR refused : {BSTR{}, BSTR{Output{readOnly}}})
            EXPECT_FALSE(KB(GetBSTR)(T("S"), name, &refused));
        EXPECT_FALSE(KB(GetBSTR)(T("S"), name, nullptr));

        // The last character is taken for a terminator, whatever it is.
        if (!text.empty()) text.pop_back();
        Text<Ch> object = T("before");
        EXPECT_EQ(isText, KB(GetTString)(T("S"), name, object));
        EXPECT_EQ(isText ? text : T("before"), object);
    }

    std::mt19937 random{kSeed};
    const RawKey section{"S"};
    int count = 0;
    const Ch* name = nullptr;
    bool isFound = false, isText = false;
    DWORD type = REG_NONE;
    std::string bytes;
};
TYPED_TEST_SUITE(RandomSettings, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(RandomSettings, AreReadAsTheirBytesAsk) {
    // A thousand rounds.
    ExpectNoHandleLeak([this] {
        if (this->HasFailure()) return;
        this->StoreOne();
        this->ChooseOne();
        SCOPED_TRACE(testing::Message()
                     << "seed " << kSeed << ", value " << this->count << ", type " << this->type
                     << ", " << testing::PrintToString(this->bytes));
        this->ExpectNumbers();
        this->ExpectBuffers();
        this->ExpectTexts();
    });
}

// Notes are taken in memory that is there already.
std::string calls;
int allocations = 0;

/// Notes the calls of a system function with their numbers, and hands them on.
template <class... Arguments>
struct Watched {
    static inline const char* name;
    static inline LSTATUS(WINAPI* function)(Arguments...);

    static LSTATUS WINAPI Call(Arguments... arguments) {
        calls += name;
        (Note(arguments), ...);
        calls += '\n';
        return function(arguments...);
    }
    static void Note(DWORD number) { (calls += ' ') += std::to_string(number); }
    static void Note(const void*) {}
};
template <class... Arguments>
ImportPatch Watch(const char* name, LSTATUS(WINAPI* function)(Arguments...)) {
    Watched<Arguments...>::name = name;
    Watched<Arguments...>::function = function;
    return {name, Watched<Arguments...>::Call};
}
void* CountedAllocation(size_t size) {
    ++allocations;
    return std::malloc(size);
}

TEST(SettingsCalls, AreTheFewestAndTakeNoHeapForScalars) {
    const ImportPatch patches[] = {Watch("RegOpenKeyExW", ::RegOpenKeyExW),
                                   Watch("RegQueryValueExW", ::RegQueryValueExW),
                                   Watch("RegCreateKeyExW", ::RegCreateKeyExW),
                                   Watch("RegSetValueExW", ::RegSetValueExW),
                                   Watch("RegCloseKey", ::RegCloseKey),
                                   {"malloc", CountedAllocation, "libstdc++-6.dll"}};
    calls.reserve(4096);
    for (const size_t length : {1u, 260u, 261u, 600u}) {
        std::wstring section(length, L's');
        for (size_t i = 100; i < length; i += 100) section[i] = L'\\';
        DWORD value = 0;
        calls.clear();
        allocations = 0;
        KB_SetDWORDW(section.c_str(), L"Name", 5);
        KB_GetDWORDW(section.c_str(), L"Name", &value);
        EXPECT_EQ(length > 260, allocations > 0);
        EXPECT_EQ(5u, value);
        EXPECT_EQ(5u, RawKey(std::string(section.begin(), section.end())).NumberOf(L"Name"));
        EXPECT_EQ(
            "RegCreateKeyExW 0 0 983103\nRegSetValueExW 0 4 4\nRegCloseKey\n"
            "RegOpenKeyExW 0 131097\nRegQueryValueExW\nRegCloseKey\n",
            calls);
    }
    calls.clear();
    EXPECT_TRUE(KB_SetStringW(L"", L"T", L"abc"));
    EXPECT_EQ("RegCreateKeyExW 0 0 983103\nRegSetValueExW 0 1 6\nRegCloseKey\n", calls);
}

}  // namespace
