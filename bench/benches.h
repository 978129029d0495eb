// The measurements, a list of each kind.
#pragma once

#include <bench/measure.h>

#include <vector>

namespace kitbag::bench {

std::vector<Result> MeasureFrame();
std::vector<Result> MeasureRegistry();
std::vector<Result> MeasureValues();
std::vector<Result> MeasureChecksums();
std::vector<Result> MeasureFiles();
std::vector<Result> MeasureRuntime();
std::vector<Result> MeasureSettings();

}  // namespace kitbag::bench
