#include <gtest/gtest.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>
#include <windows.h>

#include <fstream>
#include <iterator>

namespace {

using kitbag::test::kDiagnostic;
using kitbag::test::TemporaryFolder;
using kitbag::test::TraceCapture;

std::string FileOf(HMODULE module) {
    char path[MAX_PATH];
    ::GetModuleFileNameA(module, path, sizeof path);
    return path;
}

std::string LibraryFile() { return FileOf(::LoadLibraryA("Kitbag.dll")); }

TEST(LibraryEntry, TracesLoadingAndUnloading) {
    const TemporaryFolder folder;
    const std::string copy = (folder / "Second.dll").string();
    ASSERT_TRUE(::CopyFileA(LibraryFile().c_str(), copy.c_str(), TRUE));

    TraceCapture trace;
    HMODULE library = ::LoadLibraryA(copy.c_str());
    ASSERT_NE(nullptr, library);
    trace.Expect({"Kitbag attaching to process\n"});
    ::FreeLibrary(library);
    trace.Expect({"Kitbag detaching from process, 0 outstanding references\n"});
    EXPECT_EQ(nullptr, ::GetModuleHandleA("Second.dll"));
}

TEST(LibraryEntry, MayBeUnloadedWhileNoObjectIsAlive) {
    const auto canUnload = reinterpret_cast<HRESULT(WINAPI*)()>(
        reinterpret_cast<void*>(::GetProcAddress(::LoadLibraryA("Kitbag.dll"), "DllCanUnloadNow")));
    ASSERT_NE(nullptr, canUnload);
    EXPECT_EQ(S_OK, canUnload());
}

TEST(LibraryEntry, HoldsTraceTextsInTheDiagnosticBuildOnly) {
    std::ifstream file(LibraryFile(), std::ios::binary);
    const std::string image(std::istreambuf_iterator<char>(file), {});
    ASSERT_EQ("MZ", image.substr(0, 2));
    EXPECT_EQ(kDiagnostic, image.find("Kitbag attaching") != std::string::npos);
    EXPECT_EQ(kDiagnostic, image.find("OutputDebugString") != std::string::npos);
}

TEST(Resources, HoldTheStringTable) {
    struct {
        UINT id;
        const char* text;
    } const strings[] = {
        {101, "Point me at the config directory please"},
        {102, "Point me at the data directory please"},
        {103, "Point me at the skins directory please"},
        {104, "Point me at the docs directory please"},
        {207, "True"},
        {208, "False"},
        {397, "On"},
        {398, "Off"},
        {399, "Yes"},
        {400, "No"},
    };
    for (const auto& string : strings) {
        char text[100] = "";
        ::LoadStringA(::LoadLibraryA("Kitbag.dll"), string.id, text, sizeof text);
        EXPECT_STREQ(string.text, text);
    }
}

TEST(Resources, HoldTheVersion) {
    DWORD ignored = 0;
    std::string block(::GetFileVersionInfoSizeA(LibraryFile().c_str(), &ignored), '\0');
    ASSERT_TRUE(::GetFileVersionInfoA(LibraryFile().c_str(), 0, static_cast<DWORD>(block.size()),
                                      block.data()));
    void* name = nullptr;
    UINT length = 0;
    ASSERT_TRUE(::VerQueryValueA(block.data(), "\\StringFileInfo\\040904b0\\OriginalFilename",
                                 &name, &length));
    EXPECT_STREQ("Kitbag.dll", static_cast<const char*>(name));
}

}  // namespace
