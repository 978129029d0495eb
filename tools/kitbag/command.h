// What every command tells about itself.
#pragma once

#include "arguments.h"
#include "exit_code.h"

namespace kitbag::tool {

struct Command {
    const wchar_t* name;
    /// As the help shows them: "[SECTION] [--tree]".
    const wchar_t* arguments;
    /// One line for the list of commands.
    const wchar_t* summary;
    /// What else there is to know.
    const wchar_t* help;
    Syntax syntax;
    ExitCode (*run)(const Arguments& arguments);
};

}  // namespace kitbag::tool
