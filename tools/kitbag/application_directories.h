// Where a program would find the application's directories.
#pragma once

#include <string>

namespace kitbag::tool {

struct ApplicationDirectory {
    /// With the backslash at its end; empty where there is none.
    std::wstring path;
    /// "remembered", "found upward", or what a program would do.
    std::wstring origin;
};

/// Looks as the library does for a program in that folder (which ends in a backslash), but neither
/// asks anybody nor creates, remembers or forgets anything. COM must be initialised: links are
/// followed.
ApplicationDirectory ConfigDirectory(const std::wstring& programFolder);
ApplicationDirectory SkinDirectory(const std::wstring& programFolder);
ApplicationDirectory DataDirectory(const std::wstring& programFolder);
ApplicationDirectory DocDirectory(const std::wstring& programFolder);

/// The folder of this program, where the application's programs lie too.
std::wstring OwnFolder();

}  // namespace kitbag::tool
