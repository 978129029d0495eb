// COM and script hosts read the registry of all programs, so this test really registers the library
// there, and takes it back at its end.

#include <tests/pages/doubles.h>
#include <tests/support/temporary_folder.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

using namespace kitbag::test;

/// What a program writes that must succeed.
std::string Output(const std::string& command) {
    const TemporaryFolder folder;
    const std::string file = (folder / "output.txt").string();
    EXPECT_EQ(0, std::system((command + " > " + file).c_str())) << command;
    std::ifstream output(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(output), {}};
}

constexpr char kListClasses[] = "reg query HKCR /s";

constexpr char kScript[] = R"(
Set factory = CreateObject("Kitbag.KivPageFactory")
factory.SetResourceModule 0
factory.SetDefaultObject Nothing
WScript.Echo factory.AddPage("Main.page"), factory.addpage("Other.page"), factory.GetPageCount, _
    factory.GetPage(1) Is Nothing, factory.LoadResourceString(0, 399)
On Error Resume Next
factory.CreatePage 0, Nothing, Nothing
WScript.Echo Hex(Err.Number)
)";

TEST(RegisteredLibrary, ServesProgramsAndScriptsAndLeavesNothingBehind) {
    char library[MAX_PATH];
    ::GetModuleFileNameA(::LoadLibraryA("Kitbag.dll"), library, sizeof library);
    const std::string registerLibrary = std::string("regsvr32 /s ") + library;
    const TemporaryFolder folder;
    const std::string script = (folder / "pages.vbs").string();
    std::ofstream(script) << kScript;

    Output(registerLibrary + " /u");
    const std::string before = Output(kListClasses);
    Output(registerLibrary);
    ::CoInitialize(nullptr);
    ComPtr<IKivPageFactory> factory;
    EXPECT_EQ(S_OK, ::CoCreateInstance(CLSID_KivPageFactory, nullptr, CLSCTX_INPROC_SERVER,
                                       IID_PPV_ARGS(&factory)));
    EXPECT_EQ("0 1 2 -1 Yes\r\n80004003\r\n", Output("cscript //nologo " + script));
    // Compared as a whole: all classes of the system are too much to print.
    EXPECT_TRUE(before != Output(kListClasses));
    Output(registerLibrary + " /u");
    EXPECT_TRUE(before == Output(kListClasses));
}

}  // namespace
