#include <kitbag/kitbag.h>

#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/file.h"
#include "tools/kitbag/shares.h"

namespace kitbag::tool {

namespace {

ExitCode Unc(const Arguments& arguments) {
    const std::wstring path = FullPath(arguments[0]);
    std::wstring name(32768, L'\0');
    name.resize(KB_LocalToUNCW(path.c_str(), name.data(), static_cast<DWORD>(name.size())));
    if (name.empty()) throw WhyNoShareServes(path);
    PrintLine(name);
    return ExitCode::Done;
}

}  // namespace

const Command kUnc = {
    L"unc",
    L"PATH",
    L"shows the network name of a path of this computer",
    L"By the disk share with the longest path that PATH begins with; whether PATH exists does not\n"
    L"matter. Shares for administration do not count.\n",
    {1, 1, {}},
    Unc};

}  // namespace kitbag::tool
