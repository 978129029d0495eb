// The file server that the stand-ins of the network libraries speak for.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

struct StandInShare {
    std::string name;
    /// Where it is empty, Windows 9x hands out a pointer that leads nowhere.
    std::string path;
    DWORD type = 0;
};

/// Each stand-in has one under the name "server"; tests fill it in.
struct StandInServer {
    std::vector<StandInShare> shares;
    /// How the list of shares ends.
    DWORD status = 0;
    /// What the library has not freed yet.
    int buffersHeld = 0;
};

extern "C" StandInServer server;
