#include <gtest/gtest.h>
#include <tests/support/trace_capture.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

TEST(LibraryFile, HoldsTraceTextsInTheDiagnosticBuildOnly) {
    const auto path = std::filesystem::path(_pgmptr).replace_filename("Kitbag.dll");
    std::ifstream file(path, std::ios::binary);
    const std::string image(std::istreambuf_iterator<char>(file), {});
    ASSERT_TRUE(image.starts_with("MZ"));
    for (const char* text : {"Kitbag attaching", "OutputDebugString"})
        EXPECT_EQ(kitbag::test::kDiagnostic, image.find(text) != std::string::npos);
}

TEST(LibraryFile, HoldsTheStringTable) {
    std::string strings;
    char text[100];
    for (UINT id = 1; id < 1000; ++id)
        if (::LoadStringA(::GetModuleHandleA("Kitbag.dll"), id, text, sizeof text))
            strings += std::to_string(id) + ' ' + text + '\n';
    EXPECT_EQ(
        "101 Point me at the config directory please\n"
        "102 Point me at the data directory please\n"
        "103 Point me at the skins directory please\n"
        "104 Point me at the docs directory please\n"
        "207 True\n208 False\n397 On\n398 Off\n399 Yes\n400 No\n",
        strings);
}

}  // namespace
