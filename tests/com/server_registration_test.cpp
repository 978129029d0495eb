#include <gmock/gmock.h>
#include <tests/com/registration.h>

#include <new>

namespace {

using namespace kitbag::test;
using testing::HasSubstr;

struct ServerRegistration : Registration {};
struct ScriptedServerRegistration : ScriptedRegistration {};

HRESULT WINAPI TakeTypeLibrary(ITypeLib*, LPOLESTR, LPOLESTR) { return S_OK; }

TEST_F(ServerRegistration, WritesThePageFactoryAndTakesItBack) {
    const ImportPatch typeLibrary("RegisterTypeLib", TakeTypeLibrary);
    const std::regex id("E58C6519-2F38-4027-9DEF-5E6D4033F561"), folder("'[A-Z]:[^']*\\\\");
    EXPECT_EQ(S_OK, ::DllRegisterServer());
    EXPECT_EQ(R"(|\CLSID)"
              R"(|\CLSID\{ID}|='Vidmoor page factory')"
              R"(|\CLSID\{ID}\InprocServer32|='Kitbag.dll'|ThreadingModel='Apartment')"
              R"(|\CLSID\{ID}\ProgID|='Kitbag.KivPageFactory.1')"
              R"(|\CLSID\{ID}\Programmable)"
              R"(|\CLSID\{ID}\TypeLib|='{158702B0-E0E4-4270-87FD-658F293BAE5E}')"
              R"(|\CLSID\{ID}\VersionIndependentProgID|='Kitbag.KivPageFactory')"
              R"(|\Kitbag.KivPageFactory|='Vidmoor page factory')"
              R"(|\Kitbag.KivPageFactory\CLSID|='{ID}')"
              R"(|\Kitbag.KivPageFactory\CurVer|='Kitbag.KivPageFactory.1')"
              R"(|\Kitbag.KivPageFactory.1|='Vidmoor page factory')"
              R"(|\Kitbag.KivPageFactory.1\CLSID|='{ID}'|)",
              std::regex_replace(std::regex_replace(Classes(), id, "ID"), folder, "'"));
    EXPECT_EQ(S_OK, ::DllUnregisterServer());
    EXPECT_EQ(R"(|\CLSID|)", Classes());
    EXPECT_EQ(S_OK, ::DllUnregisterServer()) << "where nothing is registered";
}

TEST_F(ServerRegistration, CoversEveryClassOfALibraryByOneScript) {
    HMODULE library = ::LoadLibraryA("TwoClasses.dll");
    ASSERT_NE(nullptr, library);
    {
        const ImportPatch typeLibrary("RegisterTypeLib", TakeTypeLibrary, "TwoClasses.dll");
        EXPECT_EQ(S_OK, ::GetProcAddress(library, "DllRegisterServer")());
    }
    EXPECT_THAT(Classes(),
                AllOf(HasSubstr(R"(First\CLSID|='{5F0B7C7E-6A1D-4B9E-9F3A-2D1C5B8E0A04}')"),
                      HasSubstr(R"(Second\CLSID|='{5F0B7C7E-6A1D-4B9E-9F3A-2D1C5B8E0A05}')"),
                      HasSubstr("0A04}|='The first'"), HasSubstr("0A05}|='The second'")));
    EXPECT_EQ(S_OK, ::GetProcAddress(library, "DllUnregisterServer")());
    EXPECT_EQ(R"(|\CLSID|)", Classes());
    ::FreeLibrary(library);
}

DWORD WINAPI TellFile(HMODULE, LPWSTR path, DWORD) {
    return static_cast<DWORD>(::lstrlenW(::lstrcpyW(path, L"C:\\%PROGID%\\Kitbag.dll")));
}
HRESULT WINAPI LoadTypeLibrary(LPCOLESTR, REGKIND kind, ITypeLib** library) {
    return ::LoadTypeLibEx(L"Kitbag.dll", kind, library);
}

TEST_F(ScriptedServerRegistration, ReplacesWhatTheScriptNamesButOnce) {
    const ImportPatch file("GetModuleFileNameW", TellFile), load("LoadTypeLibEx", LoadTypeLibrary);
    script = "HKCR { %PROGID% = s '%MODULE%|%CLSID%|%TYPELIB%|%PROGID%|%DESCRIPTION%' }";
    EXPECT_EQ(S_OK, ::DllRegisterServer());
    EXPECT_EQ(
        L"C:\\%PROGID%\\Kitbag.dll|{E58C6519-2F38-4027-9DEF-5E6D4033F561}|"
        L"{158702B0-E0E4-4270-87FD-658F293BAE5E}|Kitbag.KivPageFactory|Vidmoor page factory",
        RawKey("Classes\\Kitbag.KivPageFactory").TextOf(nullptr));
}

void* WINAPI FindNoResource(HMODULE, LPCSTR, LPCSTR) { return nullptr; }
void* WINAPI LoadNoResource(HMODULE, HRSRC) { return nullptr; }
void* WINAPI LockNoResource(HGLOBAL) { return nullptr; }
HRESULT WINAPI LoadNothing(LPCOLESTR, REGKIND, ITypeLib**) { return TYPE_E_CANTLOADLIBRARY; }
void* NoMemory(std::size_t) { throw std::bad_alloc(); }

TEST_F(ScriptedServerRegistration, LeavesNothingBehindWhereItFails) {
    script = "HKCR { A { B } }";
    const auto fail = [](const char* import, auto* fake, HRESULT expected) {
        SCOPED_TRACE(import);
        {
            const ImportPatch patch(import, fake);
            EXPECT_EQ(expected, ::DllUnregisterServer());
            EXPECT_EQ(expected, ::DllRegisterServer());
        }
        EXPECT_EQ("|", Classes());
    };
    const HRESULT noScript = HRESULT_FROM_WIN32(ERROR_RESOURCE_DATA_NOT_FOUND);
    fail("FindResourceA", FindNoResource, noScript);
    fail("LoadResource", LoadNoResource, noScript);
    fail("LockResource", LockNoResource, noScript);
    fail("LoadTypeLibEx", LoadNothing, TYPE_E_CANTLOADLIBRARY);
    fail("_Znwj", NoMemory, E_OUTOFMEMORY);
}

}  // namespace
