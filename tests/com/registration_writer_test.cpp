#include <tests/com/registration.h>

#include <cwchar>

namespace {

using namespace kitbag::test;

struct RegistrationWriter : ScriptedRegistration {};

TEST_F(RegistrationWriter, WritesWhatTheScriptSaysAndTakesItBack) {
    const struct {
        const char* about;
        const char* entries;
        const char* existing;
        const char* written;
        const char* takenBack;
    } rows[] = {
        {"keys and values", "A = s x { val N = d 0x10 B val M = d 10 val T = s y } C", "",
         "|\\A|='x'|M=10 (0xa)|N=16 (0x10)|T='y'|\\A\\B|\\C|", "|"},
        {"a deleted key stays deleted", "Delete Old", "\\Old\\Older", "|", "|"},
        {"an own key goes with what is in it", "ForceRemove A { B }", "\\A\\Old", "|\\A|\\A\\B|",
         "|"},
        {"a key stays with what others put there", "A = s x { B val N = d 1 }", "\\A\\Foreign",
         "|\\A|='x'|N=1 (0x1)|\\A\\B|\\A\\Foreign|", "|\\A|\\A\\Foreign|"},
        {"a shared key stays, empty too", "NoRemove D = s x { E }", "", "|\\D|='x'|\\D\\E|",
         "|\\D|"},
        {"what all programs share stays", "ForceRemove clsid { A } TypeLib { B }",
         "\\CLSID\\Foreign", "|\\CLSID|\\CLSID\\A|\\CLSID\\Foreign|\\TypeLib|\\TypeLib\\B|",
         "|\\CLSID|\\CLSID\\Foreign|\\TypeLib|"},
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

TEST_F(RegistrationWriter, StoresTextsWithTheirTerminators) {
    script = "HKCR { A = s Text { val Empty = s '' } }";
    EXPECT_EQ(S_OK, ::DllRegisterServer());
    DWORD type = REG_NONE, bytes = 0;
    ::RegGetValueW(classes.Get(), L"A", L"", RRF_RT_ANY | RRF_NOEXPAND, &type, nullptr, &bytes);
    EXPECT_EQ(DWORD{REG_SZ}, type);
    EXPECT_EQ(5 * sizeof(wchar_t), bytes);
    ::RegGetValueW(classes.Get(), L"A", L"Empty", RRF_RT_ANY, nullptr, nullptr, &bytes);
    EXPECT_EQ(sizeof(wchar_t), bytes);
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
    EXPECT_EQ("|\\A|", Classes());
}

LSTATUS WINAPI RefuseStuck(HKEY parent, LPCWSTR name) {
    return std::wcscmp(name, L"Stuck") ? ::RegDeleteKeyW(parent, name) : ERROR_ACCESS_DENIED;
}

TEST_F(RegistrationWriter, TakesBackWhatItCanAndAnswersTheFirstFailure) {
    const ImportPatch refusal("RegDeleteKeyW", RefuseStuck);
    script = "HKCR { ForceRemove A ForceRemove Stuck B { ForceRemove Stuck C } D } HKCR { E }";
    for (const char* key : {"A", "Stuck", "B\\Stuck", "B\\C", "D", "E"})
        RawKey(std::string("Classes\\") + key);
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), ::DllUnregisterServer());
    EXPECT_EQ("|\\B|\\B\\Stuck|\\Stuck|", Classes());
}

int dummy;
HKEY const kNotOpened = reinterpret_cast<HKEY>(&dummy);
bool isClosed = false;

LSTATUS WINAPI FailToOpen(HKEY, LPCWSTR, DWORD, REGSAM, HKEY* key) {
    return *key = kNotOpened, ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI FailToCreate(HKEY, LPCWSTR, DWORD, LPWSTR, DWORD, REGSAM, SECURITY_ATTRIBUTES*,
                            HKEY* key, DWORD*) {
    return *key = kNotOpened, ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI NoteClosing(HKEY key) {
    isClosed |= key == kNotOpened;
    return key == kNotOpened ? ERROR_SUCCESS : ::RegCloseKey(key);
}

TEST_F(RegistrationWriter, DoesNotCloseWhatAFailedOpenLeft) {
    const ImportPatch open("RegOpenKeyExW", FailToOpen);
    const ImportPatch create("RegCreateKeyExW", FailToCreate);
    const ImportPatch close("RegCloseKey", NoteClosing);
    script = "HKCR { A { B } }";
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), ::DllRegisterServer());
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), ::DllUnregisterServer());
    EXPECT_FALSE(isClosed);
}

}  // namespace
