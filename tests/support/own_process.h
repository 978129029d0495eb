// For tests of what the library does once in a process: its first calls and what it remembers.
//
//     TEST(UserInterfaceLevel, IsReadOnce) {
//         if (RanInAProcessOfItsOwn()) return;
#pragma once

namespace kitbag::test {

/// False in the first test of a process. In any other the test has run in a process of its own by
/// now, whose output and result are this test's.
bool RanInAProcessOfItsOwn();

}  // namespace kitbag::test
