// The class is a template: the system functions that it calls are this program's imports.

#include <kitbag/frame/os_dependent_function.h>
#include <tests/support/import_patch.h>

#include <cstring>
#include <thread>

namespace {

using kitbag::test::ImportPatch;

/// A library of the system that nothing else here loads.
constexpr char kLibrary[] = "mapi32.dll";

bool IsLoaded() { return ::GetModuleHandleA(kLibrary) != nullptr; }

/// Where set, another thread makes its first call, from start to end, while this one loads.
TOSDepFn<FARPROC>* raced;
bool isFoundByTheOther;
std::atomic<int> loads;

HMODULE WINAPI LoadCounted(LPCSTR library) {
    ++loads;
    if (TOSDepFn<FARPROC>* function = std::exchange(raced, nullptr))
        std::thread([function] { isFoundByTheOther = function->Load(); }).join();
    return ::LoadLibraryExA(library, nullptr, 0);
}

struct OsDependentFunction : testing::Test {
    OsDependentFunction() { loads = 0; }
    const ImportPatch load{"LoadLibraryA", LoadCounted, nullptr};
};

TEST_F(OsDependentFunction, IsLoadedOnTheFirstLoadAndKeptToTheEnd) {
    {
        TOSDepFn<FARPROC> function(kLibrary, "MAPIInitialize");
        EXPECT_FALSE(IsLoaded()) << "before it is asked for";
        EXPECT_TRUE(function.Load());
        EXPECT_TRUE(function.Load()) << "the second time";
        EXPECT_EQ(1, loads);
        EXPECT_EQ(::GetProcAddress(::GetModuleHandleA(kLibrary), "MAPIInitialize"),
                  function.Function());
    }
    EXPECT_FALSE(IsLoaded()) << "after its end";
}

TEST_F(OsDependentFunction, IsTriedOnceWhereItIsMissing) {
    const struct {
        const char* what;
        const char* library;
    } rows[] = {{"no library", "no such library.dll"}, {"no function in the library", kLibrary}};
    for (const auto& [what, library] : rows) {
        SCOPED_TRACE(what);
        loads = 0;
        TOSDepFn<FARPROC> function(library, "NoSuchFunction");
        EXPECT_FALSE(function.Load());
        EXPECT_FALSE(function.Load()) << "the second time";
        EXPECT_EQ(1, loads);
        EXPECT_FALSE(IsLoaded()) << "kept in vain";
    }
}

TEST_F(OsDependentFunction, TurnsTheSystemsDialogOffForGood) {
    ::SetErrorMode(SEM_FAILCRITICALERRORS);
    TOSDepFn<FARPROC>("no such library.dll", "NoSuchFunction").Load();
    EXPECT_EQ(UINT{SEM_NOOPENFILEERRORBOX}, ::SetErrorMode(0));
}

TEST_F(OsDependentFunction, IsFoundByAllOfRacingFirstCalls) {
    {
        TOSDepFn<FARPROC> function(kLibrary, "MAPIInitialize");
        raced = &function;
        EXPECT_TRUE(function.Load());
        EXPECT_TRUE(isFoundByTheOther);
        EXPECT_EQ(2, loads) << "no race";
    }
    EXPECT_FALSE(IsLoaded()) << "a reference is left";
}

/// What lies behind the object's table of operations, in words of 32 bits.
struct Record {
    void* operations;
    BOOL tried;
    HMODULE module;
    const char* library;
    const char* name;
    FARPROC function;
};

TEST_F(OsDependentFunction, KeepsTheRecordThatProgramsWereBuiltWith) {
    const char name[] = "MAPIInitialize";
    TOSDepFn<FARPROC> function(kLibrary, name);
    static_assert(sizeof function == sizeof(Record));
    function.Load();
    Record record;
    std::memcpy(&record, static_cast<void*>(&function), sizeof record);
    EXPECT_EQ(TRUE, record.tried);
    EXPECT_EQ(::GetModuleHandleA(kLibrary), record.module);
    EXPECT_EQ(kLibrary, static_cast<const void*>(record.library));
    EXPECT_EQ(name, static_cast<const void*>(record.name));
    EXPECT_EQ(function.Function(), record.function);
}

}  // namespace
