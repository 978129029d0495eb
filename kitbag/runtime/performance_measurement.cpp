#include <kitbag/runtime/performance_measurement.h>

#include <utility>

PerformanceMeasurement::PerformanceMeasurement(PerformanceLogger& logger, TWinString<char> label,
                                               TWinString<char> second, int depth,
                                               TWinString<char> format)
    : logger_(logger),
      label_(std::move(label)),
      second_(std::move(second)),
      format_(std::move(format)),
      depth_(depth) {}

PerformanceMeasurement::~PerformanceMeasurement() = default;

TWinString<char> PerformanceMeasurement::GetLabel() { return label_; }

TWinString<char> PerformanceMeasurement::FormatNumber(const char* classFormat,
                                                      unsigned long long number) const {
    TWinString<char> text;
    text.Format(format_.empty() ? classFormat : format_.c_str(), number);
    return text;
}

void PerformanceMeasurement::Record(unsigned long long value, bool newLine) {
    logger_.AddRecord(static_cast<unsigned long>(index_), value, newLine);
}

TimePerformanceMeasurement::TimePerformanceMeasurement(PerformanceLogger& logger,
                                                       TWinString<char> label,
                                                       TWinString<char> second, int depth,
                                                       TWinString<char> format)
    : PerformanceMeasurement(logger, std::move(label), std::move(second), depth,
                             std::move(format)) {
    logger.AddMeasurement(this);
}

void TimePerformanceMeasurement::StartTimer() { startTime_ = logger_.MarkTime().QuadPart; }

void TimePerformanceMeasurement::MarkTimerAndRecord(bool newLine) {
    markTime_ = logger_.MarkTime().QuadPart;
    Record(static_cast<unsigned long long>(markTime_ - startTime_), newLine);
}

PerformanceMeasurement* TimePerformanceMeasurement::Copy() {
    return new TimePerformanceMeasurement(*this);
}

TWinString<char> TimePerformanceMeasurement::Report(PerformanceLoggerRecord* record) {
    LARGE_INTEGER time;
    time.QuadPart = static_cast<long long>(record->value);
    return FormatNumber("%6I64dus",
                        static_cast<unsigned long long>(logger_.CalcTimeInMicrosecs(time)));
}

UInt32PerformanceMeasurement::UInt32PerformanceMeasurement(PerformanceLogger& logger,
                                                           TWinString<char> label,
                                                           TWinString<char> second, int depth,
                                                           TWinString<char> format)
    : PerformanceMeasurement(logger, std::move(label), std::move(second), depth,
                             std::move(format)) {
    logger.AddMeasurement(this);
}

void UInt32PerformanceMeasurement::SetValueAndRecord(unsigned long long value, bool newLine) {
    Record(value, newLine);
}

PerformanceMeasurement* UInt32PerformanceMeasurement::Copy() {
    return new UInt32PerformanceMeasurement(*this);
}

TWinString<char> UInt32PerformanceMeasurement::Report(PerformanceLoggerRecord* record) {
    return FormatNumber("%I64d", record->value);
}
