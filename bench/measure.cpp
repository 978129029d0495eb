#include <bench/measure.h>
#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kitbag::bench {

namespace {

using Series = std::vector<double>;

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

/// What so many of every hundred values are below.
double Percentile(Series values, std::size_t percent) {
    const auto place =
        values.begin() + static_cast<std::ptrdiff_t>((values.size() - 1) * percent / 100);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}
double Median(const Series& values) { return Percentile(values, 50); }

/// False where the machine was busy with something else at one end of the run.
bool IsSteady(const Series& times) {
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

/// The times of one run or of several, and what the bound is for: ratios, or the times themselves.
struct Rounds {
    Series library, reference, judged;
    bool steady = true;

    void Append(const Rounds& more) {
        library.insert(library.end(), more.library.begin(), more.library.end());
        reference.insert(reference.end(), more.reference.begin(), more.reference.end());
        judged.insert(judged.end(), more.judged.begin(), more.judged.end());
    }
};

Rounds Interleave(const Comparison& comparison, int libraryCalls, int referenceCalls) {
    Rounds rounds;
    for (int round = 0; round < comparison.rounds; ++round) {
        double library = 0, reference = 0;
        if (round % 2 == 0) library = Time(comparison.library, libraryCalls);
        reference = Time(comparison.reference, referenceCalls);
        if (round % 2 != 0) library = Time(comparison.library, libraryCalls);
        rounds.library.push_back(library);
        rounds.reference.push_back(reference);
        rounds.judged.push_back(library / reference);
    }
    rounds.steady = IsSteady(rounds.library) && IsSteady(rounds.reference);
    return rounds;
}

/// True where the rounds on one side of the bound are no more than chance.
bool IsWithinNoise(double bound, const Series& judged) {
    return Percentile(judged, 10) <= bound && bound <= Percentile(judged, 90);
}

/// The rounds of as many steady runs as it takes to tell on which side of the bound they are; those
/// of the last run where none was steady.
template <class Run>
Rounds RunUntilClear(double bound, Run run) {
    Rounds steady;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const Rounds rounds = run();
        if (rounds.steady)
            steady.Append(rounds);
        else if (attempt == kAttempts - 1 && steady.judged.empty())
            return rounds;
        if (!steady.judged.empty() && !IsWithinNoise(bound, steady.judged)) break;
    }
    return steady;
}

const char* Verdict(const Rounds& rounds, double bound) {
    if (bound <= 0) return "";
    if (Median(rounds.judged) > bound) return "EXCEEDED";
    return rounds.steady ? "" : "unsteady";
}

void PrintLine(const Result& line) {
    std::printf("%-52s %10s   %-57s %7s   %-12s %s\n", line.operation.c_str(), line.library.c_str(),
                line.reference.c_str(), line.ratio.c_str(), line.bound.c_str(),
                line.verdict.c_str());
}

}  // namespace

Result Measure(const Comparison& comparison) {
    const int libraryCalls = CallsPerRound(comparison.library);
    const int referenceCalls = CallsPerRound(comparison.reference);
    const Rounds rounds = RunUntilClear(
        comparison.bound, [&] { return Interleave(comparison, libraryCalls, referenceCalls); });
    Result result;
    result.operation = comparison.operation;
    result.library = Duration(Median(rounds.library));
    result.reference = Duration(Median(rounds.reference)) + "  " + comparison.referenceName;
    result.ratio = Ratio(Median(rounds.judged));
    result.bound = comparison.bound > 0 ? "<= " + Ratio(comparison.bound) : "information";
    result.verdict = Verdict(rounds, comparison.bound);
    return result;
}

Result Measure(const Absolute& absolute) {
    const int calls = CallsPerRound(absolute.library);
    const Rounds rounds = RunUntilClear(absolute.boundInNanoseconds, [&] {
        Rounds run;
        for (int round = 0; round < kAbsoluteRounds; ++round)
            run.judged.push_back(Time(absolute.library, calls));
        run.steady = IsSteady(run.judged);
        return run;
    });
    Result result;
    result.operation = absolute.operation;
    result.library = Duration(Median(rounds.judged));
    result.bound = "<= " + Duration(absolute.boundInNanoseconds);
    result.verdict = Verdict(rounds, absolute.boundInNanoseconds);
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
