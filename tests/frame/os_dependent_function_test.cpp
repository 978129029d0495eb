#include <gtest/gtest.h>
#include <kitbag/frame/os_dependent_function.h>
#include <tests/support/import_patch.h>

#include <utility>

namespace {

int loads = 0;

HMODULE WINAPI CountedLoad(LPCSTR library) {
    ++loads;
    return ::LoadLibraryExA(library, nullptr, 0);
}

TEST(TOSDepFn, LoadsOnTheFirstRequestAndFreesAtTheEnd) {
    {
        TOSDepFn<FARPROC> function("mapi32.dll", "MAPIInitialize");
        EXPECT_EQ(nullptr, ::GetModuleHandleA("mapi32.dll"));
        EXPECT_TRUE(function.Load() && function.Load());
        HMODULE library = ::GetModuleHandleA("mapi32.dll");
        EXPECT_EQ(::GetProcAddress(library, "MAPIInitialize"), function.Function());
    }
    EXPECT_EQ(nullptr, ::GetModuleHandleA("mapi32.dll"));
}

TEST(TOSDepFn, TriesOnceWithoutADialogAndKeepsNoLibraryThatLacksTheFunction) {
    const kitbag::test::ImportPatch patch("LoadLibraryA", CountedLoad, nullptr);
    for (const auto& [library, name] :
         {std::pair{"no such library.dll", "Anything"}, {"mapi32.dll", "NoSuchFunction"}}) {
        ::SetErrorMode(0);
        TOSDepFn<FARPROC> function(library, name);
        EXPECT_FALSE(function.Load() || ::GetModuleHandleA(library) || function.Load());
        EXPECT_EQ(1, std::exchange(loads, 0));
        EXPECT_EQ(UINT{SEM_NOOPENFILEERRORBOX}, ::SetErrorMode(0));
    }
}

}  // namespace
