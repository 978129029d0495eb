// Shows that calls leave no handle open.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

namespace kitbag::test {

/// The last of some new handles. The system hands out the lowest free values, so it rises by 4 for
/// every handle that stays open, registry keys included, even if one below it was closed meanwhile.
inline ULONG_PTR LastNewHandle() {
    HANDLE probes[64];
    for (HANDLE& probe : probes) probe = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    for (HANDLE probe : probes) ::CloseHandle(probe);
    return reinterpret_cast<ULONG_PTR>(std::end(probes)[-1]);
}

/// Makes the calls a thousand times and expects that no handle stayed open. The first round does
/// not count: the system's libraries open handles of their own once.
void ExpectNoHandleLeak(auto&& calls) {
    calls();
    const ULONG_PTR before = LastNewHandle();
    for (int i = 0; i < 1000; ++i) calls();
    EXPECT_EQ(before, LastNewHandle());
}

}  // namespace kitbag::test
