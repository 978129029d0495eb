#include <gtest/gtest.h>
#include <kitbag/system/module_version.h>
#include <oleauto.h>
#include <tests/support/import_patch.h>

#include <array>
#include <cstring>
#include <utility>

namespace {

TEST(ModuleVersion, IsTheProductVersion) {
    DWORD major = 77, minor = 77, build = 77;
    EXPECT_TRUE(KB_GetMemModuleVersion(nullptr, &major, &minor, &build));
    EXPECT_EQ((std::array{3ul, 4ul, 0x50006ul}), (std::array{major, minor, build}));

    wchar_t library[MAX_PATH];
    ::GetModuleFileNameW(::GetModuleHandleA("Kitbag.dll"), library, MAX_PATH);
    EXPECT_TRUE(KB_GetModuleVersionW(library, &major, &minor, nullptr));
    EXPECT_EQ((std::array{1ul, 0ul, 0x50006ul}), (std::array{major, minor, build}));
}

TEST(ModuleVersion, LeavesTheOutputsWhereThereIsNone) {
    DWORD major = 77, minor = 77, build = 77;
    // The compiler's runtime has no version resource.
    for (const char* file :
         {"libstdc++-6.dll", "no such file", "", static_cast<const char*>(nullptr)})
        EXPECT_FALSE(KB_GetModuleVersionA(file, &major, &minor, &build));
    EXPECT_FALSE(KB_GetModuleVersionW(nullptr, &major, &minor, &build));
    for (const DWORD_PTR error : {1u, 31u})
        EXPECT_FALSE(
            KB_GetMemModuleVersion(reinterpret_cast<HMODULE>(error), &major, &minor, &build));
    EXPECT_FALSE(KB_GetMemModuleVersion(nullptr, &major, nullptr, &build));
    EXPECT_EQ((std::array{77ul, 77ul, 77ul}), (std::array{major, minor, build}));
}

TEST(ModuleVersion, FindsStringsInTheResourcesLanguage) {
    CModuleVersion library("Kitbag.dll");
    EXPECT_EQ(nullptr, library.GetStringValue("CompanyName"));
    EXPECT_TRUE(library.Read());
    EXPECT_STREQ("Tarnwick", library.GetStringValue("CompanyName"));
    EXPECT_EQ(nullptr, library.GetStringValue("No such value"));

    CModuleVersion withoutTranslation("kitbag_system_tests.exe");
    EXPECT_TRUE(withoutTranslation.Read());
    EXPECT_STREQ("Western", withoutTranslation.GetStringValue("CompanyName"));
}

BOOL WINAPI ComputerName(char* name, DWORD* size) {
    ::lstrcpyA(name, "PC");
    return std::exchange(*size, 2) == 260;
}

TEST(ModuleVersion, FillsTheModulesRecord) {
    const kitbag::test::ImportPatch patch("GetComputerNameA", ComputerName);
    const char first[] = "fifteen letters", second[] = "letters fifteen";
    ModuleInfo info{};
    EXPECT_FALSE(KB_FillModuleInfo(&info, nullptr, "Name", first, second));
    EXPECT_EQ(nullptr, info.moduleName);

    info.size = 56;
    EXPECT_TRUE(KB_FillModuleInfo(&info, nullptr, "N\xe4me", first, second));
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    EXPECT_STREQ(L"N\xe4me", info.moduleName);
    EXPECT_STREQ(L"PC", info.computerName);
    EXPECT_STREQ(path, info.filePath);
    EXPECT_EQ(0x30004u, info.productVersionMS);
    EXPECT_EQ(0x50006u, info.productVersionLS);
    EXPECT_EQ(0,
              std::memcmp(first, info.firstBlock, 16) | std::memcmp(second, info.secondBlock, 16));
    for (BSTR text : {info.moduleName, info.computerName, info.filePath}) ::SysFreeString(text);
}

}  // namespace
