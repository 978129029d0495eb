// COM and script hosts read the registry of all programs, so this test really registers the library
// there, and takes it back at its end.

#include <tests/pages/doubles.h>
#include <tests/support/temporary_folder.h>

#include <cstdio>
#include <fstream>

namespace {

using namespace kitbag::test;

/// What a program writes that must succeed.
std::string Output(const std::string& command) {
    std::string output;
    FILE* const pipe = ::_popen(command.c_str(), "rb");
    for (int next; (next = std::fgetc(pipe)) != EOF;) output += static_cast<char>(next);
    EXPECT_EQ(0, ::_pclose(pipe)) << command;
    return output;
}

constexpr char kListClasses[] = "reg query HKCR /s";

constexpr char kScript[] = R"(
Set factory = CreateObject("Kitbag.KivPageFactory")
factory.SetResourceModule 0
factory.SetDefaultObject factory
factory.SetDefaultObject Nothing
WScript.Echo factory.GetPageCount(), factory.AddPage("Main.page"), factory.addpage("Other.page"), _
    factory.GetPageCount(), factory.GetPage(1) Is Nothing, factory.LoadResourceString(0, 399)
On Error Resume Next
factory.GetPage 2
WScript.Echo Err.Number
factory.CreatePage 0, Nothing, Nothing
WScript.Echo Hex(Err.Number)
)";

TEST(RegisteredLibrary, ServesProgramsAndScriptsAndLeavesNothingBehind) {
    char library[MAX_PATH];
    ::GetModuleFileNameA(::LoadLibraryA("Kitbag.dll"), library, sizeof library);
    const TemporaryFolder folder;
    const std::string script = (folder / "pages.vbs").string();
    std::ofstream(script) << kScript;

    Output(std::string("regsvr32 /s /u ") + library);
    const std::string before = Output(kListClasses);
    Output(std::string("regsvr32 /s ") + library);
    ::CoInitialize(nullptr);
    ComPtr<IKivPageFactory> factory;
    EXPECT_EQ(S_OK, ::CoCreateInstance(CLSID_KivPageFactory, nullptr, CLSCTX_INPROC_SERVER,
                                       IID_PPV_ARGS(&factory)));
    EXPECT_EQ("0 0 1 2 -1 Yes\r\n5\r\n80004003\r\n", Output("cscript //nologo " + script));
    // Compared as a whole: all classes of the system are too much to print.
    EXPECT_TRUE(before != Output(kListClasses));
    Output(std::string("regsvr32 /s /u ") + library);
    EXPECT_TRUE(before == Output(kListClasses));
}

}  // namespace
