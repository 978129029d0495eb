#include <comdef.h>
#include <kitbag/registry/stored_values.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/printing.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_forms.h>

#include <climits>
#include <cstring>
#include <functional>
#include <optional>

namespace {

using namespace kitbag::test;

/// An output of any type: '#' in every byte that nothing was written to.
template <class Output, std::size_t count = 1>
struct Marked {
    Marked() { std::memset(this, '#', sizeof *this); }
    operator Output*() { return content; }
    Bytes Content() const { return {content, sizeof content}; }
    Output content[count];
};

/// What a Marked output of this size holds after these bytes were written to it.
Bytes Written(std::string bytes, std::size_t size) {
    bytes.resize(size, '#');
    return Bytes(bytes);
}

std::string BytesIn(const auto& text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof text[0]};
}

/// Latin-1 text in the form under test, zeros included.
template <class Ch>
Text<Ch> In(const std::string& text) {
    Text<Ch> converted;
    for (const char c : text) converted += static_cast<Ch>(static_cast<unsigned char>(c));
    return converted;
}

/// What every getter of texts makes of a value.
struct ReadTexts {
    std::string object, bstr, buffer;
};

template <class Ch>
struct StoredValues : testing::Test {
    void Store(DWORD type, const std::string& bytes) const {
        raw.Set(L"Value", type, bytes.data(), static_cast<DWORD>(bytes.size()));
    }
    void StoreText(const std::string& text) const { Store(REG_SZ, BytesIn(In<wchar_t>(text))); }

    /// Where nothing is expected, the getters refuse and leave their outputs as they were.
    static void ExpectNumbers(const Ch* section, const Ch* name,
                              const std::optional<std::string>& number,
                              const std::string& truth = {}) {
        using Kb = Exports<Ch>;
        Marked<DWORD> unsignedNumber;
        EXPECT_EQ(number.has_value(), Kb::GetDWORD(section, name, unsignedNumber));
        EXPECT_EQ(Written(number.value_or(""), 4), unsignedNumber.Content());
        Marked<int> signedNumber;
        EXPECT_EQ(number.has_value(), Kb::GetInt(section, name, signedNumber));
        EXPECT_EQ(Written(number.value_or(""), 4), signedNumber.Content());
        Marked<bool> boolean;
        EXPECT_EQ(number.has_value(), Kb::GetBool(section, name, boolean));
        EXPECT_EQ(Written(truth, 1), boolean.Content());
    }
    static void ExpectTexts(const Ch* section, const Ch* name,
                            const std::optional<ReadTexts>& texts) {
        using Kb = Exports<Ch>;
        const auto [object, bstr, buffer] = texts.value_or(ReadTexts{"before", "before", ""});
        Text<Ch> readObject("before"_t);
        EXPECT_EQ(texts.has_value(), Kb::GetTString(section, name, readObject));
        EXPECT_EQ(In<Ch>(object), readObject);

        _bstr_t before(L"before");
        BSTR readBstr = before.GetBSTR();
        EXPECT_EQ(texts.has_value(), Kb::GetBSTR(section, name, &readBstr));
        EXPECT_EQ(texts.has_value(), readBstr != before.GetBSTR()) << "the old one is not reused";
        EXPECT_EQ(In<wchar_t>(bstr), std::wstring(readBstr, ::SysStringLen(readBstr)));
        if (readBstr != before.GetBSTR()) ::SysFreeString(readBstr);

        Marked<Ch, 5100> readBuffer;
        EXPECT_EQ(texts.has_value(), Kb::GetString(section, name, readBuffer, 5100));
        EXPECT_EQ(Written(BytesIn(In<Ch>(buffer)), sizeof readBuffer), readBuffer.Content());
    }

    const RawKey raw{"S"};
};
TYPED_TEST_SUITE(StoredValues, TextForms, TextFormName);

TYPED_TEST(StoredValues, AreNumbersOnlyAsFourBytesOfThatType) {
    const std::string yes(1, '\1'), no(1, '\0'), refused;
    const struct {
        const char* what;
        DWORD type;
        std::string bytes, truth;
    } rows[] = {{"zero", REG_DWORD, {0, 0, 0, 0}, no},
                {"one", REG_DWORD, {1, 0, 0, 0}, yes},
                {"the highest bit alone", REG_DWORD, {0, 0, 0, '\x80'}, yes},
                {"three bytes", REG_DWORD, {7, 0, 0}, refused},
                {"five bytes", REG_DWORD, {7, 0, 0, 0, 0}, refused},
                {"no bytes", REG_DWORD, {}, refused},
                {"binary", REG_BINARY, {7, 0, 0, 0}, refused},
                {"the other byte order", REG_DWORD_BIG_ENDIAN, {0, 0, 0, 7}, refused},
                {"eight bytes", REG_QWORD, {7, 0, 0, 0, 0, 0, 0, 0}, refused},
                {"a digit", REG_SZ, {'7', 0, 0, 0}, refused}};
    for (const auto& [what, type, bytes, truth] : rows) {
        SCOPED_TRACE(what);
        this->Store(type, bytes);
        if (truth == refused)
            this->ExpectNumbers("S"_t, "Value"_t, {});
        else
            this->ExpectNumbers("S"_t, "Value"_t, bytes, truth);
    }
}

TYPED_TEST(StoredValues, AreTextsAsTheyStand) {
    const std::string x(5000, 'x');
    const struct {
        const char* what;
        std::string stored, object, bstr;
    } rows[] = {{"nothing", "", "", ""},
                {"a terminator alone", {0}, "", ""},
                {"as the setters write", {'a', 'b', 0}, "ab", "ab"},
                {"two terminators", {'a', 'b', 0, 0}, {'a', 'b', 0}, "ab"},
                {"a zero inside", {'a', 0, 'b', 0}, {'a', 0, 'b'}, "a"},
                {"beyond ASCII", {'\xfc', 0}, "\xfc", "\xfc"},
                // The last character is taken for a terminator, whatever it is.
                {"no terminator", "abc", "ab", "abc"},
                {"one character", "a", "", "a"},
                {"long", x, x.substr(1), x}};
    for (const auto& [what, stored, object, bstr] : rows) {
        SCOPED_TRACE(what);
        this->StoreText(stored);
        this->ExpectTexts("S"_t, "Value"_t, ReadTexts{object, bstr, stored});
    }
}

TEST(StoredValuesOf16Bits, OfAnOddNumberOfBytesLoseTheLast) {
    RawKey("S").Set(L"Value", REG_SZ, "a\0b\0c", 5);
    std::wstring text;
    EXPECT_TRUE(KB_GetTStringW(L"S", L"Value", text));
    EXPECT_EQ(L"a", text);
    BSTR bstr = _bstr_t(L"before").Detach();
    const _bstr_t before(bstr, false);
    EXPECT_TRUE(KB_GetBSTRW(L"S", L"Value", &bstr));
    EXPECT_STREQ(L"ab", _bstr_t(bstr, false));
}

TYPED_TEST(StoredValues, AreNoTextsWhereTheyHaveAnotherType) {
    for (const int type :
         {REG_NONE, REG_EXPAND_SZ, REG_BINARY, REG_DWORD, REG_LINK, REG_MULTI_SZ}) {
        SCOPED_TRACE(type);
        this->Store(static_cast<DWORD>(type), {'a', 0, 0, 0});
        this->ExpectTexts("S"_t, "Value"_t, {});
    }
}

TYPED_TEST(StoredValues, AreNotFoundWhereTheyAreMissing) {
    using Kb = Exports<TypeParam>;
    const struct {
        const TypeParam *section, *name;
    } places[] = {{"S"_t, "Missing"_t}, {"Missing"_t, "Value"_t}};
    this->StoreText("text");
    for (const auto& [section, name] : places) {
        SCOPED_TRACE(Called("Get", section, name));
        this->ExpectNumbers(section, name, {});
        this->ExpectTexts(section, name, {});
        DWORD size = 99;
        BYTE data;
        EXPECT_FALSE(Kb::GetDataSize(section, name, &size));
        size = 99;
        EXPECT_FALSE(Kb::GetData(section, name, 1, &data, &size));
        EXPECT_EQ(99u, size);
    }
    EXPECT_FALSE(RawKey::Exists("Missing")) << "created by a getter";
}

TYPED_TEST(StoredValues, LeaveRoomForATerminatorInBuffers) {
    using Ch = TypeParam;
    using Kb = Exports<Ch>;
    this->StoreText("abcd");
    for (const DWORD size : {0u, 1u, 4u, 5u, 6u, 0x80000000u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(size);
        const bool isTaken = size == 5 || size == 6;
        Marked<Ch, 8> buffer;
        EXPECT_EQ(isTaken, Kb::GetString("S"_t, "Value"_t, buffer, size));
        EXPECT_EQ(Written(isTaken ? BytesIn(In<Ch>("abcd")) : "", sizeof buffer), buffer.Content());
    }
}

TYPED_TEST(StoredValues, AreDataOfAnyType) {
    using Kb = Exports<TypeParam>;
    const std::string text = BytesIn(std::wstring(L"ab\0", 3));
    const struct {
        const char* what;
        DWORD type;
        std::string stored, bytes;
    } rows[] = {{"binary", REG_BINARY, "data", "data"},
                {"nothing", REG_BINARY, "", ""},
                {"a number", REG_DWORD, {7, 0, 0, 0}, {7, 0, 0, 0}},
                {"a text, in its own form", REG_SZ, text, BytesIn(In<TypeParam>({'a', 'b', 0}))}};
    for (const auto& [what, type, stored, bytes] : rows) {
        SCOPED_TRACE(what);
        this->Store(type, stored);
        DWORD size = 99;
        EXPECT_TRUE(Kb::GetDataSize("S"_t, "Value"_t, &size));
        EXPECT_EQ(bytes.size(), size);

        Marked<BYTE, 9> buffer;
        size = 99;
        EXPECT_TRUE(Kb::GetData("S"_t, "Value"_t, bytes.size(), buffer, &size)) << "an exact fit";
        EXPECT_EQ(bytes.size(), size);
        EXPECT_EQ(Written(bytes, 9), buffer.Content());
        EXPECT_TRUE(Kb::GetData("S"_t, "Value"_t, 9, buffer, nullptr)) << "without a size";

        size = 99;
        EXPECT_TRUE(Kb::GetData("S"_t, "Value"_t, 0, nullptr, &size)) << "for the size alone";
        EXPECT_EQ(bytes.size(), size);
    }
    this->Store(REG_BINARY, "data");
    Marked<BYTE, 9> buffer;
    DWORD size = 99;
    EXPECT_FALSE(Kb::GetData("S"_t, "Value"_t, 3, buffer, &size)) << "one byte short";
    EXPECT_EQ(99u, size);
}

TYPED_TEST(StoredValues, AreNotHandedToMemoryThatCannotBeWritten) {
    using Ch = TypeParam;
    using Kb = Exports<Ch>;
    this->raw.Set(L"Number", 7u);
    this->StoreText("ab");
    for (void* memory :
         {static_cast<void*>(nullptr), static_cast<void*>(::GetModuleHandleA(nullptr))}) {
        SCOPED_TRACE(memory);
        EXPECT_FALSE(Kb::GetBool("S"_t, "Number"_t, static_cast<bool*>(memory)));
        EXPECT_FALSE(Kb::GetDWORD("S"_t, "Number"_t, static_cast<DWORD*>(memory)));
        EXPECT_FALSE(Kb::GetInt("S"_t, "Number"_t, static_cast<int*>(memory)));
        EXPECT_FALSE(Kb::GetString("S"_t, "Value"_t, static_cast<Ch*>(memory), 9));
        EXPECT_FALSE(Kb::GetDataSize("S"_t, "Number"_t, static_cast<DWORD*>(memory)));
        EXPECT_FALSE(Kb::GetBSTR("S"_t, "Value"_t, static_cast<BSTR*>(memory)));
        BSTR bstr = static_cast<BSTR>(memory);
        EXPECT_FALSE(Kb::GetBSTR("S"_t, "Value"_t, &bstr)) << "no text that is there";
        EXPECT_EQ(memory, bstr);
        Marked<BYTE, 4> data;
        EXPECT_TRUE(Kb::GetData("S"_t, "Number"_t, 4, data, static_cast<DWORD*>(memory)));
    }
    EXPECT_FALSE(Kb::GetData("S"_t, "Number"_t, 4, ::GetModuleHandleA(nullptr), nullptr));
    EXPECT_FALSE(Kb::SetData("S"_t, "Number"_t, 4, nullptr)) << "cannot be read";
    // The text would fit the part that can be written.
    auto* page = static_cast<BYTE*>(::VirtualAlloc(nullptr, 0x2000, MEM_RESERVE, PAGE_READWRITE));
    ::VirtualAlloc(page, 0x1000, MEM_COMMIT, PAGE_READWRITE);
    EXPECT_FALSE(Kb::GetString("S"_t, "Value"_t, reinterpret_cast<Ch*>(page + 0x1000 - 16), 17));
    ::VirtualFree(page, 0, MEM_RELEASE);
}

TYPED_TEST(StoredValues, AreWrittenWithTheirTypes) {
    using Ch = TypeParam;
    using Kb = Exports<Ch>;
    const auto expectStored = [this](DWORD type, const std::string& bytes) {
        const auto [storedType, storedBytes] = this->raw.Read(L"Value");
        EXPECT_EQ(type, storedType);
        EXPECT_EQ(Bytes(bytes), Bytes(storedBytes));
    };
    EXPECT_TRUE(Kb::SetBool("S"_t, "Value"_t, true));
    expectStored(REG_DWORD, {1, 0, 0, 0});
    EXPECT_TRUE(Kb::SetBool("S"_t, "Value"_t, false));
    expectStored(REG_DWORD, {0, 0, 0, 0});
    EXPECT_TRUE(Kb::SetDWORD("S"_t, "Value"_t, 0x80000001));
    expectStored(REG_DWORD, {1, 0, 0, '\x80'});
    EXPECT_TRUE(Kb::SetInt("S"_t, "Value"_t, -2));
    expectStored(REG_DWORD, {'\xfe', '\xff', '\xff', '\xff'});
    EXPECT_TRUE(Kb::SetData("S"_t, "Value"_t, 3, "\0\1\2"));
    expectStored(REG_BINARY, {0, 1, 2});

    const std::string ab = {'a', 0, 'b', 0, 0, 0}, none;
    EXPECT_TRUE(Kb::SetString("S"_t, "Value"_t, "ab"_t));
    expectStored(REG_SZ, ab);
    EXPECT_TRUE(Kb::SetString("S"_t, "Value"_t, ""_t));
    expectStored(REG_SZ, none);
    // What follows a zero is not stored.
    EXPECT_TRUE(Kb::SetTString("S"_t, "Value"_t, In<Ch>({'a', 'b', 0, 'c'})));
    expectStored(REG_SZ, ab);
    EXPECT_TRUE(Kb::SetString("S"_t, "Value"_t, nullptr));
    expectStored(REG_SZ, none);
    // The 8-bit form loses what the code page lacks.
    EXPECT_TRUE(Kb::SetBSTR("S"_t, "Value"_t, _bstr_t(L"\u00fc\u4e2d")));
    expectStored(REG_SZ, BytesIn(std::wstring(Pick<Ch>(L"\u00fc?", L"\u00fc\u4e2d"), 3)));
    EXPECT_TRUE(Kb::SetBSTR("S"_t, "Value"_t, nullptr));
    expectStored(REG_SZ, none);
}

TYPED_TEST(StoredValues, LieInTheirSectionsKey) {
    using Ch = TypeParam;
    using Kb = Exports<Ch>;
    const struct {
        const Ch *section, *name;
        std::string key;
        const wchar_t* value;
    } rows[] = {{nullptr, "Value"_t, "", L"Value"},
                {""_t, "Other"_t, "", L"Other"},
                {"A\\B\\C"_t, "Value"_t, "A\\B\\C", L"Value"},
                {"S"_t, nullptr, "S", L""},
                {"T"_t, ""_t, "T", L""}};
    DWORD value = 0;
    for (const auto& [section, name, key, valueName] : rows) {
        SCOPED_TRACE(Called("SetDWORD", section, name, ++value));
        EXPECT_TRUE(Kb::SetDWORD(section, name, value));
        EXPECT_EQ(value, RawKey(key).NumberOf(valueName));
        DWORD read = 0;
        EXPECT_TRUE(Kb::GetDWORD(section, name, &read));
        EXPECT_EQ(value, read);
    }
}

TYPED_TEST(StoredValues, LeaveNoHandleOpen) {
    using Kb = Exports<TypeParam>;
    this->StoreText("text");
    ExpectNoHandleLeak([this] {
        this->ExpectNumbers("S"_t, "Value"_t, {});
        this->ExpectTexts("S"_t, "Value"_t, ReadTexts{"tex", "text", "text"});
        EXPECT_TRUE(Kb::SetDWORD("S"_t, "Number"_t, 7));
        DWORD size = 0;
        EXPECT_TRUE(Kb::GetDataSize("S"_t, "Number"_t, &size));
        EXPECT_TRUE(Kb::GetData("S"_t, "Number"_t, 4, &size, nullptr));
    });
}

/// A text that another process lengthens after the library has asked for its size.
class GrowingText {
 public:
    explicit GrowingText(int growths) : growths_(growths) {
        now_ = this;
        Grow();
    }
    int Queries() const { return queries_; }

    template <class Ch>
    static LSTATUS WINAPI Query(HKEY key, const Ch* name, DWORD* reserved, DWORD* type, BYTE* data,
                                DWORD* bytes) {
        ++now_->queries_;
        if (data && now_->growths_-- > 0) now_->Grow();
        return Pick<Ch>(::RegQueryValueExA, ::RegQueryValueExW)(key, name, reserved, type, data,
                                                                bytes);
    }

 private:
    void Grow() { stored_.Set(L"Value", text_ += L'x'); }

    static inline GrowingText* now_;
    const RawKey stored_{"S"};
    std::wstring text_;
    int growths_;
    int queries_ = 0;
};

TYPED_TEST(StoredValues, AreReadAnewWhereATextGrowsMeanwhile) {
    using Ch = TypeParam;
    using Kb = Exports<Ch>;
    const ImportPatch query(Pick<Ch>("RegQueryValueExA", "RegQueryValueExW"),
                            GrowingText::Query<Ch>);
    const auto object = [] {
        Text<Ch> text;
        return Kb::GetTString("S"_t, "Value"_t, text);
    };
    const auto bstr = [] {
        _bstr_t before(L"before");
        BSTR text = before.GetBSTR();
        const bool isRead = Kb::GetBSTR("S"_t, "Value"_t, &text);
        if (isRead) ::SysFreeString(text);
        return isRead;
    };
    const auto buffer = [] {
        Ch text[5];
        return Kb::GetString("S"_t, "Value"_t, text, 5);
    };
    const struct {
        const char* what;
        std::function<bool()> isRead;
    } getters[] = {{"string object", object}, {"BSTR", bstr}, {"buffer", buffer}};
    for (const auto& [what, isRead] : getters) {
        SCOPED_TRACE(what);
        for (const int growths : {0, 1, 2}) {
            GrowingText text(growths);
            EXPECT_TRUE(isRead()) << growths;
            EXPECT_EQ(2 + 2 * growths, text.Queries()) << growths;
        }
        GrowingText always(INT_MAX);
        EXPECT_FALSE(isRead()) << "a text that never rests";
        EXPECT_GT(30, always.Queries());
    }
    GrowingText tooLong(3);
    EXPECT_FALSE(buffer()) << "grown until it does not fit";
    EXPECT_EQ(7, tooLong.Queries());
}

LSTATUS WINAPI DenyWriting(HKEY, const void*, DWORD, DWORD, const BYTE*, DWORD) {
    return ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI DenyCreation(HKEY, const void*, DWORD, void*, DWORD, REGSAM, SECURITY_ATTRIBUTES*,
                            HKEY*, DWORD*) {
    return ERROR_ACCESS_DENIED;
}

TYPED_TEST(StoredValues, TellWhereTheyCannotBeWritten) {
    using Ch = TypeParam;
    using Kb = Exports<Ch>;
    const auto expectDenied = [](const char* what) {
        SCOPED_TRACE(what);
        EXPECT_FALSE(Kb::SetBool("S"_t, "Value"_t, true));
        EXPECT_FALSE(Kb::SetDWORD("S"_t, "Value"_t, 7));
        EXPECT_FALSE(Kb::SetInt("S"_t, "Value"_t, 7));
        EXPECT_FALSE(Kb::SetString("S"_t, "Value"_t, "text"_t));
        EXPECT_FALSE(Kb::SetTString("S"_t, "Value"_t, In<Ch>("text")));
        EXPECT_FALSE(Kb::SetBSTR("S"_t, "Value"_t, _bstr_t(L"text")));
        EXPECT_FALSE(Kb::SetData("S"_t, "Value"_t, 4, "data"));
    };
    {
        const ImportPatch deny(Pick<Ch>("RegSetValueExA", "RegSetValueExW"), DenyWriting);
        expectDenied("the value");
    }
    {
        const ImportPatch deny(Pick<Ch>("RegCreateKeyExA", "RegCreateKeyExW"), DenyCreation);
        expectDenied("the section's key");
    }
    EXPECT_FALSE(this->raw.Has(L"Value"));
}

TYPED_TEST(StoredValues, NeedMemoryForABstr) {
    this->StoreText("text");
    const ImportPatch none(
        "SysAllocString", +[](const wchar_t*) WINAPI -> BSTR { return nullptr; });
    _bstr_t before(L"before");
    BSTR text = before.GetBSTR();
    EXPECT_FALSE(Exports<TypeParam>::GetBSTR("S"_t, "Value"_t, &text));
    EXPECT_EQ(before.GetBSTR(), text);
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

TEST(StoredValuesCalls, AreTheFewest) {
    const Watched open("RegOpenKeyExW", ::RegOpenKeyExW);
    const Watched query("RegQueryValueExW", ::RegQueryValueExW);
    const Watched create("RegCreateKeyExW", ::RegCreateKeyExW);
    const Watched set("RegSetValueExW", ::RegSetValueExW);
    const Watched close("RegCloseKey", ::RegCloseKey);
    DWORD value = 0;
    KB_SetDWORDW(L"S", L"N", 5);
    KB_GetDWORDW(L"S", L"N", &value);
    EXPECT_EQ(
        "\nRegCreateKeyExW 0 0 983103\nRegSetValueExW 0 4 4\nRegCloseKey"
        "\nRegOpenKeyExW 0 131097\nRegQueryValueExW\nRegCloseKey",
        calls);
}

TEST(StoredValuesCalls, TakeNoHeapForSectionsOfUpTo260Characters) {
    const std::wstring section = std::wstring(100, L's') + L'\\' + std::wstring(159, L's');
    const std::wstring longer = section + L's';
    DWORD value = 0;
    {
        const ImportPatch none(
            "malloc", +[](std::size_t) -> void* { return nullptr; }, "libstdc++-6.dll");
        EXPECT_TRUE(KB_SetDWORDW(section.c_str(), L"N", 5));
        EXPECT_TRUE(KB_GetDWORDW(section.c_str(), L"N", &value));
        EXPECT_FALSE(KB_SetDWORDW(longer.c_str(), L"N", 6)) << "needs memory for its path";
    }
    EXPECT_EQ(5u, value);
    EXPECT_TRUE(KB_SetDWORDW(longer.c_str(), L"N", 6));
    EXPECT_EQ(6u, RawKey(std::string(longer.begin(), longer.end())).NumberOf(L"N"));
}

}  // namespace
