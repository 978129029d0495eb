// COM and script hosts read the registry of all programs, so these tests really register the
// library there, and take it back at their end.

#include <tests/pages/doubles.h>
#include <tests/support/temporary_folder.h>

#include <fstream>
#include <iterator>

namespace {

using namespace kitbag::test;

class RegisteredLibrary : public testing::Test {
 protected:
    /// The exit code of a program.
    static DWORD Execute(std::string command) {
        STARTUPINFOA startup = {};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process = {};
        DWORD code = MAXDWORD;
        ::CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, "C:\\",
                         &startup, &process);
        ::WaitForSingleObject(process.hProcess, 60000);
        ::GetExitCodeProcess(process.hProcess, &code);
        return code;
    }
    void Register(const std::string& option) {
        char file[MAX_PATH];
        ::GetModuleFileNameA(::LoadLibraryA("Kitbag.dll"), file, sizeof file);
        EXPECT_EQ(0u, Execute("regsvr32 /s " + option + " \"" + file + '"'));
    }
    /// Everything below HKEY_CLASSES_ROOT, as the system's own tool writes it.
    std::string Classes() {
        const std::string path = (folder_ / "classes.reg").string();
        EXPECT_EQ(0u, Execute("reg export HKCR \"" + path + "\" /y"));
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    RegisteredLibrary() { Register(""); }
    ~RegisteredLibrary() override { Register("/u"); }

    TemporaryFolder folder_;
};

TEST_F(RegisteredLibrary, ServesComAndLeavesNothingBehind) {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CLSID id = {};
    EXPECT_EQ(S_OK, ::CLSIDFromProgID(L"Kitbag.KivPageFactory", &id));
    EXPECT_EQ(CLSID_KivPageFactory, id);
    ComPtr<IKivPageFactory> factory;
    EXPECT_EQ(S_OK, ::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&factory)));
    Register("/u");
    const std::string without = Classes();
    Register("");
    // Compared as a whole: all classes of the system are too much to print.
    EXPECT_TRUE(without != Classes());
    Register("/u");
    EXPECT_TRUE(without == Classes());
}

TEST_F(RegisteredLibrary, ServesScripts) {
    const std::string script = (folder_ / "pages.vbs").string();
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
    EXPECT_EQ(0u, Execute("cscript //nologo \"" + script + '"'));
}

}  // namespace
