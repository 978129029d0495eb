// The file server that a stand-in of the network libraries speaks for.
#pragma once

#include <string>
#include <vector>

struct StandInShare {
    /// For an empty path Windows 9x hands out a pointer that leads nowhere.
    std::wstring name, path;
    unsigned type = 0;
};

struct StandInServer {
    std::vector<StandInShare> shares;
    /// What the server answers when it has told its shares, or is asked for its name.
    unsigned sharesStatus = 0, nameStatus = 0;
    /// Of the 8-bit texts.
    unsigned codePage = 0;
    /// The memory blocks that callers have not given back.
    int blocks = 0;
};

/// Each stand-in has its own; tests fill them in.
extern "C" StandInServer server;
