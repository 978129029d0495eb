#include <algorithm>

#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/sections_text.h"
#include "tools/kitbag/system_error.h"

namespace kitbag::tool {

namespace {

ExitCode List(const Arguments& arguments) {
    const std::wstring section = SectionArgument(arguments.At(0));
    const Sections sections = ReadSections(section);
    if (sections.empty()) throw NotThere(KeyName(section));
    Print(arguments.Has(L"--tree") ? TreeText(sections) : SectionText(sections));
    const bool isWhole = std::ranges::all_of(
        sections, [](const auto& entry) { return entry.second.status == ERROR_SUCCESS; });
    return isWhole ? ExitCode::Done : ExitCode::NoAccess;
}

}  // namespace

const Command kList = {
    L"list",
    L"[SECTION] [--tree]",
    L"shows the values of a section and the sections right below it",
    L"Without a section, those of the settings' root. With --tree, everything below as well.\n\n"
    L"Types are shown as the library names them: dword (also used for truth values), string, "
    L"data;\n"
    L"others by their registry name. A line that begins with ! says where programs read something\n"
    L"else than what is stored, because the library's functions refuse or cut it.\n"
    L"Long texts and blocks are cut; kitbag get shows all of them.\n",
    {0, 1, {L"--tree"}},
    List};

}  // namespace kitbag::tool
