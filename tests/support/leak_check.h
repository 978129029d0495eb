// Shows that calls leave no handle open.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

namespace kitbag::test {

/// The lowest free handle value. The system hands out the lowest one, so it rises by 4 for every
/// handle that stays open; registry keys count, too.
inline ULONG_PTR LowestFreeHandle() {
    HANDLE probe = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const auto value = reinterpret_cast<ULONG_PTR>(probe);
    ::CloseHandle(probe);
    return value;
}

/// Makes the calls a thousand times and expects that no handle stayed open. The first round does
/// not count: the system's libraries open handles of their own once.
template <class Calls>
void ExpectNoHandleLeak(Calls&& calls) {
    calls();
    const ULONG_PTR before = LowestFreeHandle();
    for (int i = 0; i < 1000; ++i) calls();
    EXPECT_EQ(before, LowestFreeHandle());
}

}  // namespace kitbag::test
