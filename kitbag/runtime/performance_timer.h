// Time stamps of the best clock that the system has.
#pragma once

#include <kitbag/frame/export.h>
#include <windows.h>

/// Reads the high-resolution performance counter, or the tick count where the system has no such
/// counter. Which of the two it is gets settled at construction.
class KITBAG_API PerformanceTimer {
 public:
    PerformanceTimer();
    PerformanceTimer(const PerformanceTimer&) = default;
    PerformanceTimer& operator=(const PerformanceTimer&) = default;
    virtual ~PerformanceTimer();

    /// Units of time in a second: the counter's frequency, or 1000.
    long long GetResolution() const;
    /// The present time in these units. A counter that cannot be read gives the tick count.
    LARGE_INTEGER MarkTime() const;
    /// The microseconds between two times, or in one span of time; rounded towards 0. Spans of more
    /// than 2^63 / 1,000,000 units are out of reach.
    long long CalcTimeInMicrosecs(LARGE_INTEGER start, LARGE_INTEGER end) const;
    long long CalcTimeInMicrosecs(LARGE_INTEGER time) const;

 private:
    bool isHighResolution_;
    long long frequency_;
};
