// Times the passes of a background worker and prints the report that the logger wrote.
//
// The worker looks for prime numbers. Each event is a pass over the next thousand, timed as a whole
// and in its two halves.

#include <kitbag/kitbag.h>

#include <fstream>
#include <iostream>

namespace {

constexpr unsigned kPasses = 5;
constexpr unsigned kNumbersInHalf = 500;

bool IsPrime(unsigned number) {
    for (unsigned divisor = 2; divisor * divisor <= number; ++divisor)
        if (number % divisor == 0) return false;
    return number > 1;
}

class PrimeFinder : public EventThread {
 public:
    explicit PrimeFinder(PerformanceLogger& logger)
        : pass_(logger, "Pass", "", 0, ""),
          half_(logger, "Half", "", 1, ""),
          found_(logger, "Primes", "", 1, "%3I64d") {}
    // The object must outlive its thread.
    ~PrimeFinder() override { Stop(); }

    bool OnEvent() override {
        pass_.StartTimer();
        SearchHalf();
        SearchHalf();
        pass_.MarkTimerAndRecord(true);
        TriggerEvent();
        return ++passes_ < kPasses;
    }
    bool OnTimeout() override { return false; }

 private:
    void SearchHalf() {
        half_.StartTimer();
        unsigned primes = 0;
        for (const unsigned end = next_ + kNumbersInHalf; next_ < end; ++next_)
            if (IsPrime(next_)) ++primes;
        half_.MarkTimerAndRecord(true);
        found_.SetValueAndRecord(primes, false);
    }

    TimePerformanceMeasurement pass_;
    TimePerformanceMeasurement half_;
    UInt32PerformanceMeasurement found_;
    unsigned next_ = 0;
    unsigned passes_ = 0;
};

}  // namespace

int main() {
    PerformanceLogger logger("Timing report", "");
    // Support staff set this one by hand: "Timing report Enable" in "Debug\Performance".
    logger.Enable.SetValue(true);

    PrimeFinder finder(logger);
    // A logger is used from one thread at a time: here it is the finder's until that has finished.
    logger.Start();
    finder.Start(THREAD_PRIORITY_BELOW_NORMAL, 10000);
    finder.TriggerEvent();
    finder.WaitForFinish(INFINITE);
    logger.StopAndProduceReport();
    logger.Enable.SetValue(false);

    std::cout << std::ifstream("c:\\perflog.txt").rdbuf() << '\n';
    return std::cout ? 0 : 1;
}
