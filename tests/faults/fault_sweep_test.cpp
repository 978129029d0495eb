#include <gmock/gmock.h>
#include <tests/faults/surroundings.h>
#include <tests/faults/workload.h>
#include <tests/support/leak_check.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <map>
#include <new>
#include <regex>

namespace {

using namespace kitbag::test;

std::atomic<int> calls;
DWORD answer;

template <class... Words>
DWORD WINAPI Fail(Words...) {
    ++calls;
    return answer;
}

void* NoMemory(std::size_t) {
    ++calls;
    throw std::bad_alloc();
}

/// Waits all the same: what the workload has started must end before it does.
DWORD WINAPI WaitAndFail(HANDLE object, DWORD timeout) {
    ::WaitForSingleObject(object, timeout);
    return Fail();
}

using Function = void();

template <class Any>
Function* Fake(Any* function) {
    return reinterpret_cast<Function*>(function);
}

/// One that takes so many words of arguments off the stack.
template <std::size_t... word>
Function* FakeOf(std::index_sequence<word...>) {
    return Fake(Fail<decltype(word)...>);
}

/// What stands in for each import of the system, and for those of the compiler's runtime that run
/// out of memory or into a file that is not there.
const std::map<std::string, Function*> kFakes = {
    {"_Znaj", Fake(NoMemory)},
    {"_Znwj", Fake(NoMemory)},
    {"_ZnwjRKSt9nothrow_t", Fake(Fail<>)},
    {"_strdup", Fake(Fail<>)},
    {"_vsnprintf", Fake(Fail<>)},
    {"fopen", Fake(Fail<>)},
    {"WaitForSingleObject", Fake(WaitAndFail)},
#include "import_fakes.inc"
};

/// The names of functions that are not made to fail:
const std::regex kExempt(
    // they have no failure;
    ".*CriticalSection|GetCurrentThreadId|GetLastError|GetTickCount|IsDBCSLeadByteEx|"
    "SetErrorMode|Sleep|TlsGetValue|lstrlen.|"
    // they release, and one that does not has leaked whatever the library does;
    "(Close|Find|RegClose)(Handle|Close|Key)|CoUninitialize|FreeLibrary|(Global|Local|Sys)Free.*|"
    "GlobalUnlock|"
    // the compiler's code calls them while the library is loaded or unloaded;
    "DisableThreadLibraryCalls|GetModuleHandleW|HeapDestroy|VirtualProtect|"
    // only Windows 9x's network leads to it.
    "IsBadStringPtrA");

/// How functions say that they failed; the others answer 0.
const std::pair<DWORD, std::regex> kFailures[] = {
    {0xffffffff, std::regex("(CreateFile|FindFirst|GetFile(Attrib|Size)|SetFile|WaitFor|_vsn).*")},
    {0x80004005, std::regex("(CLSIDFrom|Co|CreateErrorInfo|LoadTypeLib|QueryPathOfRegTypeLib|"
                            "RegisterTypeLib|SHGetMalloc|SetErrorInfo).*")},
    {ERROR_ACCESS_DENIED, std::regex("Reg.*")},
    {TRUE, std::regex("IsBad.*")}};

DWORD FailureOf(const std::string& name) {
    for (const auto& [failure, names] : kFailures)
        if (std::regex_match(name, names)) return failure;
    return 0;
}

/// The imports that can fail, new ones of the system included.
std::vector<std::string> ImportsThatCanFail() {
    std::vector<std::string> names = ImportedNames();
    std::erase_if(names, [](const std::string& name) {
        return !kFakes.contains(name) || std::regex_match(name, kExempt);
    });
    return names;
}

/// The blocks in use of all heaps of the process.
int HeapBlocks() {
    HANDLE heaps[64];
    const DWORD count = ::GetProcessHeaps(64, heaps);
    int blocks = 0;
    for (DWORD i = 0; i < count; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        ::HeapLock(heaps[i]);
        while (::HeapWalk(heaps[i], &entry))
            blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
        ::HeapUnlock(heaps[i]);
    }
    return blocks;
}

/// What the library loses it loses in every round; the system keeps this or that at times.
void ExpectNothingLost() {
    int handles = INT_MAX, blocks = INT_MAX;
    for (int round = 0; round < 3; ++round) {
        const int handlesBefore = static_cast<int>(LastNewHandle()), blocksBefore = HeapBlocks();
        RunWorkload();
        handles = std::min(handles, static_cast<int>(LastNewHandle()) - handlesBefore);
        blocks = std::min(blocks, HeapBlocks() - blocksBefore);
    }
    EXPECT_LE(handles, 0);
    EXPECT_LE(blocks, 0);
}

class FaultSweep : public testing::TestWithParam<std::string> {};

TEST_P(FaultSweep, IsSurvivedAndLeavesNothingOpen) {
    const Surroundings surroundings;
    answer = FailureOf(GetParam());
    const ImportPatch fault(GetParam().c_str(), kFakes.at(GetParam()));
    RunWorkload();
    EXPECT_GT(calls, 0) << "the workload must be extended to reach it";
    // The checking heap is slow, and keeps freed blocks for a while.
    if (std::getenv("KITBAG_HEAP_CHECK")) return;
    RunWorkload();  // what the system and the library keep once is there afterwards
    ExpectNothingLost();
}

INSTANTIATE_TEST_SUITE_P(Imports, FaultSweep, testing::ValuesIn(ImportsThatCanFail()),
                         [](const auto& import) { return import.param; });

}  // namespace
