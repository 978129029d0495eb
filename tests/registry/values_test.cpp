#include <kitbag/registry/values.h>
#include <oleauto.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

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
    EXPECT_FALSE(KB(GetDWORD)(T("Video"), T("At the root"), &value));
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

// Values as any program may have left them, of every type and size and ending as they please. What
// each getter must make of one follows from the bytes that the system's own call hands out.
constexpr unsigned kSeed = 1809;
constexpr DWORD kRoom = 512;  // no value needs as much

std::wstring Wide(const wchar_t* text) { return text; }
std::wstring Wide(const char* text) {
    wchar_t wide[kRoom];
    ::MultiByteToWideChar(CP_ACP, 0, text, -1, wide, kRoom);
    return wide;
}

template <class Ch>
class RandomValues : public testing::Test {
 protected:
    void StoreAndChoose() {
        const DWORD types[] = {REG_SZ, REG_SZ, REG_DWORD, REG_DWORD, Below(12), Below(MAXDWORD)};
        const DWORD sizes[] = {0, 1, 2, 3, 4, 4, 4, 5, 8, Below(40), Below(300)};
        std::string bytes(sizes[Below(11)], '\0');
        // Mostly 16-bit text of one byte each with a zero here and there, then terminators.
        const size_t end = bytes.size() - std::min<size_t>(bytes.size(), Below(2) * Below(7));
        for (size_t i = 0; i < end; ++i)
            if (Below(16) < (i % 2 ? 4u : 15u)) bytes[i] = static_cast<char>(Below(256));
        section_.Set(Below(2) ? L"Value" : L"", types[Below(6)], bytes.data(),
                     static_cast<DWORD>(bytes.size()));
        const Ch* const names[] = {T("Value"), T("Value"), T(""), nullptr, T("Missing")};
        name_ = names[Below(5)];
        DWORD size = kRoom;
        bytes_.assign(kRoom, '#');
        found_ = Ask(bytes_, size);
        bytes_.resize(found_ ? size : 0);
        isText_ = found_ && type_ == REG_SZ;
        ++count_;
    }

    void ExpectNumbers() const {
        const bool isNumber = found_ && type_ == REG_DWORD && bytes_.size() == sizeof(DWORD);
        DWORD number = 0;
        if (isNumber) std::memcpy(&number, bytes_.data(), sizeof number);
        const auto expect = [&](auto get, auto before, auto expected) {
            auto output = before;
            EXPECT_EQ(isNumber, get(T("S"), name_, &output));
            EXPECT_EQ(isNumber ? expected : before, output);
        };
        expect(KB(GetDWORD), DWORD{1234}, number);
        expect(KB(GetInt), 1234, static_cast<int>(number));
        expect(KB(GetBool), false, number != 0);
        expect(KB(GetBool), true, number != 0);
    }

    void ExpectTexts() const {
        std::basic_string<Ch> text(bytes_.size() / sizeof(Ch), Ch{});
        std::memcpy(text.data(), bytes_.data(), text.size() * sizeof(Ch));
        const BSTR before = ::SysAllocString(L"before");
        BSTR bstr = before;
        EXPECT_EQ(isText_, KB(GetBSTR)(T("S"), name_, &bstr));
        EXPECT_EQ(isText_ ? Wide(text.c_str()) : L"before",
                  std::wstring(bstr, ::SysStringLen(bstr)));
        EXPECT_EQ(isText_, bstr != before) << "the old text is the caller's";
        if (bstr != before) ::SysFreeString(bstr);
        ::SysFreeString(before);

        // The last character is a terminator, whatever it is.
        if (!text.empty()) text.pop_back();
        Text<Ch> object = T("before");
        EXPECT_EQ(isText_, KB(GetTString)(T("S"), name_, object));
        EXPECT_EQ(isText_ ? text : T("before"), object);
    }

    void ExpectTextInBuffer() {
        const DWORD size = Near(bytes_.size() / sizeof(Ch));
        // A text that would fill the buffer is refused; no terminator is added.
        const bool isTaken = isText_ && bytes_.size() < size * sizeof(Ch);
        std::string expected(kRoom, '#'), buffer(kRoom, '#');
        if (isTaken) expected.replace(0, bytes_.size(), bytes_);
        auto* const text = reinterpret_cast<Ch*>(buffer.data());
        EXPECT_EQ(isTaken, KB(GetString)(T("S"), name_, text, size));
        EXPECT_EQ(expected, buffer);
    }

    void ExpectDataInBuffer() {
        const DWORD size = Near(bytes_.size());
        DWORD bytes = size, returned = 1234;
        std::string expected(kRoom, '#'), buffer(kRoom, '#');
        const bool isTaken = Ask(expected, bytes);
        EXPECT_EQ(isTaken, KB(GetData)(T("S"), name_, size, buffer.data(), &returned));
        EXPECT_EQ(isTaken ? bytes_.size() : 1234, returned);
        EXPECT_EQ(expected, buffer);
        EXPECT_EQ(isTaken, KB(GetData)(T("S"), name_, size, buffer.data(), nullptr));
        EXPECT_EQ(found_, KB(GetDataSize)(T("S"), name_, &bytes));
        EXPECT_TRUE(!found_ || bytes == bytes_.size()) << bytes;
    }

    void ExpectRefusals() const {
        static const DWORD constants[kRoom] = {};
        auto* const readOnly = const_cast<DWORD*>(constants);  // NOLINT: that is the point
        for (DWORD* const output : {static_cast<DWORD*>(nullptr), readOnly}) {
            auto bstr = reinterpret_cast<BSTR>(output);
            EXPECT_FALSE(KB(GetDWORD)(T("S"), name_, output));
            EXPECT_FALSE(KB(GetBool)(T("S"), name_, reinterpret_cast<bool*>(output)));
            EXPECT_FALSE(KB(GetString)(T("S"), name_, reinterpret_cast<Ch*>(output), kRoom));
            EXPECT_FALSE(KB(GetBSTR)(T("S"), name_, reinterpret_cast<BSTR*>(output)));
            EXPECT_FALSE(KB(GetBSTR)(T("S"), name_, &bstr));
            EXPECT_FALSE(KB(GetDataSize)(T("S"), name_, output));
        }
        EXPECT_FALSE(KB(GetData)(T("S"), name_, kRoom, readOnly, nullptr));
    }

    DWORD Below(DWORD limit) { return random_() % limit; }
    DWORD Near(size_t size) { return std::max<DWORD>(size + Below(5), 2) - 2; }
    bool Ask(std::string& buffer, DWORD& bytes) {
        return Pick<Ch>(::RegQueryValueExA, ::RegQueryValueExW)(
                   section_.Get(), name_, nullptr, &type_, reinterpret_cast<BYTE*>(buffer.data()),
                   &bytes) == ERROR_SUCCESS;
    }

    std::mt19937 random_{kSeed};
    const RawKey section_{"S"};
    int count_ = 0;
    const Ch* name_ = nullptr;
    bool found_ = false, isText_ = false;
    DWORD type_ = REG_NONE;
    std::string bytes_;
};
TYPED_TEST_SUITE(RandomValues, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(RandomValues, AreReadAsTheirBytesAsk) {
    // A thousand rounds.
    ExpectNoHandleLeak([this] {
        if (this->HasFailure()) return;
        this->StoreAndChoose();
        SCOPED_TRACE(testing::Message()
                     << "seed " << kSeed << ", value " << this->count_ << ", type " << this->type_
                     << ", " << testing::PrintToString(this->bytes_));
        this->ExpectNumbers();
        this->ExpectTexts();
        this->ExpectTextInBuffer();
        this->ExpectDataInBuffer();
        this->ExpectRefusals();
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
void* NoMemory(size_t) { return nullptr; }

TEST(SettingsCalls, AreTheFewestAndTakeNoHeapForScalars) {
    const ImportPatch patches[] = {
        Watch("RegOpenKeyExW", ::RegOpenKeyExW), Watch("RegQueryValueExW", ::RegQueryValueExW),
        Watch("RegCreateKeyExW", ::RegCreateKeyExW), Watch("RegSetValueExW", ::RegSetValueExW),
        Watch("RegCloseKey", ::RegCloseKey)};
    calls.reserve(4096);
    for (const size_t length : {1u, 260u, 261u, 600u}) {
        std::wstring section(length, L's');
        for (size_t i = 100; i < length; i += 100) section[i] = L'\\';
        bool done = false;
        DWORD value = 0;
        calls.clear();
        allocations = 0;
        {
            const ImportPatch allocate("malloc", CountedAllocation, "libstdc++-6.dll");
            done = KB_SetDWORDW(section.c_str(), L"Name", 5) &&
                   KB_GetDWORDW(section.c_str(), L"Name", &value);
        }
        EXPECT_TRUE(done);
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
