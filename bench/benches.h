// The measurements, one list for each room.
#pragma once

#include <bench/measure.h>

#include <vector>

namespace kitbag::bench {

std::vector<Result> MeasureFrame();
std::vector<Result> MeasureRegistry();

}  // namespace kitbag::bench
