// What a sample costs while a logging period is active, and while none is.

#include <bench/benches.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/runtime/performance_logger.h>
#include <tests/support/import_patch.h>

#include <cstdint>
#include <cstdio>
#include <memory>

namespace kitbag::bench {

namespace {

struct Sample {
    std::uint16_t index;
    std::uint16_t flags;
    unsigned long long value;
};

/// A bounded array of samples behind a call.
struct Samples {
    std::vector<Sample> samples = std::vector<Sample>(240000);
    std::size_t used = 0;

    [[gnu::noipa]] void Add(unsigned long index, unsigned long long value, bool newLine) {
        if (used + 1 < samples.size())
            samples[used++] = {static_cast<std::uint16_t>(index), newLine, value};
    }
};

struct Nothing {
    [[gnu::noipa]] void Add(unsigned long, unsigned long long, bool) {}
};

std::FILE* OpenNothing(const char*, const char* mode) { return std::fopen("NUL", mode); }

Calls Add(const std::shared_ptr<PerformanceLogger>& logger) {
    return [=](int count) {
        for (int i = 0; i < count; ++i)
            logger->AddRecord(0, static_cast<unsigned long long>(i), false);
    };
}

}  // namespace

std::vector<Result> MeasureRuntime() {
    const test::ImportPatch open("fopen", OpenNothing);
    KB_SetBoolA("Debug\\Performance", "Bench Enable", true);
    const auto active = std::make_shared<PerformanceLogger>("Bench", "");
    const auto inactive = std::make_shared<PerformanceLogger>("Inactive", "");
    active->Start();
    const auto samples = std::make_shared<Samples>();
    const Calls store = [=](int count) {
        samples->used = 0;
        for (int i = 0; i < count; ++i) samples->Add(0, static_cast<unsigned long long>(i), false);
    };
    const Calls empty = [](int count) {
        for (int i = 0; i < count; ++i) Nothing().Add(0, static_cast<unsigned long long>(i), false);
    };
    std::vector<Result> results = {
        Measure(Comparison{"PerformanceLogger::AddRecord, active", Add(active),
                           "a bounded store of 16 bytes", store, 2}),
        Measure(Comparison{"PerformanceLogger::AddRecord, inactive", Add(inactive),
                           "a call of an empty function", empty, 2})};
    active->StopAndProduceReport();
    return results;
}

}  // namespace kitbag::bench
