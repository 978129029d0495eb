#include <gmock/gmock.h>
#include <tests/runtime/performance_period.h>

namespace {

using namespace kitbag::test;
using testing::HasSubstr;

template <class Base>
struct Shown : Base {
    using Base::Base;
    using Base::Report;
};

struct Measurement : PerformancePeriod {
    /// The text of one sample.
    template <class Class>
    static std::string TextOf(long long value, const char* format) {
        PerformanceLogger logger("Scan", "");
        Shown<Class> measurement(logger, "Label", "", 0, TWinString<char>(format));
        PerformanceLoggerRecord record{0, 0, static_cast<unsigned long long>(value)};
        return measurement.Report(&record);
    }
};

TEST_F(Measurement, ShowsMicrosecondsAndSignedNumbers) {
    EXPECT_EQ("     2us", TextOf<TimePerformanceMeasurement>(25, ""));
    EXPECT_EQ("    -2us", TextOf<TimePerformanceMeasurement>(-25, ""));
    EXPECT_EQ("12345678us", TextOf<TimePerformanceMeasurement>(123'456'789, ""));
    EXPECT_EQ("<2>", TextOf<TimePerformanceMeasurement>(25, "<%I64d>"));
    EXPECT_EQ("25", TextOf<UInt32PerformanceMeasurement>(25, ""));
    EXPECT_EQ("-25", TextOf<UInt32PerformanceMeasurement>(-25, ""));
    EXPECT_EQ("123456789a", TextOf<UInt32PerformanceMeasurement>(0x123456789a, "%I64x"));
    clocks.hasFrequency = FALSE;
    EXPECT_EQ(" 25000us", TextOf<TimePerformanceMeasurement>(25, ""));
}

TEST_F(Measurement, MeasuresEveryMarkFromTheSameStart) {
    PerformanceLogger logger("Scan", "");
    TimePerformanceMeasurement pass(logger, "Pass", "", 0, "");
    logger.Start();
    pass.StartTimer();
    clocks.counter += 10;
    pass.MarkTimerAndRecord(false);
    clocks.counter += 20;
    pass.MarkTimerAndRecord(true);
    pass.StartTimer();
    pass.MarkTimerAndRecord(false);
    EXPECT_THAT(ReportOf(logger),
                HasSubstr("Pass=     1us \n     1: Pass=     3us Pass=     0us "));
}

TEST_F(Measurement, IsReportedUnderTheOriginalsNameByItsCopies) {
    PerformanceLogger logger("Scan", "");
    TimePerformanceMeasurement time(logger, "Time", "", 0, "");
    UInt32PerformanceMeasurement number(logger, "Number", "", 0, "");
    const std::unique_ptr<PerformanceMeasurement> copy(number.Copy()), timeCopy(time.Copy());
    EXPECT_EQ("Number", copy->GetLabel());
    EXPECT_EQ("Time", timeCopy->GetLabel());
    EXPECT_NE(nullptr, dynamic_cast<TimePerformanceMeasurement*>(timeCopy.get()));
    logger.Start();
    dynamic_cast<UInt32PerformanceMeasurement&>(*copy).SetValueAndRecord(5, false);
    EXPECT_THAT(ReportOf(logger), HasSubstr("Number=5 "));
}

}  // namespace
