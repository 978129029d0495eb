#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

namespace {

using namespace kitbag::test;

/// A second instance of the library in this process, which tells when it comes and goes.
HMODULE LoadCopy(const std::filesystem::path& copy) {
    std::filesystem::copy_file(std::filesystem::path(_pgmptr).replace_filename("Kitbag.dll"), copy,
                               std::filesystem::copy_options::overwrite_existing);
    return ::LoadLibraryW(copy.c_str());
}

TEST(LibraryEntry, TracesThatAProcessComesAndGoes) {
    const TemporaryFolder folder;
    TraceCapture trace;
    HMODULE library = LoadCopy(folder / "copy.dll");
    ASSERT_NE(nullptr, library);
    trace.Expect({"Kitbag attaching to process\n"});
    ::FreeLibrary(library);
    trace.Expect({"Kitbag detaching from process, 0 outstanding references\n"});
}

TEST(LibraryEntry, TracesWhatIsStillReferredAtTheEnd) {
    const TemporaryFolder folder;
    const Com com;
    HMODULE library = LoadCopy(folder / "copy.dll");
    ASSERT_NE(nullptr, library);
    const auto create = reinterpret_cast<bool (*)(IUnknown**)>(
        reinterpret_cast<void*>(::GetProcAddress(library, "KB_CreateKivPageFactory")));
    TraceCapture trace;
    for (int i = 0; i < 2; ++i) {
        IUnknown* left = nullptr;
        EXPECT_TRUE(create(&left));
    }
    trace.Expect({});
    ::FreeLibrary(library);
    trace.Expect({"Kitbag detaching from process, 2 outstanding references\n"});
}

}  // namespace
