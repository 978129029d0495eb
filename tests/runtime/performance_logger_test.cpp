#include <gmock/gmock.h>
#include <kitbag/runtime/performance_measurement.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

#include <fstream>

namespace {

using kitbag::test::ImportPatch;

long long frequency = 0, now = 0;
BOOL WINAPI FakeFrequency(LARGE_INTEGER* result) { return (result->QuadPart = frequency) != 0; }
BOOL WINAPI FakeCounter(LARGE_INTEGER* result) { return (result->QuadPart = now) != 0; }
DWORD WINAPI FakeTicks() { return static_cast<DWORD>(now); }

std::string redirected;
std::FILE* FakeOpen(const char* path, const char* mode) {
    EXPECT_EQ("c:\\perflog.txt as w", path + std::string(" as ") + mode);
    return std::fopen(redirected.c_str(), mode);
}

class Performance : public testing::Test {
 protected:
    Performance() { redirected = (folder_ / "report.txt").string(); }
    ~Performance() override { ::RegDeleteTreeW(settings_.Get(), nullptr); }
    void Enable(DWORD size) {
        settings_.Set(L"Scan Enable", DWORD{1});
        settings_.Set(L"Scan Size", size);
    }
    /// What was written since the last call.
    std::string TakeReport() {
        const std::string report(
            std::istreambuf_iterator<char>(std::ifstream(redirected, std::ios::binary).rdbuf()),
            {});
        std::filesystem::remove(redirected);
        return report;
    }

    kitbag::test::RawKey settings_{"Debug\\Performance"};

 private:
    kitbag::test::TemporaryFolder folder_;
    ImportPatch open_{"fopen", FakeOpen}, ticks_{"GetTickCount", FakeTicks},
        frequency_{"QueryPerformanceFrequency", FakeFrequency},
        counter_{"QueryPerformanceCounter", FakeCounter};
};

TEST_F(Performance, ReportsByDepthWithEitherClock) {
    const struct {
        long long frequency;
        std::string resolution, first, second, third;
    } clocks[] = {{10000000, "100 nanosecs (10Mhz, 10000000hz)", "     2", "1234567", "1234570"},
                  {0, "1000000 nanosecs (0Mhz, 1000hz)", " 25000", "12345678000", "12345703000"}};
    for (const auto& clock : clocks) {
        frequency = clock.frequency;
        now = 1000;
        Enable(6);
        PerformanceLogger logger("Scan", "");
        TimePerformanceMeasurement pass(logger, "Pass", "", 0, ""), deep(logger, "Deep", "", 2, "");
        UInt32PerformanceMeasurement files(logger, "Files", "", 1, "<%I64x>");
        logger.Start();
        pass.StartTimer();
        files.SetValueAndRecord(0x123456789a, true);
        now += 25;
        pass.MarkTimerAndRecord(false);
        logger.Start();
        logger.StopAndProduceReport();
        deep.StartTimer();
        now += 12345678;
        deep.MarkTimerAndRecord(true);
        pass.MarkTimerAndRecord(true);
        logger.AddRecord(3, 0, true);  // never registered
        logger.AddRecord(0, 0, true);
        EXPECT_EQ("", TakeReport());
        logger.StopAndProduceReport();
        const std::string end = ' ' + std::string(60, '-') + "\r\n\r\n";
        EXPECT_EQ("Peformance report: Scan\r\n\r\nPerf Resolution: " + clock.resolution +
                      "\r\n\r\nAvailable samples = 6, recorded = 5, attempted = 6\r\n" +
                      "\r\n-- Depth=0" + end + "Pass=" + clock.first + "us \r\n     3: Pass=" +
                      clock.third + "us \r\n-- Depth=1" + end + "Files=<123456789a> " +
                      "\r\n-- All" + end + "Files=<123456789a> Pass=" + clock.first +
                      "us \r\n     2:         Deep=" + clock.second +
                      "us \r\n     3: Pass=" + clock.third + "us ",
                  TakeReport());
    }
}

TEST_F(Performance, WritesNothingUnlessItIsOnAndHasABuffer) {
    PerformanceLogger logger("Scan", "");
    UInt32PerformanceMeasurement number(logger, "N", "", 0, "");
    const auto report = [&] {
        logger.Start();
        for (unsigned i = 1; i <= 5; ++i) number.SetValueAndRecord(i, false);
        logger.StopAndProduceReport();
        return TakeReport();
    };
    EXPECT_EQ(240000u, settings_.NumberOf(L"Scan Size"));
    EXPECT_EQ("", report());
    const std::pair<DWORD, const char*> counts[] = {{0, "= 0, recorded = 0, attempted = 5"},
                                                    {1, "= 1, recorded = 0, attempted = 5"},
                                                    {2, "= 2, recorded = 1, attempted = 5"},
                                                    {3, "= 3, recorded = 2, attempted = 5"},
                                                    {6, "= 6, recorded = 5, attempted = 5"}};
    for (const auto& [size, line] : counts) {
        Enable(size);
        EXPECT_THAT(report(), testing::HasSubstr(line));
    }
    Enable(0x0fffffff);
    EXPECT_EQ("", report());
    Enable(0xffffffff);
    EXPECT_EQ("", report());
    Enable(5);
    const std::string path = std::exchange(redirected, "no such folder/report.txt");
    EXPECT_EQ("", report());
    redirected = path;
    logger.StopAndProduceReport();  // uses up the next start
    logger.Start();
    EXPECT_NE("", report());
}

}  // namespace
