#include <kitbag/runtime/performance_timer.h>

namespace {

constexpr long long kMillisecondsPerSecond = 1000;
constexpr unsigned long long kMicrosecondsPerMillisecond = 1000;
constexpr unsigned long long kMicrosecondsPerSecond = 1000000;

}  // namespace

PerformanceTimer::PerformanceTimer() {
    LARGE_INTEGER frequency = {};
    // A counter that never counts is none, whatever the answer says.
    isHighResolution_ = ::QueryPerformanceFrequency(&frequency) && frequency.QuadPart != 0;
    frequency_ = frequency.QuadPart;
}

PerformanceTimer::~PerformanceTimer() = default;

long long PerformanceTimer::GetResolution() const {
    return isHighResolution_ ? frequency_ : kMillisecondsPerSecond;
}

LARGE_INTEGER PerformanceTimer::MarkTime() const {
    LARGE_INTEGER time;
    if (!isHighResolution_ || !::QueryPerformanceCounter(&time)) time.QuadPart = ::GetTickCount();
    return time;
}

long long PerformanceTimer::CalcTimeInMicrosecs(LARGE_INTEGER start, LARGE_INTEGER end) const {
    // Multiplied without a sign: a span out of reach wraps.
    const auto span = static_cast<unsigned long long>(end.QuadPart) -
                      static_cast<unsigned long long>(start.QuadPart);
    if (!isHighResolution_) return static_cast<long long>(span * kMicrosecondsPerMillisecond);
    return static_cast<long long>(span * kMicrosecondsPerSecond) / frequency_;
}

long long PerformanceTimer::CalcTimeInMicrosecs(LARGE_INTEGER time) const {
    return CalcTimeInMicrosecs(LARGE_INTEGER{}, time);
}
