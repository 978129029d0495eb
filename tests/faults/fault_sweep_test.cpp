#include <gtest/gtest.h>
#include <tests/faults/failing_import.h>
#include <tests/faults/surroundings.h>
#include <tests/faults/workload.h>
#include <tests/support/leak_check.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

using kitbag::test::FailingImport;
using kitbag::test::ImportsThatCanFail;
using kitbag::test::LowestFreeHandle;
using kitbag::test::RunWorkload;
using kitbag::test::Surroundings;

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

class FaultSweep : public testing::TestWithParam<std::string> {};

TEST_P(FaultSweep, IsSurvivedAndLeavesNothingOpen) {
    const Surroundings surroundings;
    const FailingImport fault(GetParam());
    RunWorkload();  // what the system and the library keep once is there afterwards
    RunWorkload();
    // What the library loses it loses in every round; the system keeps this or that at times.
    long handles = LONG_MAX;
    int blocks = INT_MAX;
    for (int round = 0; round < 3; ++round) {
        const auto handlesBefore = static_cast<long>(LowestFreeHandle());
        const int blocksBefore = HeapBlocks();
        RunWorkload();
        handles = std::min(handles, static_cast<long>(LowestFreeHandle()) - handlesBefore);
        blocks = std::min(blocks, HeapBlocks() - blocksBefore);
    }
    EXPECT_LE(handles, 0);
    // The checking heap keeps freed blocks for a while.
    if (!std::getenv("KITBAG_HEAP_CHECK")) {
        EXPECT_LE(blocks, 0);
    }
    EXPECT_GT(fault.Calls(), 0) << "the workload must be extended to reach it";
}

INSTANTIATE_TEST_SUITE_P(Imports, FaultSweep, testing::ValuesIn(ImportsThatCanFail()),
                         [](const auto& import) { return import.param; });

}  // namespace
