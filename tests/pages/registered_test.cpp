// COM and script hosts read the registry of all programs, so this test really registers the library
// there, and takes it back at its end. Its program links no function of the library.

#include <tests/pages/doubles.h>
#include <tests/support/temporary_folder.h>

#include <cstdlib>
#include <fstream>

namespace {

using namespace kitbag::test;

const TemporaryFolder folder;

/// What a program writes that must succeed.
std::string Output(const std::string& command) {
    const std::string file = (folder / "output.txt").string();
    EXPECT_EQ(0, std::system((command + " > " + file).c_str())) << command;
    std::ifstream output(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(output), {}};
}

constexpr char kScript[] = R"(Set p = CreateObject("Kitbag.KivPageFactory")
WScript.Echo p.AddPage("0"), p.getpagecount, p.GetPage(0) Is Nothing, p.LoadResourceString(0,399))";

TEST(RegisteredLibrary, ServesProgramsAndScriptsAndLeavesNothingBehind) {
    const auto library = std::filesystem::path(_pgmptr).replace_filename("Kitbag.dll").string();
    const std::string script = (folder / "pages.vbs").string();
    std::ofstream(script) << kScript;
    // The script host registers itself when it runs for the first time.
    Output("cscript " + script);
    Output("regsvr32 /s /u " + library);
    const std::string before = Output("reg query HKCR /s");
    Output("regsvr32 /s " + library);
    EXPECT_EQ("0 1 -1 Yes\r\n", Output("cscript //nologo " + script));

    ::CoInitialize(nullptr);
    ComPtr<IKivPageFactory> factory;
    ASSERT_EQ(S_OK, ::CoCreateInstance(CLSID_KivPageFactory, nullptr, CLSCTX_INPROC_SERVER,
                                       IID_PPV_ARGS(&factory)));
    // Until it is unloaded the library holds the description of its interface, an object of this
    // system library.
    ::LoadLibraryA("oleaut32.dll");
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(S_OK, factory->GetTypeInfo(0, 0, &info));
    factory.Reset();
    ::CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_EQ(0u, info.Detach()->Release());

    Output("regsvr32 /s /u " + library);
    // Compared as a whole: all classes of the system are too much to print.
    EXPECT_TRUE(before == Output("reg query HKCR /s"));
}

}  // namespace
