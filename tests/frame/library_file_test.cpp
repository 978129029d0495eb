#include <tests/support/trace_capture.h>

#include <filesystem>
#include <fstream>

namespace {

TEST(LibraryFile, HoldsTraceTextsInTheDiagnosticBuildOnly) {
    const auto path = std::filesystem::path(_pgmptr).replace_filename("Kitbag.dll");
    std::ifstream file(path, std::ios::binary);
    const std::string image(std::istreambuf_iterator<char>(file), {});
    EXPECT_NE(image.npos, image.find("Peformance report")) << "texts are not found";
    for (const char* text : {"Kitbag attaching", "OutputDebugString"})
        EXPECT_EQ(kitbag::test::kDiagnostic, image.find(text) != image.npos);
}

}  // namespace
