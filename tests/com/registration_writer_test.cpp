#include <tests/com/registration.h>

#include <cwchar>

namespace {

using namespace kitbag::test;

struct RegistrationWriter : ScriptedRegistration {};

TEST_F(RegistrationWriter, WritesWhatTheScriptSaysAndTakesItBack) {
    const struct {
        const char *about, *entries, *existing, *written, *takenBack;
    } rows[] = {
        {"keys and values", "A = s x { val N = d 2 B val T = s y } C", "",
         R"(|\A|='x'|N=2 (0x2)|T='y'|\A\B|\C|)", "|"},
        {"deleted keys stay deleted", "A { Delete CLSID }", R"(\A\CLSID\Old)", R"(|\A|)", "|"},
        {"own keys go with all in them", "ForceRemove A { B }", R"(\A\Old)", R"(|\A|\A\B|)", "|"},
        {"a key stays with what others put there", "A = s x { B val N = d 1 }", R"(\A\Foreign)",
         R"(|\A|='x'|N=1 (0x1)|\A\B|\A\Foreign|)", R"(|\A|\A\Foreign|)"},
        {"a shared key stays, empty too", "NoRemove D = s x { ForceRemove CLSID { E } }", "",
         R"(|\D|='x'|\D\CLSID|\D\CLSID\E|)", R"(|\D|)"},
    };
    for (const auto& [about, entries, existing, written, takenBack] : rows) {
        SCOPED_TRACE(about);
        ::RegDeleteTreeA(classes.Get(), nullptr);
        RawKey(std::string("Classes") + existing);
        script = std::string("HKCR {") + entries + '}';
        EXPECT_EQ(S_OK, ::DllRegisterServer());
        EXPECT_EQ(written, Classes());
        EXPECT_EQ(S_OK, ::DllUnregisterServer());
        EXPECT_EQ(takenBack, Classes());
    }
}

LSTATUS WINAPI RefuseNumbers(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data,
                             DWORD size) {
    if (type == REG_DWORD) return ERROR_ACCESS_DENIED;
    return ::RegSetValueExW(key, name, 0, type, data, size);
}

TEST_F(RegistrationWriter, StopsAtItsFirstFailure) {
    const ImportPatch refusal("RegSetValueExW", RefuseNumbers);
    // What is written goes again with the failed registration, but for a shared key.
    script = "HKCR { NoRemove A { val N = d 1 NoRemove Inner } NoRemove B } HKCR { NoRemove C }";
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), ::DllRegisterServer());
    EXPECT_EQ(R"(|\A|)", Classes());
}

LSTATUS WINAPI RefuseStuck(HKEY parent, LPCWSTR name) {
    return std::wcscmp(name, L"Stuck") ? ::RegDeleteKeyW(parent, name) : ERROR_ACCESS_DENIED;
}
HRESULT WINAPI LoadNothing(LPCOLESTR, REGKIND, ITypeLib**) { return TYPE_E_CANTLOADLIBRARY; }

TEST_F(RegistrationWriter, TakesBackWhatItCanAndAnswersTheFirstFailure) {
    const ImportPatch refusal("RegDeleteKeyW", RefuseStuck);
    const ImportPatch noTypeLibrary("LoadTypeLibEx", LoadNothing);
    script = "HKCR { ForceRemove A ForceRemove Stuck B { ForceRemove Stuck C } D } HKCR { E }";
    for (const char* key : {"A", "Stuck", "B\\Stuck", "B\\C", "D", "E"})
        RawKey(std::string("Classes\\") + key);
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), ::DllUnregisterServer());
    EXPECT_EQ(R"(|\B|\B\Stuck|\Stuck|)", Classes());
}

}  // namespace
