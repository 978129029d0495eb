// The typed settings and the dump against the same system calls written by hand.

#include <bench/benches.h>
#include <kitbag/registry/dump.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/registry/tree.h>
#include <tests/support/import_patch.h>
#include <tests/support/text_forms.h>

#include <string>
#include <type_traits>

namespace kitbag::bench {

namespace {

using test::ImportPatch;
using test::Text;
using test::operator""_t;

/// A key that is opened for one access, as a caller without the library would write it.
template <class Ch>
struct Bare {
    static constexpr const Ch* kPath =
        "Software\\Tarnwick\\Vidmoor\\Configuration\\Bench\\Section"_t;

    static bool Open(HKEY& key) {
        return test::Pick<Ch>(::RegOpenKeyExA, ::RegOpenKeyExW)(HKEY_LOCAL_MACHINE, kPath, 0,
                                                                KEY_READ, &key) == ERROR_SUCCESS;
    }
    static bool Create(HKEY& key) {
        return test::Pick<Ch>(::RegCreateKeyExA, ::RegCreateKeyExW)(
                   HKEY_LOCAL_MACHINE, kPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                   nullptr) == ERROR_SUCCESS;
    }
    static LSTATUS Query(HKEY key, const Ch* name, DWORD* type, void* data, DWORD* bytes) {
        return test::Pick<Ch>(::RegQueryValueExA, ::RegQueryValueExW)(
            key, name, nullptr, type, static_cast<BYTE*>(data), bytes);
    }
    static LSTATUS Set(HKEY key, const Ch* name, DWORD type, const void* data, std::size_t bytes) {
        return test::Pick<Ch>(::RegSetValueExA, ::RegSetValueExW)(
            key, name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(bytes));
    }

    static bool GetNumber(const Ch* name, DWORD* value) {
        HKEY key = nullptr;
        if (!Open(key)) return false;
        DWORD type = 0, bytes = sizeof *value, number = 0;
        const LSTATUS status = Query(key, name, &type, &number, &bytes);
        ::RegCloseKey(key);
        if (status != ERROR_SUCCESS || type != REG_DWORD || bytes != sizeof number) return false;
        *value = number;
        return true;
    }
    static bool SetNumber(const Ch* name, DWORD value) {
        HKEY key = nullptr;
        if (!Create(key)) return false;
        const LSTATUS status = Set(key, name, REG_DWORD, &value, sizeof value);
        ::RegCloseKey(key);
        return status == ERROR_SUCCESS;
    }
    static bool GetText(const Ch* name, std::basic_string<Ch>& text) {
        HKEY key = nullptr;
        if (!Open(key)) return false;
        DWORD type = 0, bytes = 0;
        LSTATUS status = Query(key, name, &type, nullptr, &bytes);
        if (status == ERROR_SUCCESS && type == REG_SZ && bytes > 0) {
            std::basic_string<Ch> read(bytes / sizeof(Ch), Ch{});
            status = Query(key, name, nullptr, read.data(), &bytes);
            read.pop_back();
            text = std::move(read);
        }
        ::RegCloseKey(key);
        return status == ERROR_SUCCESS;
    }
    static bool SetText(const Ch* name, const std::basic_string<Ch>& text) {
        HKEY key = nullptr;
        if (!Create(key)) return false;
        const LSTATUS status = Set(key, name, REG_SZ, text.c_str(), text.size() * sizeof(Ch));
        ::RegCloseKey(key);
        return status == ERROR_SUCCESS;
    }
};

template <class Function>
Calls Repeat(Function function) {
    return [function](int count) {
        for (int i = 0; i < count; ++i) function();
    };
}

template <class Ch>
void CompareForms(std::vector<Result>& results) {
    const auto name = [](const char* function) {
        return std::string(function) + test::Pick<Ch>("A", "W");
    };
    using Kb = test::Exports<Ch>;
    const Ch* const section = "Bench\\Section"_t;
    static const Text<Ch> written("C:\\Media\\Recordings\\Series and films"_t);
    static Text<Ch> read;
    static std::basic_string<Ch> readBare;
    static DWORD value = 0;
    const auto compare = [&](const char* function, const Calls& library, const Calls& bare) {
        results.push_back(
            Measure(Comparison{name(function), library, "the bare calls", bare, 1.02}));
    };
    compare("KB_SetDWORD", Repeat([=] { Kb::SetDWORD(section, "Number"_t, 7); }),
            Repeat([] { Bare<Ch>::SetNumber("Number"_t, 7); }));
    compare("KB_GetDWORD", Repeat([=] { Kb::GetDWORD(section, "Number"_t, &value); }),
            Repeat([] { Bare<Ch>::GetNumber("Number"_t, &value); }));
    compare("KB_SetTString", Repeat([=] { Kb::SetTString(section, "Text"_t, written); }),
            Repeat([] { Bare<Ch>::SetText("Text"_t, written); }));
    compare("KB_GetTString", Repeat([=] { Kb::GetTString(section, "Text"_t, read); }),
            Repeat([] { Bare<Ch>::GetText("Text"_t, readBare); }));
}

LSTATUS WINAPI NoOpen(HKEY, LPCSTR, DWORD, REGSAM, PHKEY key) {
    *key = reinterpret_cast<HKEY>(4);
    return ERROR_SUCCESS;
}
LSTATUS WINAPI NoCreate(HKEY, LPCSTR, DWORD, LPSTR, DWORD, REGSAM, LPSECURITY_ATTRIBUTES, PHKEY key,
                        LPDWORD) {
    *key = reinterpret_cast<HKEY>(4);
    return ERROR_SUCCESS;
}
LSTATUS WINAPI NoQuery(HKEY, LPCSTR, LPDWORD, LPDWORD type, LPBYTE, LPDWORD) {
    *type = REG_DWORD;
    return ERROR_SUCCESS;
}
LSTATUS WINAPI NoSet(HKEY, LPCSTR, DWORD, DWORD, const BYTE*, DWORD) { return ERROR_SUCCESS; }
LSTATUS WINAPI NoClose(HKEY) { return ERROR_SUCCESS; }

/// What the library itself costs: the registry answers at once.
void WithoutTheRegistry(std::vector<Result>& results) {
    const ImportPatch open("RegOpenKeyExA", NoOpen), create("RegCreateKeyExA", NoCreate);
    const ImportPatch query("RegQueryValueExA", NoQuery), set("RegSetValueExA", NoSet);
    const ImportPatch close("RegCloseKey", NoClose);
    constexpr double kBound = 150;
    static DWORD value = 0;
    results.push_back(Measure(
        Absolute{"KB_GetDWORDA, registry answering at once",
                 Repeat([] { KB_GetDWORDA("Bench\\Section", "Number", &value); }), kBound}));
    results.push_back(
        Measure(Absolute{"KB_SetDWORDA, registry answering at once",
                         Repeat([] { KB_SetDWORDA("Bench\\Section", "Number", 7); }), kBound}));
}

/// The calls of a dump, and nothing else.
template <class Ch>
void Enumerate() {
    HKEY key = nullptr;
    if (!Bare<Ch>::Open(key)) return;
    Ch name[256];
    BYTE data[256];
    for (DWORD index = 0;; ++index) {
        DWORD length = 256, type = 0, bytes = sizeof data;
        if (test::Pick<Ch>(::RegEnumValueA, ::RegEnumValueW)(key, index, name, &length, nullptr,
                                                             &type, data, &bytes))
            break;
    }
    ::RegCloseKey(key);
}

/// Of a section that holds nothing but 10,000 values, texts and numbers in turn.
template <class Ch>
Result Dump() {
    for (int i = 0; i < 10000; i += 2) {
        const std::string name = "Value " + std::to_string(i);
        KB_SetTStringA("Bench\\Section", name.c_str(), "C:\\Media\\Recordings\\Series and films");
        KB_SetDWORDA("Bench\\Section", (name + " too").c_str(), 1000u + static_cast<DWORD>(i));
    }
    const auto dump = [] {
        Text<Ch> output;
        test::Exports<Ch>::DumpRegistry("Bench\\Section"_t, output);
        Keep(output);
    };
    const Result result = Measure(
        Comparison{std::string("KB_DumpRegistry") + test::Pick<Ch>("A", "W") + ", 10,000 values",
                   Repeat(dump), "a bare enumeration", Repeat(Enumerate<Ch>), 1.2});
    KB_DeleteSectionA("Bench");
    return result;
}

}  // namespace

std::vector<Result> MeasureRegistry() {
    std::vector<Result> results;
    CompareForms<char>(results);
    CompareForms<wchar_t>(results);
    WithoutTheRegistry(results);
    results.push_back(Dump<char>());
    results.push_back(Dump<wchar_t>());
    return results;
}

}  // namespace kitbag::bench
