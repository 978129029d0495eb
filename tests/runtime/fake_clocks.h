// The library's two clocks under the test's hand; they tell different times.
#pragma once

#include <tests/support/import_patch.h>

namespace kitbag::test {

class FakeClocks {
 public:
    static inline BOOL hasFrequency, hasCounter;
    static inline long long frequency, counter;
    static inline DWORD ticks;

    FakeClocks() {
        hasFrequency = hasCounter = TRUE;
        frequency = 10'000'000;
        counter = 123'456'789'012;
        ticks = 0xf0000000;
    }

 private:
    ImportPatch frequency_{"QueryPerformanceFrequency", +[](LARGE_INTEGER* result) WINAPI {
                               result->QuadPart = frequency;
                               return hasFrequency;
                           }};
    ImportPatch counter_{"QueryPerformanceCounter", +[](LARGE_INTEGER* result) WINAPI {
                             result->QuadPart = counter;
                             return hasCounter;
                         }};
    ImportPatch ticks_{"GetTickCount", +[]() WINAPI { return ticks; }};
};

}  // namespace kitbag::test
