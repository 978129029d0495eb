// The file server that the stand-ins of the network libraries speak for.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kitbag::test {

struct StandInShare {
    const char* name;
    const char* path;
    DWORD type = 0;
    /// Windows 9x only.
    WORD flags = 0;
};

/// Windows NT's form of a text.
inline std::wstring Wide(const char* text) {
    wchar_t wide[MAX_PATH];
    ::MultiByteToWideChar(CP_ACP, 0, text, -1, wide, MAX_PATH);
    return wide;
}

/// Each stand-in exports one under the name "server"; tests fill it in.
struct StandInServer {
    const char* name = "PC";
    std::vector<StandInShare> shares;
    DWORD nameStatus = 0;
    DWORD shareStatus = 0;
    /// What the library has not freed yet.
    int buffersHeld = 0;
};

}  // namespace kitbag::test

extern "C" kitbag::test::StandInServer server;
