// The shares of the computer that the stand-ins of the network libraries speak for.
#pragma once

#include <string>
#include <vector>

struct StandInShare {
    /// For an empty path Windows 9x hands out a pointer that leads nowhere.
    std::string name, path;
    unsigned type;
};

/// Each stand-in has its own; tests fill them in.
extern "C" std::vector<StandInShare> shares;
