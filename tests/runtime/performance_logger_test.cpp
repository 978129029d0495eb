#include <gtest/gtest.h>
#include <kitbag/runtime/performance_measurement.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

#include <fstream>
#include <utility>

namespace {

using kitbag::test::ImportPatch;
using kitbag::test::RawKey;

long long frequency = 0;
long long now = 0;
BOOL WINAPI FakeFrequency(LARGE_INTEGER* result) { return (result->QuadPart = frequency) != 0; }
BOOL WINAPI FakeCounter(LARGE_INTEGER* result) { return (result->QuadPart = now) != 0; }
DWORD WINAPI FakeTicks() { return static_cast<DWORD>(now); }

std::filesystem::path redirected;
std::FILE* FakeOpen(const char* path, const char* mode) {
    EXPECT_STREQ("c:\\perflog.txt", path);
    return ::_wfopen(redirected.c_str(), mode[0] == 'w' && !mode[1] ? L"w" : L"");
}

class Performance : public testing::Test {
 protected:
    ~Performance() override { ::RegDeleteTreeW(settings_.Get(), nullptr); }
    void Enable(DWORD size) {
        settings_.Set(L"Scan Enable", DWORD{1});
        settings_.Set(L"Scan Size", size);
    }
    /// What was written since the last call.
    std::string TakeReport() {
        std::ifstream file(redirected, std::ios::binary);
        const std::string report(std::istreambuf_iterator<char>(file), {});
        file.close();
        std::filesystem::remove(redirected);
        return report;
    }

    RawKey settings_{"Debug\\Performance"};

 private:
    kitbag::test::TemporaryFolder folder_;
    ImportPatch open_{"fopen", FakeOpen};
    ImportPatch frequency_{"QueryPerformanceFrequency", FakeFrequency};
    ImportPatch counter_{"QueryPerformanceCounter", FakeCounter};
    ImportPatch ticks_{"GetTickCount", FakeTicks};

    void SetUp() override { redirected = folder_ / "report.txt"; }
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
        TimePerformanceMeasurement pass(logger, "Pass", "", 0, "");
        UInt32PerformanceMeasurement files(logger, "Files", "", 1, "<%I64x>");
        TimePerformanceMeasurement deep(logger, "Deep", "", 2, "");
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

TEST_F(Performance, KeepsWithinItsBuffer) {
    const struct {
        DWORD size;
        std::string counts, samples;
    } buffers[] = {
        {0, "0, recorded = 0, attempted = 5", ""},
        {1, "1, recorded = 0, attempted = 5", ""},
        {2, "2, recorded = 1, attempted = 5", "N=1 "},
        {3, "3, recorded = 2, attempted = 5", "N=1 N=2 "},
        {6, "6, recorded = 5, attempted = 5", "N=1 N=2 N=3 N=4 N=5 "},
    };
    PerformanceLogger logger("Scan", "");
    UInt32PerformanceMeasurement number(logger, "N", "", 0, "");
    for (const auto& buffer : buffers) {
        Enable(buffer.size);
        logger.Start();
        for (unsigned i = 1; i <= 5; ++i) number.SetValueAndRecord(i, false);
        logger.StopAndProduceReport();
        const std::string report = TakeReport();
        EXPECT_NE(std::string::npos, report.find("samples = " + buffer.counts + "\r\n")) << report;
        EXPECT_EQ("-\r\n\r\n" + buffer.samples, report.substr(report.rfind("-\r\n")));
    }
}

TEST_F(Performance, StaysOffUnlessItsSettingsAllowAPeriod) {
    const auto reports = [this](PerformanceLogger& logger) {
        logger.Start();
        logger.AddRecord(0, 1, true);
        logger.StopAndProduceReport();
        return !TakeReport().empty();
    };
    PerformanceLogger logger("Scan", "");
    EXPECT_EQ(240000u, settings_.NumberOf(L"Scan Size"));
    EXPECT_FALSE(settings_.Has(L"Scan Enable"));
    EXPECT_FALSE(reports(logger));
    for (const DWORD size : {0x0fffffffu, 0x10000000u, 0xffffffffu}) {
        Enable(size);
        EXPECT_FALSE(reports(logger));
    }
    Enable(5);
    EXPECT_TRUE(reports(logger));
    // A period whose report could not be written has ended all the same.
    const auto path = std::exchange(redirected, "no such folder/report.txt");
    EXPECT_FALSE(reports(logger));
    redirected = path;
    EXPECT_TRUE(reports(logger));
    // A stop too many uses up the next start.
    logger.StopAndProduceReport();
    logger.Start();
    EXPECT_TRUE(reports(logger));
}

}  // namespace
