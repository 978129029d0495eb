#include <bench/measure.h>
#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kitbag::bench {

namespace {

constexpr int kAbsoluteRounds = 41;
constexpr double kRoundInNanoseconds = 4e6;
constexpr int kAttempts = 8;

double Now() {
    LARGE_INTEGER counter, frequency;
    ::QueryPerformanceFrequency(&frequency);
    ::QueryPerformanceCounter(&counter);
    return static_cast<double>(counter.QuadPart) * 1e9 / static_cast<double>(frequency.QuadPart);
}

double Time(const Calls& calls, int count) {
    const double start = Now();
    calls(count);
    return (Now() - start) / count;
}

/// So many calls that a round is long against the clock's resolution.
int CallsPerRound(const Calls& calls) {
    int count = 1;
    while (Time(calls, count) * count < kRoundInNanoseconds && count < (1 << 26)) count *= 2;
    return count;
}

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// False where the machine was busy with something else at one end of the run.
bool IsSteady(const std::vector<double>& times) {
    const auto third = static_cast<std::ptrdiff_t>(times.size() / 3);
    const double first = Median({times.begin(), times.begin() + third});
    const double last = Median({times.end() - third, times.end()});
    return std::abs(first - last) <= 0.2 * std::min(first, last);
}

std::string Duration(double nanoseconds) {
    char text[40];
    if (nanoseconds < 1e3)
        std::snprintf(text, sizeof text, "%.1f ns", nanoseconds);
    else if (nanoseconds < 1e6)
        std::snprintf(text, sizeof text, "%.2f us", nanoseconds / 1e3);
    else
        std::snprintf(text, sizeof text, "%.2f ms", nanoseconds / 1e6);
    return text;
}

std::string Ratio(double ratio) {
    char text[40];
    std::snprintf(text, sizeof text, "%.3f", ratio);
    return text;
}

struct Rounds {
    std::vector<double> library, reference, ratios;
};

Rounds Interleave(const Comparison& comparison) {
    const int libraryCalls = CallsPerRound(comparison.library);
    const int referenceCalls = CallsPerRound(comparison.reference);
    Rounds rounds;
    for (int round = 0; round < comparison.rounds; ++round) {
        double library = 0, reference = 0;
        if (round % 2 == 0) library = Time(comparison.library, libraryCalls);
        reference = Time(comparison.reference, referenceCalls);
        if (round % 2 != 0) library = Time(comparison.library, libraryCalls);
        rounds.library.push_back(library);
        rounds.reference.push_back(reference);
        rounds.ratios.push_back(library / reference);
    }
    return rounds;
}

const char* Verdict(bool steady, bool held) {
    if (!held) return "EXCEEDED";
    return steady ? "" : "unsteady";
}

void PrintLine(const Result& line) {
    std::printf("%-52s %10s   %-57s %7s   %-12s %s\n", line.operation.c_str(), line.library.c_str(),
                line.reference.c_str(), line.ratio.c_str(), line.bound.c_str(),
                line.verdict.c_str());
}

}  // namespace

Result Measure(const Comparison& comparison) {
    Rounds rounds;
    bool steady = false;
    for (int attempt = 0; !steady && attempt < kAttempts; ++attempt) {
        rounds = Interleave(comparison);
        steady = IsSteady(rounds.library) && IsSteady(rounds.reference);
    }
    const double ratio = Median(rounds.ratios);
    Result result;
    result.operation = comparison.operation;
    result.library = Duration(Median(rounds.library));
    result.reference = Duration(Median(rounds.reference)) + "  " + comparison.referenceName;
    result.ratio = Ratio(ratio);
    result.bound = comparison.bound > 0 ? "<= " + Ratio(comparison.bound) : "information";
    result.verdict = Verdict(steady, comparison.bound <= 0 || ratio <= comparison.bound);
    return result;
}

Result Measure(const Absolute& absolute) {
    std::vector<double> times;
    const int calls = CallsPerRound(absolute.library);
    bool steady = false;
    for (int attempt = 0; !steady && attempt < kAttempts; ++attempt) {
        times.clear();
        for (int round = 0; round < kAbsoluteRounds; ++round)
            times.push_back(Time(absolute.library, calls));
        steady = IsSteady(times);
    }
    const double time = Median(times);
    Result result;
    result.operation = absolute.operation;
    result.library = Duration(time);
    result.bound = "<= " + Duration(absolute.boundInNanoseconds);
    result.verdict = Verdict(steady, time <= absolute.boundInNanoseconds);
    return result;
}

void PrintHeading() { PrintLine({"operation", "library", "reference", "ratio", "should be"}); }

bool Print(const std::vector<Result>& results) {
    bool allHeld = true;
    for (const Result& result : results) {
        PrintLine(result);
        allHeld = allHeld && result.verdict.empty();
    }
    return allHeld;
}

}  // namespace kitbag::bench
