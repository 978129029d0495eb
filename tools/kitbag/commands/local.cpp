#include <kitbag/kitbag.h>

#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/machine.h"
#include "tools/kitbag/shares.h"
#include "tools/kitbag/text.h"

namespace kitbag::tool {

namespace {

std::wstring ComputerIn(const std::wstring& name) {
    return name.substr(2, name.find(L'\\', 2) - 2);
}

ExitCode Local(const Arguments& arguments) {
    const std::wstring& name = arguments[0];
    if (!name.starts_with(L"\\\\"))
        throw Failure{ExitCode::WrongUse, name + L" is no network name: it begins with \\\\"};
    std::wstring path(32768, L'\0');
    path.resize(KB_UNCToLocalW(name.c_str(), path.data(), static_cast<DWORD>(path.size())));
    if (path.empty() && !AreSameNames(ComputerIn(name), ComputerName()))
        throw Failure{ExitCode::NotFound, name + L" is not on this computer, " + ComputerName()};
    if (path.empty()) throw WhyNoShareServes(name);
    PrintLine(path);
    return ExitCode::Done;
}

}  // namespace

const Command kLocal = {L"local",
                        L"UNC",
                        L"shows the path of this computer that a network name means",
                        L"By this computer's own disk shares; shares for administration do not "
                        L"count.\n",
                        {1, 1, {}},
                        Local};

}  // namespace kitbag::tool
