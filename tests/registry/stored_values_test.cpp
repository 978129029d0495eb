#include <comdef.h>
#include <kitbag/registry/stored_values.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

#include <random>

namespace {

using namespace kitbag::test;

/// Stores values as any program may have left them. What each getter must make of one follows from
/// the bytes that the system's own call hands out.
template <class Ch>
struct SettingsValues : testing::Test {
    static constexpr DWORD kRoom = 512;  // no value needs as much
    DWORD Below(DWORD limit) { return random() % limit; }

    void StoreAndAsk() {
        const DWORD types[] = {REG_SZ, REG_SZ, REG_DWORD, REG_DWORD, Below(12)};
        const DWORD sizes[] = {sizeof(DWORD), 2 * Below(5), 2 + Below(300)}, nonZero = Below(16);
        // No single byte: the system would put a 16-bit terminator behind the space it was given.
        std::string stored(sizes[Below(3)], '\0');
        for (char& byte : stored) byte = static_cast<char>(Below(16) < nonZero ? Below(256) : 0);
        section.Set(Below(2) ? L"Value" : L"", types[Below(5)], stored.data(), stored.size());

        const Ch* const names[] = {"Value"_t, ""_t, nullptr, "Missing"_t};
        name = names[Below(4)];
        DWORD size = kRoom;
        bytes.resize(size);
        isFound = !Pick<Ch>(::RegQueryValueExA, ::RegQueryValueExW)(
            section.Get(), name, nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
        bytes.resize(isFound ? size : 0);
    }

    /// Expects these bytes at the start of the output, or an output that is as it was, and refusal
    /// of an output that cannot be written to.
    template <class Value, class... Rest>
    void Expect(bool isTaken, const std::string& expected,
                bool (*get)(const Ch*, const Ch*, Value*, Rest...), Rest... rest) {
        std::string output(kRoom, '#');
        EXPECT_EQ(isTaken, get("S"_t, name, reinterpret_cast<Value*>(output.data()), rest...));
        EXPECT_TRUE(output.starts_with((isTaken ? expected : "") + '#')) << output;
        EXPECT_FALSE(get("S"_t, name, static_cast<Value*>(readOnly), rest...));
    }

    void ExpectNumbersAndData() {
        const bool isNumber = isFound && type == REG_DWORD && bytes.size() == sizeof(DWORD);
        Expect(isNumber, bytes, Exports<Ch>::GetDWORD);
        Expect(isNumber, bytes, Exports<Ch>::GetInt);
        Expect(isNumber, std::string(1, bytes != std::string(4, '\0')), Exports<Ch>::GetBool);

        const DWORD size = bytes.size(), room = std::max<DWORD>(size + Below(5), 2) - 2;
        const bool fits = isFound && size <= room;
        std::string output(kRoom, '#');
        DWORD returned = 1234;
        EXPECT_EQ(fits, Exports<Ch>::GetData("S"_t, name, room, output.data(), &returned));
        EXPECT_TRUE(!fits || output.starts_with(bytes));
        EXPECT_EQ(fits ? size : 1234, returned);
        EXPECT_FALSE(Exports<Ch>::GetData("S"_t, name, kRoom, readOnly, nullptr));
        EXPECT_EQ(isFound, Exports<Ch>::GetDataSize("S"_t, name, &returned) && returned == size);
    }

    void ExpectTexts() {
        const bool isText = isFound && type == REG_SZ;
        Text<Ch> text(reinterpret_cast<const Ch*>(bytes.data()), bytes.size() / sizeof(Ch));
        const DWORD length = std::max<DWORD>(text.size() + Below(4), 1) - 1;
        // A text that would fill the buffer is refused.
        Expect(isText && bytes.size() < length * sizeof(Ch), bytes, Exports<Ch>::GetString, length);

        const _bstr_t before(L"before");
        wchar_t after[kRoom] = L"before";
        if (isText) ::wsprintfW(after, Pick<Ch>(L"%S", L"%s"), text.c_str());
        BSTR bstr = before, none = nullptr;
        EXPECT_EQ(isText, Exports<Ch>::GetBSTR("S"_t, name, &bstr));
        EXPECT_STREQ(after, bstr);
        if (isText) ::SysFreeString(bstr);  // the old text is the caller's, too
        EXPECT_FALSE(Exports<Ch>::GetBSTR("S"_t, name, &none) ||
                     Exports<Ch>::GetBSTR("S"_t, name, nullptr));

        // The last character is taken for a terminator, whatever it is.
        if (!text.empty()) text.pop_back();
        const Text<Ch> unchanged("before"_t);
        Text<Ch> object = unchanged;
        EXPECT_EQ(isText, Exports<Ch>::GetTString("S"_t, name, object));
        EXPECT_EQ(isText ? text : unchanged, object);
    }

    void* const readOnly = ::GetModuleHandleA(nullptr);
    std::mt19937 random{1809};
    const RawKey section{"S"};
    const Ch* name = nullptr;
    bool isFound = false;
    DWORD type = REG_NONE;
    std::string bytes;
};
TYPED_TEST_SUITE(SettingsValues, TextForms, TextFormName);

TYPED_TEST(SettingsValues, LieInTheirSectionsKey) {
    using Ch = TypeParam;
    ExpectNoHandleLeak([] {
        EXPECT_TRUE(Exports<Ch>::SetDWORD(nullptr, "At the root"_t, 7));
        EXPECT_TRUE(Exports<Ch>::SetBool("Audio\\Mixer\\Left"_t, "Mute"_t, true));
    });
    EXPECT_EQ(7u, RawKey().NumberOf(L"At the root"));
    EXPECT_EQ(1u, RawKey("Audio\\Mixer\\Left").NumberOf(L"Mute"));
}

TYPED_TEST(SettingsValues, WriteTextsThatReadBackWhole) {
    using Ch = TypeParam;
    const Text<Ch> text(5000, Ch{'x'});
    Text<Ch> object;
    // What follows a zero is not stored.
    EXPECT_TRUE(Exports<Ch>::SetTString("S"_t, "T"_t, text + Text<Ch>({Ch{}, Ch{'x'}})));
    EXPECT_TRUE(Exports<Ch>::GetTString("S"_t, "T"_t, object) && object == text);
    EXPECT_EQ(std::wstring(5000, L'x'), this->section.TextOf(L"T"));
    EXPECT_TRUE(Exports<Ch>::SetBSTR("S"_t, "T"_t, _bstr_t(L"\u00fcber \u4e2d")));
    // The 8-bit form loses what the code page lacks.
    EXPECT_EQ(Pick<Ch>(L"\u00fcber ?", L"\u00fcber \u4e2d"), this->section.TextOf(L"T"));
    EXPECT_TRUE(Exports<Ch>::SetBSTR("S"_t, "T"_t, nullptr));
    EXPECT_EQ(L"", this->section.TextOf(L"T"));
}

TYPED_TEST(SettingsValues, AreReadAsTheirBytesAsk) {
    // A thousand rounds.
    ExpectNoHandleLeak([this] {
        if (this->HasFailure()) return;
        this->StoreAndAsk();
        SCOPED_TRACE(testing::PrintToString(this->bytes) + std::to_string(this->type));
        this->ExpectNumbersAndData();
        this->ExpectTexts();
    });
}

std::string calls;

/// Notes the calls of a system function with their numbers, and hands them on.
template <class... Arguments>
struct Watched : ImportPatch {
    Watched(const char* name, LSTATUS(WINAPI* function)(Arguments...)) : ImportPatch(name, Call) {
        label = name;
        watched = function;
    }
    static LSTATUS WINAPI Call(Arguments... arguments) {
        (calls += '\n') += label;
        (Note(arguments), ...);
        return watched(arguments...);
    }
    static void Note(DWORD number) { (calls += ' ') += std::to_string(number); }
    static void Note(const void*) {}

    static inline const char* label;
    static inline LSTATUS(WINAPI* watched)(Arguments...);
};

void* NoMemory(size_t) { return nullptr; }

TEST(SettingsCalls, AreTheFewestAndTakeNoHeap) {
    const Watched open("RegOpenKeyExW", ::RegOpenKeyExW);
    const Watched query("RegQueryValueExW", ::RegQueryValueExW);
    const Watched create("RegCreateKeyExW", ::RegCreateKeyExW);
    const Watched set("RegSetValueExW", ::RegSetValueExW);
    const Watched close("RegCloseKey", ::RegCloseKey);
    const std::wstring section = std::wstring(100, L's') + L'\\' + std::wstring(159, L's');
    const std::wstring longer = section + L's';
    DWORD value = 0;
    calls.reserve(4096);
    {
        const ImportPatch none("malloc", NoMemory, "libstdc++-6.dll");
        EXPECT_TRUE(KB_SetDWORDW(section.c_str(), L"N", 5));
        EXPECT_TRUE(KB_GetDWORDW(section.c_str(), L"N", &value) && value == 5);
        EXPECT_FALSE(KB_SetDWORDW(longer.c_str(), L"N", 6)) << "needs memory for its path";
    }
    EXPECT_EQ(
        "\nRegCreateKeyExW 0 0 983103\nRegSetValueExW 0 4 4\nRegCloseKey"
        "\nRegOpenKeyExW 0 131097\nRegQueryValueExW\nRegCloseKey",
        calls);
    EXPECT_TRUE(KB_SetDWORDW(longer.c_str(), L"N", 6));
    EXPECT_EQ(6u, RawKey(std::string(longer.begin(), longer.end())).NumberOf(L"N"));
}

}  // namespace
