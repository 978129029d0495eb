#include <kitbag/frame/guard.h>
#include <kitbag/frame/owned.h>
#include <kitbag/runtime/performance_logger.h>
#include <kitbag/runtime/performance_measurement.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace {

constexpr char kSection[] = "Debug\\Performance";
constexpr unsigned long kDefaultSize = 240000;
/// The records of a new buffer that are cleared; to clear a whole large one would take its time.
constexpr unsigned long kClearedRecords = 4;
constexpr std::uint16_t kStartsLine = 1;

constexpr char kReportFile[] = "c:\\perflog.txt";
constexpr char kRule[] = "------------------------------------------------------------";
static_assert(sizeof kRule == 60 + 1);

struct ReportFilePolicy {
    using Handle = std::FILE*;
    static Handle None() { return nullptr; }
    static void Close(std::FILE* file) { static_cast<void>(std::fclose(file)); }
};
using ReportFile = kitbag::Owned<ReportFilePolicy>;

/// A failed write shortens the report, and nobody can be told.
[[gnu::format(printf, 2, 3)]] void Print(std::FILE* file, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    static_cast<void>(std::vfprintf(file, format, arguments));
    va_end(arguments);
}

}  // namespace

static_assert(sizeof(PerformanceLoggerRecord) == 16);

PerformanceLogger::PerformanceLogger(TWinString<char> name, TWinString<char> second)
    : name_(std::move(name)),
      Enable(kSection, name_ + " Enable", false),
      Size(kSection, name_ + " Size", false),
      second_(std::move(second)) {
    Enable.SetDefaultValue(false, true);
    Size.SetDefaultValue(kDefaultSize, true);
}

PerformanceLogger::~PerformanceLogger() = default;

void PerformanceLogger::Start() {
    if (startCount_++ != 0 || !Enable.GetValue()) return;
    const unsigned long capacity = Size.GetValue();
    buffer_ = kitbag::Guarded(
        [=] { return std::make_unique_for_overwrite<PerformanceLoggerRecord[]>(capacity); });
    if (!buffer_) return;
    std::fill_n(buffer_.get(), std::min(capacity, kClearedRecords), PerformanceLoggerRecord{});
    capacity_ = capacity;
    recorded_ = 0;
    attempted_ = 0;
    isActive_ = true;
}

void PerformanceLogger::StopAndProduceReport() {
    if (--startCount_ != 0 || !isActive_) return;
    isActive_ = false;
    // The period ends whatever the measurements' own reports do.
    kitbag::Guarded([this] {
        WriteReport();
        return true;
    });
    buffer_.reset();
    capacity_ = 0;
    recorded_ = 0;
    attempted_ = 0;
}

void PerformanceLogger::AddRecord(unsigned long measurementIndex, unsigned long long value,
                                  bool newLine) {
    if (isActive_) StoreRecord(measurementIndex, value, newLine);
}

// Apart from AddRecord, which saves no registers for it while the logger is off.
[[gnu::noinline]] void PerformanceLogger::StoreRecord(unsigned long measurementIndex,
                                                      unsigned long long value, bool newLine) {
    const unsigned long position = recorded_;
    if (position + 1 < capacity_) recorded_ = position + 1;
    ++attempted_;
    if (position < capacity_)
        buffer_[position] = {static_cast<std::uint16_t>(measurementIndex),
                             newLine ? kStartsLine : std::uint16_t{0}, value};
}

void PerformanceLogger::AddMeasurement(PerformanceMeasurement* measurement) {
    measurement->index_ = static_cast<int>(measurements_.size());
    measurements_.push_back(measurement);
    if (std::cmp_greater(measurement->depth_, maximumDepth_))
        maximumDepth_ = static_cast<unsigned long>(measurement->depth_);
}

void PerformanceLogger::WriteReport() const {
    const ReportFile owner(std::fopen(kReportFile, "w"));
    if (!owner) return;
    std::FILE* file = owner.Get();
    const long long resolution = GetResolution();

    // Tools read this report: its wording stays as it is.
    Print(file, "Peformance report: %s\n\n", name_.c_str());
    Print(file, "Perf Resolution: %lld nanosecs (%lldMhz, %lldhz)\n\n", 1000000000 / resolution,
          resolution / 1000000, resolution);
    Print(file, "Available samples = %lu, recorded = %lu, attempted = %llu\n", capacity_, recorded_,
          attempted_);
    // The deepest measurements have no section of their own; they show in the last one.
    for (int depth = 0; std::cmp_less(depth, maximumDepth_); ++depth) {
        Print(file, "\n-- Depth=%d %s\n\n", depth, kRule);
        WriteSamples(file, depth);
    }
    Print(file, "\n-- All %s\n\n", kRule);
    WriteSamples(file, std::nullopt);
}

/// The samples of one depth, or all of them, indented by their depth.
void PerformanceLogger::WriteSamples(std::FILE* file, std::optional<int> depth) const {
    for (unsigned long i = 0; i < recorded_; ++i) {
        PerformanceLoggerRecord& record = buffer_[i];
        // A caller of AddRecord may have named a measurement that was never registered.
        if (record.measurementIndex >= measurements_.size()) continue;
        PerformanceMeasurement& measurement = *measurements_[record.measurementIndex];
        if (depth && *depth != measurement.depth_) continue;

        if (i > 0 && record.flags & kStartsLine) {
            Print(file, "\n%6lu: ", i);
            for (int level = 0; !depth && level < measurement.depth_; ++level) Print(file, "    ");
        }
        Print(file, "%s=%s ", measurement.GetLabel().c_str(), measurement.Report(&record).c_str());
    }
}
