// A logger that is switched on, and what it reports.
#pragma once

#include <kitbag/runtime/performance_measurement.h>
#include <tests/runtime/fake_clocks.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

#include <sstream>

namespace kitbag::test {

/// For loggers of the name "Scan".
struct PerformancePeriod : testing::Test {
    PerformancePeriod() {
        file = (folder / "report.txt").string();
        settings.Set(L"Scan Enable", 1);
    }
    /// Stops the logger; answers what it wrote then, or "none".
    static std::string ReportOf(PerformanceLogger& logger) {
        std::filesystem::remove(file);
        logger.StopAndProduceReport();
        if (!std::filesystem::exists(file)) return "none";
        return (std::ostringstream() << std::ifstream(file).rdbuf()).str();
    }

    static inline std::string file;
    const TemporaryFolder folder;
    const RawKey settings{"Debug\\Performance"};
    const FakeClocks clocks;
    const ImportPatch open{"fopen", +[](const char* path, const char* mode) {
                               EXPECT_STREQ("c:\\perflog.txt", path);
                               EXPECT_STREQ("w", mode);
                               return std::fopen(file.c_str(), mode);
                           }};
};

}  // namespace kitbag::test
