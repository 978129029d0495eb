#include "tools/kitbag/modules.h"
#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/file.h"
#include "tools/kitbag/system_error.h"

namespace kitbag::tool {

namespace {

ExitCode Modules(const Arguments& arguments) {
    const std::wstring folder = FullPath(arguments[0]);
    const std::vector<Module> modules = ModulesOf(folder);
    if (modules.empty())
        throw Failure{ExitCode::NotFound, folder + L": no programs and no libraries"};
    Print(ModulesText(modules));
    return ExitCode::Done;
}

}  // namespace

const Command kModules = {
    L"modules",
    L"FOLDER",
    L"shows versions and link times of the programs and libraries of a folder",
    L"Of all files *.exe, *.dll and *.ocx: product version, file version, the time in the "
    L"module's\n"
    L"header, and its description. What has no version resource has no versions here.\n",
    {1, 1, {}},
    Modules};

}  // namespace kitbag::tool
