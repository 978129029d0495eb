#include <gmock/gmock.h>
#include <tests/faults/failing_import.h>
#include <tests/faults/surroundings.h>
#include <tests/faults/workload.h>
#include <tests/support/leak_check.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

using namespace kitbag::test;

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
    const FailingImport fault(GetParam());
    RunWorkload();
    // The checking heap is slow, and keeps freed blocks for a while.
    if (!std::getenv("KITBAG_HEAP_CHECK")) {
        RunWorkload();  // what the system and the library keep once is there afterwards
        ExpectNothingLost();
    }
    EXPECT_GT(fault.Calls(), 0) << "the workload must be extended to reach it";
}

INSTANTIATE_TEST_SUITE_P(Imports, FaultSweep, testing::ValuesIn(ImportsThatCanFail()),
                         [](const auto& import) { return import.param; });

TEST(Workload, CallsEveryPlainFunction) {
    const auto called = ImportedNames(nullptr);
    for (const std::string& name : ExportedNames())
        EXPECT_TRUE(!name.starts_with("KB_") || std::ranges::binary_search(called, name)) << name;
}

}  // namespace
