// COM and script hosts read the registry of all programs, so these tests really register the
// library there, and take it back at their end.

#include <comdef.h>
#include <comutil.h>
#include <tests/pages/doubles.h>
#include <tests/pages/dump_key.h>
#include <tests/support/temporary_folder.h>

#include <fstream>

namespace {

using namespace kitbag::test;

/// Runs a program and waits for it; its exit code.
DWORD RunProgram(std::string command) {
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    DWORD code = MAXDWORD;
    if (!::CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, "C:\\",
                          &startup, &process))
        return code;
    EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(process.hProcess, 60000)) << command;
    ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return code;
}

/// The library is registered with the system's own tool while this lives.
class Registered {
 public:
    Registered() {
        char file[MAX_PATH];
        ::GetModuleFileNameA(::LoadLibraryA("Kitbag.dll"), file, sizeof file);
        file_ = file;
        EXPECT_EQ(0u, RunProgram("regsvr32 /s \"" + file_ + '"'));
    }
    ~Registered() { EXPECT_EQ(0u, RunProgram("regsvr32 /s /u \"" + file_ + '"')); }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;

 private:
    std::string file_;
};

TEST(RegisteredLibrary, ServesComAndLeavesNothingBehind) {
    const Apartment apartment;
    const std::string before = DumpKey(HKEY_CLASSES_ROOT);
    {
        const Registered registered;
        CLSID id = {};
        ASSERT_EQ(S_OK, ::CLSIDFromProgID(L"Kitbag.KivPageFactory", &id));
        EXPECT_EQ(CLSID_KivPageFactory, id);
        ComPtr<IKivPageFactory> factory;
        ASSERT_EQ(S_OK,
                  ::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&factory)));
        EXPECT_EQ(S_OK, factory->AddPage(_bstr_t(L"Main.page"), nullptr));
        ComPtr<ITypeLib> typeLibrary;
        EXPECT_EQ(S_OK, ::LoadRegTypeLib(LIBID_Kitbag, 1, 0, 0, &typeLibrary));
    }
    // Compared as a whole: all classes of the system are too much to print.
    EXPECT_TRUE(before == DumpKey(HKEY_CLASSES_ROOT));
}

TEST(RegisteredLibrary, ServesScripts) {
    const TemporaryFolder folder;
    const std::string script = (folder / "pages.vbs").string();
    std::ofstream(script) << R"(
Sub Check(number, condition)
    If Not condition Then WScript.Quit number
End Sub
Set factory = CreateObject("Kitbag.KivPageFactory")
Check 1, factory.GetPageCount() = 0
Check 2, factory.AddPage("Main.page") = 0
Check 3, factory.addpage("Other.page") = 1
Check 4, factory.GetPageCount() = 2
Check 5, factory.GetPage(1) Is Nothing
Check 6, factory.LoadResourceString(0, 399) = "Yes"
factory.SetResourceModule 0
factory.SetDefaultObject factory
factory.SetDefaultObject Nothing
On Error Resume Next
factory.GetPage 2
Check 7, Err.Number = 5
Err.Clear
factory.CreatePage 0, Nothing, Nothing
Check 8, Err.Number = &H80004003
)";
    const Registered registered;
    EXPECT_EQ(0u, RunProgram("cscript //nologo \"" + script + '"'));
}

}  // namespace
