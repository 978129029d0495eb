#include <gmock/gmock.h>
#include <kitbag/runtime/performance_measurement.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

#include <fstream>
#include <sstream>

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

struct Performance : testing::Test {
    void Enable(DWORD size) const {
        settings.Set(L"Scan Enable", DWORD{1});
        settings.Set(L"Scan Size", size);
    }
    /// What was written since the last call.
    std::string TakeReport() const {
        std::stringstream report;
        report << std::ifstream(file, std::ios::binary).rdbuf();
        std::filesystem::remove(file);
        return report.str();
    }

    kitbag::test::RawKey settings{"Debug\\Performance"};
    kitbag::test::TemporaryFolder folder;
    std::string file = redirected = (folder / "report.txt").string();
    ImportPatch open{"fopen", FakeOpen}, ticks{"GetTickCount", FakeTicks},
        resolution{"QueryPerformanceFrequency", FakeFrequency},
        counter{"QueryPerformanceCounter", FakeCounter};
};

TEST_F(Performance, ReportsByDepthWithEitherClock) {
    const struct {
        long long frequency;
        std::string resolution, first, second, third;
    } clocks[] = {{10000000, "100 nanosecs (10Mhz, 10000000hz)", "     2", "1234567", "1234570"},
                  {0, "1000000 nanosecs (0Mhz, 1000hz)", " 25000", "12345678000", "12345703000"}};
    Enable(6);
    for (const auto& clock : clocks) {
        frequency = clock.frequency;
        now = 1000;
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
    EXPECT_EQ(240000u, settings.NumberOf(L"Scan Size"));
    EXPECT_EQ("", report());
    for (const auto& [size, recorded] : {std::pair{0, 0}, {1, 0}, {2, 1}, {3, 2}, {6, 5}}) {
        Enable(static_cast<DWORD>(size));
        TWinString<char> counts;
        counts.Format("= %d, recorded = %d, attempted = 5", size, recorded);
        EXPECT_THAT(report(), testing::HasSubstr(counts));
    }
    for (const DWORD huge : {0x0fffffffu, 0xffffffffu}) {
        Enable(huge);
        EXPECT_EQ("", report());
    }
    Enable(5);
    redirected = "no such folder/report.txt";
    EXPECT_EQ("", report());
    redirected = file;
    logger.StopAndProduceReport();  // uses up the next start
    logger.Start();
    EXPECT_NE("", report());
}

}  // namespace
