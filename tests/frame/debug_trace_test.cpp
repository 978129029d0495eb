#include <kitbag/pages.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

namespace {

using namespace kitbag::test;

const std::filesystem::path library = std::filesystem::path(_pgmptr).replace_filename("Kitbag.dll");

TEST(DebugTrace, LeavesItsTextsOutOfTheShippingLibrary) {
    std::ifstream file(library, std::ios::binary);
    const std::string image(std::istreambuf_iterator<char>(file), {});
    const auto holds = [&image](const char* text) { return image.find(text) != image.npos; };
    EXPECT_TRUE(holds("Peformance report")) << "texts are not found";
    EXPECT_EQ(kDiagnostic, holds("Kitbag attaching"));
    EXPECT_EQ(kDiagnostic, holds("OutputDebugString"));
}

TEST(DebugTrace, TellsWhenTheLibraryComesAndGoes) {
    const TemporaryFolder folder;
    copy_file(library, folder / "Another.dll");
    TraceCapture trace;
    HMODULE another = ::LoadLibraryW((folder / "Another.dll").c_str());
    ASSERT_NE(nullptr, another);
    trace.Expect({"Kitbag attaching to process\n"});

    const auto getClassObject = reinterpret_cast<decltype(&::DllGetClassObject)>(
        reinterpret_cast<void*>(::GetProcAddress(another, "DllGetClassObject")));
    IClassFactory* factory = nullptr;
    getClassObject(CLSID_KivPageFactory, IID_PPV_ARGS(&factory));
    ASSERT_NE(nullptr, factory);
    factory->LockServer(TRUE);
    factory->LockServer(TRUE);
    factory->Release();
    ::FreeLibrary(another);
    trace.Expect({"Kitbag detaching from process, 2 outstanding references\n"});
}

}  // namespace
