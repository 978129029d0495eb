#include <gmock/gmock.h>
#include <tests/runtime/performance_period.h>

namespace {

using namespace kitbag::test;
using testing::HasSubstr;

struct PerformanceReport : PerformancePeriod {
    /// The report of a period with so many samples.
    std::string Period(int samples) {
        logger.Start();
        for (int i = 0; i < samples; ++i) number.SetValueAndRecord(7, false);
        return ReportOf(logger);
    }
    static auto Counts(const std::string& available, int recorded, int attempted) {
        return HasSubstr("\nAvailable samples = " + available + ", recorded = " +
                         std::to_string(recorded) + ", attempted = " + std::to_string(attempted));
    }

    PerformanceLogger logger{"Scan", ""};
    UInt32PerformanceMeasurement number{logger, "N", "", 0, ""};
};

TEST_F(PerformanceReport, IsOrderedByDepthWithEitherClock) {
    struct Row {
        BOOL hasCounter;
        const char *resolution, *first, *last;
    };
    for (const auto& [hasCounter, resolution, first, last] :
         {Row{TRUE, "100 nanosecs (10Mhz, 10000000hz)", "     2", "  1234"},
          Row{FALSE, "1000000 nanosecs (0Mhz, 1000hz)", "  3000", "103000"}}) {
        SCOPED_TRACE(hasCounter ? "counter" : "ticks");
        clocks.hasFrequency = hasCounter;
        PerformanceLogger scan("Scan", "");
        TimePerformanceMeasurement pass(scan, "Pass", "", 0, ""), deep(scan, "Deep", "", 2, "");
        UInt32PerformanceMeasurement files(scan, "Files", "", 1, "");
        const auto wait = [&](long long units, DWORD milliseconds) {
            clocks.counter += units;
            clocks.ticks += milliseconds;
        };
        scan.Start();
        pass.StartTimer();
        deep.StartTimer();
        files.SetValueAndRecord(42, true);
        wait(25, 3);
        pass.MarkTimerAndRecord(false);
        wait(12'320, 100);
        deep.MarkTimerAndRecord(true);
        pass.MarkTimerAndRecord(true);
        scan.AddRecord(3, 0, true);  // never registered
        const std::string hyphens(60, '-');
        const char* const rule = hyphens.c_str();
        TWinString<char> expected;
        expected.Format(
            "Peformance report: Scan\n\n"
            "Perf Resolution: %s\n\n"
            "Available samples = 240000, recorded = 5, attempted = 5\n\n"
            "-- Depth=0 %s\n\n"
            "Pass=%sus \n"
            "     3: Pass=%sus \n"
            "-- Depth=1 %s\n\n"
            "Files=42 \n"
            "-- All %s\n\n"
            "Files=42 Pass=%sus \n"
            "     2:         Deep=%sus \n"
            "     3: Pass=%sus ",
            resolution, rule, first, last, rule, rule, first, last, last);
        ASSERT_EQ(expected, ReportOf(scan));
    }
}

TEST_F(PerformanceReport, HasRoomForAsManySamplesAsTheSettingSays) {
    for (const auto& [size, recorded] : {std::pair{0u, 0}, {1u, 0}, {3u, 2}, {5u, 4}, {6u, 5}}) {
        settings.Set(L"Scan Size", size);
        ASSERT_THAT(Period(5), Counts(std::to_string(size), recorded, 5));
    }
    settings.Set(L"Scan Size", 0xffffffff);
    EXPECT_EQ("none", Period(5)) << "more than there is memory for";
}

TEST_F(PerformanceReport, IsWrittenWhereTheLoggerWasOnAtTheStart) {
    EXPECT_EQ(240000u, settings.NumberOf(L"Scan Size")) << "the default is written";
    PerformanceLogger("Other", "");
    EXPECT_FALSE(settings.Has(L"Other Enable")) << "the default is not";

    settings.Set(L"Scan Enable", 0);
    EXPECT_EQ("none", Period(1)) << "off";
    logger.Start();
    settings.Set(L"Scan Enable", 1);
    EXPECT_EQ("none", ReportOf(logger)) << "switched on too late";
    number.SetValueAndRecord(7, false);  // outside a period: not counted
    EXPECT_THAT(Period(1), Counts("240000", 1, 1));
    logger.Start();
    settings.Set(L"Scan Enable", 0);
    EXPECT_THAT(ReportOf(logger), Counts("240000", 0, 0)) << "switched off too late";
    EXPECT_EQ("none", Period(1)) << "off again";
}

TEST_F(PerformanceReport, IsWrittenByTheOutermostStop) {
    logger.Start();
    number.SetValueAndRecord(7, false);
    EXPECT_EQ("none", Period(1));
    EXPECT_THAT(ReportOf(logger), Counts("240000", 2, 2));

    EXPECT_EQ("none", ReportOf(logger)) << "one Stop too many";
    EXPECT_EQ("none", Period(1));
    EXPECT_EQ("none", Period(1));
    logger.Start();
    EXPECT_THAT(Period(1), Counts("240000", 1, 1)) << "made up for";
}

TEST_F(PerformanceReport, EndsThePeriodAlsoWhereItsFileCannotBeOpened) {
    {
        const ImportPatch fails(
            "fopen", +[](const char*, const char*) -> std::FILE* { return nullptr; });
        EXPECT_EQ("none", Period(2));
    }
    EXPECT_THAT(Period(1), Counts("240000", 1, 1));
}

}  // namespace
