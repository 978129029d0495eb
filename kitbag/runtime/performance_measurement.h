// What a PerformanceLogger records: times and numbers.
//
// A measurement is made for one logger, which must outlive it and to which it adds itself; it must
// live until the logger's last report. A copy is not added: it reports as the measurement that it
// was copied from.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/runtime/performance_logger.h>

/// The base of all measurements. It does not add itself to the logger: the constructor of a derived
/// class does, with AddMeasurement.
class KITBAG_API PerformanceMeasurement {
 public:
    /// The label stands before each sample; the second text is kept and not used. The depth groups
    /// the report. The format is a printf-style one for a sample, a 64-bit number; an empty one is
    /// the class's own.
    PerformanceMeasurement(PerformanceLogger& logger, TWinString<char> label,
                           TWinString<char> second, int depth, TWinString<char> format);
    PerformanceMeasurement(const PerformanceMeasurement&) = default;
    virtual ~PerformanceMeasurement();

    /// A new copy, which the caller deletes.
    virtual PerformanceMeasurement* Copy() = 0;
    virtual TWinString<char> GetLabel();

 protected:
    friend class PerformanceLogger;

    /// The text of one sample.
    virtual TWinString<char> Report(PerformanceLoggerRecord* record) = 0;
    /// A number in the measurement's format, or else in the class's own.
    TWinString<char> FormatNumber(const char* classFormat, unsigned long long number) const;
    /// Adds a sample of this measurement to the logger.
    void Record(unsigned long long value, bool newLine);

    PerformanceLogger& logger_;

 private:
    TWinString<char> label_;
    TWinString<char> second_;
    TWinString<char> format_;
    int index_ = -1;
    int depth_;
};

/// Elapsed times, reported in microseconds.
class KITBAG_API TimePerformanceMeasurement : public PerformanceMeasurement {
 public:
    TimePerformanceMeasurement(PerformanceLogger& logger, TWinString<char> label,
                               TWinString<char> second, int depth, TWinString<char> format);

    void StartTimer();
    /// Records the time since StartTimer. Further marks measure from the same start.
    void MarkTimerAndRecord(bool newLine);
    PerformanceMeasurement* Copy() override;

 protected:
    TWinString<char> Report(PerformanceLoggerRecord* record) override;

 private:
    long long startTime_ = 0;
    long long markTime_ = 0;
};

/// Numbers, of up to 64 bits.
class KITBAG_API UInt32PerformanceMeasurement : public PerformanceMeasurement {
 public:
    UInt32PerformanceMeasurement(PerformanceLogger& logger, TWinString<char> label,
                                 TWinString<char> second, int depth, TWinString<char> format);

    void SetValueAndRecord(unsigned long long value, bool newLine);
    PerformanceMeasurement* Copy() override;

 protected:
    TWinString<char> Report(PerformanceLoggerRecord* record) override;
};
