// How kitbag.exe ends, and what ends it early.
#pragma once

#include <string>

namespace kitbag::tool {

enum class ExitCode {
    /// Found, done, equal.
    Done = 0,
    /// Not there, or different.
    NotFound = 1,
    /// A command line or a file that cannot be taken; nothing was changed.
    WrongUse = 2,
    /// A key, value or file that the system refuses to read or write.
    NoAccess = 3,
};

/// Thrown to end the command; the message names the key, value or file and says why.
struct Failure {
    ExitCode code;
    std::wstring message;
};

}  // namespace kitbag::tool
