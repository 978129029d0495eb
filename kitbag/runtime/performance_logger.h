// Collects timings and counters of a running program and writes them into a text report.
//
//     PerformanceLogger logger("Scan", "");
//     TimePerformanceMeasurement pass(logger, "Pass", "", 0, "");
//     UInt32PerformanceMeasurement files(logger, "Files", "", 1, "");
//
//     logger.Start();
//     pass.StartTimer();
//     files.SetValueAndRecord(ScanFolder(), true);
//     pass.MarkTimerAndRecord(false);
//     logger.StopAndProduceReport();  // "c:\perflog.txt"
//
// The settings "<name> Enable" and "<name> Size" in the section "Debug\Performance" switch the
// logger on (off unless set) and give the number of samples that it has room for. While it is off a
// sample costs one test; while it is on, the writing of one record into a buffer that was allocated
// at the start. All formatting is left to the report.
//
// Nothing is locked: callers use a logger and its measurements from one thread at a time. No
// failure is reported. The measurements live until the last report, and the logger for as long as
// they do.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/runtime/performance_timer.h>
#include <kitbag/values/boolean_value.h>
#include <kitbag/values/number_values.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <vector>

class PerformanceMeasurement;

/// One sample.
struct PerformanceLoggerRecord {
    /// The measurement's position in the order of registration.
    std::uint16_t measurementIndex;
    /// Bit 0: the sample starts a new line of the report.
    std::uint16_t flags;
    /// Units of time, or the number itself.
    std::uint64_t value;
};

/// Gathers the samples of its measurements between Start and StopAndProduceReport.
class KITBAG_API PerformanceLogger : public PerformanceTimer {
 public:
    /// The name is the report's title and the prefix of the settings; the second text is kept and
    /// not used. Writes the default of "<name> Size" where the registry has none.
    PerformanceLogger(TWinString<char> name, TWinString<char> second);
    PerformanceLogger(const PerformanceLogger&) = delete;
    PerformanceLogger& operator=(const PerformanceLogger&) = delete;
    ~PerformanceLogger() override;

    /// Starts a logging period, with the settings as they are now. Inside a period, or one that
    /// could not begin because the logger is off or the buffer too large, it only counts.
    void Start();
    /// Ends the period that the matching Start began: writes the report, if the file can be opened,
    /// and forgets the samples. One Stop too many counts below 0: from then on no balanced pair
    /// logs again, until a Start without its Stop makes up for it.
    void StopAndProduceReport();
    /// Adds a sample; drops it, uncounted, outside a period. In a full buffer the last record
    /// always holds the latest sample. The report leaves that record out, and samples of a
    /// measurement that is not registered.
    void AddRecord(unsigned long measurementIndex, unsigned long long value, bool newLine);
    /// Registers a measurement, which stays the caller's. The measurements do this themselves.
    void AddMeasurement(PerformanceMeasurement* measurement);

 private:
    void StoreRecord(unsigned long measurementIndex, unsigned long long value, bool newLine);
    void WriteReport() const;
    void WriteSamples(std::FILE* file, std::optional<int> depth) const;

    TWinString<char> name_;

    // Public between private fields: the order of all of them is part of the interface.
 public:
    /// The two settings; a change takes effect at the next Start.
    BooleanValue Enable;
    UInt32Value Size;

 private:
    bool isActive_ = false;
    unsigned long maximumDepth_ = 0;
    unsigned long capacity_ = 0;
    unsigned long recorded_ = 0;
    unsigned long long attempted_ = 0;
    std::unique_ptr<PerformanceLoggerRecord[]> buffer_;
    std::vector<PerformanceMeasurement*> measurements_;
    long startCount_ = 0;
    TWinString<char> second_;
};
