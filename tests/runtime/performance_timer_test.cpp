#include <kitbag/runtime/performance_timer.h>
#include <tests/runtime/fake_clocks.h>

namespace {

using namespace kitbag::test;

LARGE_INTEGER Units(long long units) {
    LARGE_INTEGER time;
    time.QuadPart = units;
    return time;
}

TEST(PerformanceTimer, ReadsTheCounterOrElseTheTicks) {
    FakeClocks clocks;
    struct Row {
        const char* about;
        BOOL hasFrequency;
        long long frequency;
        BOOL hasCounter;
        long long resolution, time;
    };
    for (const Row& row :
         {Row{"a counter", TRUE, 10'000'000, TRUE, 10'000'000, 123'456'789'012},
          Row{"no counter", FALSE, 10'000'000, TRUE, 1000, 0xf0000000},
          Row{"a counter that never counts", TRUE, 0, TRUE, 1000, 0xf0000000},
          Row{"a counter that cannot be read", TRUE, 10'000'000, FALSE, 10'000'000, 0xf0000000}}) {
        SCOPED_TRACE(row.about);
        clocks.hasFrequency = row.hasFrequency;
        clocks.frequency = row.frequency;
        clocks.hasCounter = row.hasCounter;
        const PerformanceTimer timer;
        ASSERT_EQ(row.resolution, timer.GetResolution());
        ASSERT_EQ(row.time, timer.MarkTime().QuadPart);
    }
}

TEST(PerformanceTimer, CountsMicrosecondsTowardsZero) {
    FakeClocks clocks;
    struct Row {
        long long frequency, start, end, microseconds;
    };
    for (const auto& [frequency, start, end, microseconds] :
         {Row{10'000'000, 5, 34, 2}, Row{10'000'000, 34, 5, -2}, Row{3, 0, 2, 666'666},
          Row{0, 5, 30, 25'000}, Row{0, 30, 5, -25'000}}) {
        SCOPED_TRACE(testing::Message() << start << " to " << end << " at " << frequency);
        clocks.frequency = frequency;
        const PerformanceTimer timer;
        ASSERT_EQ(microseconds, timer.CalcTimeInMicrosecs(Units(start), Units(end)));
        ASSERT_EQ(microseconds, timer.CalcTimeInMicrosecs(Units(end - start)));
    }
}

}  // namespace
