#include <gmock/gmock.h>
#include <kitbag/runtime/performance_measurement.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

#include <fstream>

namespace {

using namespace kitbag::test;

long long frequency = 0, now = 1000;
BOOL WINAPI FakeFrequency(LARGE_INTEGER* result) { return (result->QuadPart = frequency) != 0; }
BOOL WINAPI FakeCounter(LARGE_INTEGER* result) { return (result->QuadPart = now) != 0; }
DWORD WINAPI FakeTicks() { return static_cast<DWORD>(now); }

std::string file;
std::FILE* FakeOpen(const char* path, const char* mode) {
    EXPECT_EQ("c:\\perflog.txt as w", path + std::string(" as ") + mode);
    return std::fopen(file.c_str(), mode);
}

struct Performance : testing::Test {
    Performance() { file = (folder / "report.txt").string(); }
    /// Stops the logger; answers what it wrote then.
    static std::string ReportOf(PerformanceLogger& logger) {
        std::filesystem::remove(file);
        logger.StopAndProduceReport();
        return (std::ostringstream() << std::ifstream(file, std::ios::binary).rdbuf()).str();
    }

    RawKey settings{"Debug\\Performance"};
    TemporaryFolder folder;
    ImportPatch open{"fopen", FakeOpen}, ticks{"GetTickCount", FakeTicks},
        resolution{"QueryPerformanceFrequency", FakeFrequency},
        counter{"QueryPerformanceCounter", FakeCounter};
};

TEST_F(Performance, ReportsByDepthWithEitherClock) {
    settings.Set(L"Scan Enable", 1);
    using Clock = std::tuple<long long, std::string, std::string, std::string>;
    for (const auto& [hertz, speed, first, last] :
         {Clock{10000000, "100 nanosecs (10Mhz, 10000000hz)", "     2", "1234570"},
          Clock{0, "1000000 nanosecs (0Mhz, 1000hz)", " 25000", "12345703000"}}) {
        frequency = hertz;
        PerformanceLogger logger("Scan", "");
        TimePerformanceMeasurement pass(logger, "Pass", "", 0, ""), deep(logger, "Deep", "", 2, "");
        UInt32PerformanceMeasurement files(logger, "Files", "", 1, "<%I64x>");
        logger.Start();
        pass.StartTimer();
        deep.StartTimer();
        files.SetValueAndRecord(0x123456789a, true);
        now += 25;
        pass.MarkTimerAndRecord(false);
        logger.Start();
        EXPECT_EQ("", ReportOf(logger));
        now += 12345678;
        deep.MarkTimerAndRecord(true);
        pass.MarkTimerAndRecord(true);
        logger.AddRecord(3, 0, true);  // never registered
        const std::string rule = ' ' + std::string(60, '-') + "\r\n\r\n";
        EXPECT_EQ("Peformance report: Scan\r\n\r\nPerf Resolution: " + speed +
                      "\r\n\r\nAvailable samples = 240000, recorded = 5, attempted = 5\r\n" +
                      "\r\n-- Depth=0" + rule + "Pass=" + first + "us \r\n     3: Pass=" + last +
                      "us \r\n-- Depth=1" + rule + "Files=<123456789a> \r\n-- All" + rule +
                      "Files=<123456789a> Pass=" + first + "us \r\n     2:         Deep=" + last +
                      "us \r\n     3: Pass=" + last + "us ",
                  ReportOf(logger));
    }
}

TEST_F(Performance, WritesNothingUnlessItIsOnAndHasABuffer) {
    PerformanceLogger logger("Scan", "");
    UInt32PerformanceMeasurement number(logger, "N", "", 0, "");
    const auto report = [&] {
        logger.Start();
        for (int i = 0; i < 5; ++i) number.SetValueAndRecord(7, false);
        return ReportOf(logger);
    };
    EXPECT_EQ("", report());
    settings.Set(L"Scan Enable", 1);
    settings.Set(L"Scan Size", 0xffffffff);
    EXPECT_EQ("", report());
    settings.Set(L"Scan Size", 3);
    EXPECT_THAT(report(), testing::HasSubstr("samples = 3, recorded = 2, attempted = 5"));
    logger.StopAndProduceReport();  // uses up the next start
    EXPECT_EQ("", report());
}

}  // namespace
