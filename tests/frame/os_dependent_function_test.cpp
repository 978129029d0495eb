#include <kitbag/frame/os_dependent_function.h>
#include <tests/support/import_patch.h>

namespace {

int loads = 0;
HMODULE WINAPI CountedLoad(LPCSTR library) {
    return ++loads, ::LoadLibraryExA(library, nullptr, 0);
}

TEST(TOSDepFn, LoadsOnceWithoutADialogAndKeepsNoLibraryInVain) {
    const kitbag::test::ImportPatch patch("LoadLibraryA", CountedLoad, nullptr);
    for (const char* name : {"MAPIInitialize", "NoSuchFunction"}) {
        ::SetErrorMode(0);
        TOSDepFn<FARPROC> function("mapi32.dll", name);
        EXPECT_EQ(nullptr, ::GetModuleHandleA("mapi32.dll")) << "loaded too early or kept";
        for (int i = 0; i < 2; ++i) EXPECT_EQ(*name == 'M', function.Load());
        EXPECT_EQ(UINT{SEM_NOOPENFILEERRORBOX}, ::SetErrorMode(0));
        HMODULE library = ::GetModuleHandleA("mapi32.dll");
        EXPECT_EQ(*name == 'M', library != nullptr);
        EXPECT_EQ(library ? ::GetProcAddress(library, name) : nullptr, function.Function());
    }
    EXPECT_EQ(2, loads);
}

}  // namespace
