// Times an operation of the library against a reference that is measured in the same run.
//
// Rounds of both are interleaved, so that what else the machine does falls on both alike, and the
// ratio is the median of the rounds' ratios. Where a bound lies within the noise of the rounds,
// they are repeated, and all of them judge together.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kitbag::bench {

/// Makes a number of calls in a row.
using Calls = std::function<void(int count)>;

struct Comparison {
    std::string operation;
    Calls library;
    std::string referenceName;
    Calls reference;
    /// What the ratio must not exceed; 0 where it is for information.
    double bound = 0;
    int rounds = 41;
};

/// An operation whose time, or size, has a bound of its own.
struct Absolute {
    std::string operation;
    Calls library;
    double boundInNanoseconds;
};

/// One line of the table.
struct Result {
    std::string operation;
    std::string library;
    std::string reference;
    std::string ratio;
    std::string bound;
    /// Empty where all is well.
    std::string verdict = {};
};

/// The median time of one call, of runs whose first and last rounds differ by a fifth at most;
/// unsteady runs are discarded and repeated. The verdict tells where all were unsteady, except for
/// a row without a bound.
Result Measure(const Comparison& comparison);
Result Measure(const Absolute& absolute);

/// Prints the table's first line.
void PrintHeading();
/// Prints the table's lines; false where a verdict is not empty.
bool Print(const std::vector<Result>& results);

/// Keeps the compiler from leaving out what a benchmark computes.
template <class T>
void Keep(const T& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

}  // namespace kitbag::bench
