#include <tests/com/registration.h>
#include <tests/support/trace_capture.h>

#include <new>

namespace {

using namespace kitbag::test;

struct ServerRegistration : Registration {};
struct ScriptedServerRegistration : ScriptedRegistration {};

HRESULT WINAPI TakeTypeLibrary(ITypeLib*, LPOLESTR, LPOLESTR) { return S_OK; }

std::string FileOf(const char* module) {
    char path[MAX_PATH];
    ::GetModuleFileNameA(::GetModuleHandleA(module), path, MAX_PATH);
    return path;
}

TEST_F(ServerRegistration, WritesThePageFactoryAndTakesItBack) {
    const ImportPatch typeLibrary("RegisterTypeLib", TakeTypeLibrary);
    const std::string expected = R"(|\CLSID)"
                                 R"(|\CLSID\{ID}|='Vidmoor page factory')"
                                 R"(|\CLSID\{ID}\InprocServer32|='FILE'|ThreadingModel='Apartment')"
                                 R"(|\CLSID\{ID}\ProgID|='Kitbag.KivPageFactory.1')"
                                 R"(|\CLSID\{ID}\Programmable)"
                                 R"(|\CLSID\{ID}\TypeLib|='{158702B0-E0E4-4270-87FD-658F293BAE5E}')"
                                 R"(|\CLSID\{ID}\VersionIndependentProgID|='Kitbag.KivPageFactory')"
                                 R"(|\Kitbag.KivPageFactory|='Vidmoor page factory')"
                                 R"(|\Kitbag.KivPageFactory\CLSID|='{ID}')"
                                 R"(|\Kitbag.KivPageFactory\CurVer|='Kitbag.KivPageFactory.1')"
                                 R"(|\Kitbag.KivPageFactory.1|='Vidmoor page factory')"
                                 R"(|\Kitbag.KivPageFactory.1\CLSID|='{ID}'|)";
    EXPECT_EQ(S_OK, ::DllRegisterServer());
    std::string written = std::regex_replace(
        Classes(), std::regex("\\{E58C6519-2F38-4027-9DEF-5E6D4033F561\\}"), "{ID}");
    const std::string file = FileOf("Kitbag.dll");
    EXPECT_EQ(expected, written.replace(written.find(file), file.size(), "FILE"));
    EXPECT_EQ(S_OK, ::DllUnregisterServer());
    EXPECT_EQ("|\\CLSID|", Classes());
    EXPECT_EQ(S_OK, ::DllUnregisterServer()) << "where nothing is registered";
}

TEST_F(ServerRegistration, CoversEveryClassOfALibraryByOneScript) {
    HMODULE library = ::LoadLibraryA("TwoClasses.dll");
    ASSERT_NE(nullptr, library);
    {
        const ImportPatch typeLibrary("RegisterTypeLib", TakeTypeLibrary, "TwoClasses.dll");
        EXPECT_EQ(S_OK, ::GetProcAddress(library, "DllRegisterServer")());
    }
    const std::string first = "{5F0B7C7E-6A1D-4B9E-9F3A-2D1C5B8E0A04}", written = Classes();
    const std::string second = "{5F0B7C7E-6A1D-4B9E-9F3A-2D1C5B8E0A05}";
    for (const std::string& expected :
         {"\\TwoClasses.First\\CLSID|='" + first, "\\TwoClasses.Second\\CLSID|='" + second,
          "\\CLSID\\" + first + "|='The first'", "\\CLSID\\" + second + "|='The second'"})
        EXPECT_NE(written.npos, written.find(expected)) << expected << " in\n" << written;
    EXPECT_EQ(S_OK, ::GetProcAddress(library, "DllUnregisterServer")());
    EXPECT_EQ("|\\CLSID|", Classes());
    ::FreeLibrary(library);
}

TEST_F(ScriptedServerRegistration, ReplacesWhatTheScriptNames) {
    script = "HKCR { A = s '%MODULE%|%CLSID%|%TYPELIB%|%PROGID%|%DESCRIPTION%' }";
    EXPECT_EQ(S_OK, ::DllRegisterServer());
    EXPECT_EQ("|\\A|='" + FileOf("Kitbag.dll") +
                  "|{E58C6519-2F38-4027-9DEF-5E6D4033F561}|{158702B0-E0E4-4270-87FD-658F293BAE5E}|"
                  "Kitbag.KivPageFactory|Vidmoor page factory'|",
              Classes());
}

void* WINAPI FindNoResource(HMODULE, LPCSTR, LPCSTR) { return nullptr; }
void* WINAPI LoadNoResource(HMODULE, HRSRC) { return nullptr; }
void* WINAPI LockNoResource(HGLOBAL) { return nullptr; }

TEST_F(ServerRegistration, NeedsItsScript) {
    const struct {
        const char* import;
        void* fake;
    } rows[] = {
        {"FindResourceA", reinterpret_cast<void*>(FindNoResource)},
        {"LoadResource", reinterpret_cast<void*>(LoadNoResource)},
        {"LockResource", reinterpret_cast<void*>(LockNoResource)},
    };
    for (const auto& [import, fake] : rows) {
        const ImportPatch patch(import, fake);
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_RESOURCE_DATA_NOT_FOUND), ::DllRegisterServer())
            << import;
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_RESOURCE_DATA_NOT_FOUND), ::DllUnregisterServer())
            << import;
    }
    EXPECT_EQ("|", Classes());
}

TEST_F(ScriptedServerRegistration, WritesNothingOfABrokenScript) {
    TraceCapture trace;
    script = "HKCR { Good }\nHKCR {\n{158702B0-E0E4-4270-87FD-658F293BAE5E} }";
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_DATA), ::DllRegisterServer());
    EXPECT_EQ("|", Classes());
    const std::string line = "UpdateClasses: Line 3 of the script wants a name\n";
    trace.Expect({line, line});
}

TEST_F(ScriptedServerRegistration, LeavesNoHalfBehind) {
    script = "HKCR { A { B } }";
    typeLibraryAnswer = TYPE_E_REGISTRYACCESS;
    EXPECT_EQ(TYPE_E_REGISTRYACCESS, ::DllRegisterServer());
    EXPECT_EQ("|", Classes());
}

LSTATUS WINAPI DeleteNothing(HKEY, LPCWSTR) { return ERROR_ACCESS_DENIED; }
HRESULT WINAPI LoadNothing(LPCOLESTR, REGKIND, ITypeLib**) { return TYPE_E_CANTLOADLIBRARY; }

TEST_F(ScriptedServerRegistration, AnswersTheFirstFailureWhenItIsTakenBack) {
    script = "HKCR { A }";
    ::DllRegisterServer();
    const ImportPatch noTypeLibrary("LoadTypeLibEx", LoadNothing);
    {
        const ImportPatch noDeletion("RegDeleteKeyW", DeleteNothing);
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), ::DllUnregisterServer()) << "of both";
    }
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, ::DllUnregisterServer()) << "of the type library alone";
    EXPECT_EQ("|", Classes());
}

void* NoMemory(std::size_t) { throw std::bad_alloc(); }

TEST_F(ScriptedServerRegistration, AnswersThatMemoryRanOut) {
    script = "HKCR { A }";
    const ImportPatch memory("_Znwj", NoMemory);
    EXPECT_EQ(E_OUTOFMEMORY, ::DllRegisterServer());
    EXPECT_EQ(E_OUTOFMEMORY, ::DllUnregisterServer());
}

}  // namespace
