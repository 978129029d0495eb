#include <gtest/gtest.h>
#include <kitbag/frame/os_dependent_function.h>
#include <tests/support/import_patch.h>

namespace {

using kitbag::test::ImportPatch;

int loads = 0;

HMODULE WINAPI CountedLoad(LPCSTR library) {
    ++loads;
    return ::LoadLibraryExA(library, nullptr, 0);
}

bool IsLoaded(const char* library) { return ::GetModuleHandleA(library) != nullptr; }

TEST(TOSDepFn, LoadsOnTheFirstRequestAndFreesAtTheEnd) {
    ASSERT_FALSE(IsLoaded("mapi32.dll"));
    {
        TOSDepFn<FARPROC> function("mapi32.dll", "MAPIInitialize");
        EXPECT_FALSE(IsLoaded("mapi32.dll"));
        EXPECT_TRUE(function.Load());
        EXPECT_TRUE(IsLoaded("mapi32.dll"));
        EXPECT_EQ(::GetProcAddress(::GetModuleHandleA("mapi32.dll"), "MAPIInitialize"),
                  function.Function());
    }
    EXPECT_FALSE(IsLoaded("mapi32.dll"));
}

TEST(TOSDepFn, TriesOnceWithoutADialog) {
    const ImportPatch patch("LoadLibraryA", CountedLoad, nullptr);
    ::SetErrorMode(0);
    TOSDepFn<FARPROC> function("no such library.dll", "Anything");
    EXPECT_FALSE(function.Load());
    EXPECT_FALSE(function.Load());
    EXPECT_EQ(1, loads);
    EXPECT_EQ(nullptr, function.Function());
    EXPECT_EQ(UINT{SEM_NOOPENFILEERRORBOX}, ::SetErrorMode(0));
}

TEST(TOSDepFn, UnloadsALibraryThatLacksTheFunction) {
    const ImportPatch patch("LoadLibraryA", CountedLoad, nullptr);
    TOSDepFn<FARPROC> function("mapi32.dll", "NoSuchFunction");
    EXPECT_FALSE(function.Load());
    EXPECT_FALSE(IsLoaded("mapi32.dll"));
    EXPECT_FALSE(function.Load());
    EXPECT_EQ(1, loads);
}

}  // namespace
