#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/file.h"
#include "tools/kitbag/sections_text.h"
#include "tools/kitbag/settings_file.h"

namespace kitbag::tool {

namespace {

ExitCode Export(const Arguments& arguments) {
    const bool isAll = arguments.Count() == 1;
    const std::wstring section = isAll ? L"" : SectionArgument(arguments[0]);
    const std::wstring file = FullPath(arguments[isAll ? 0 : 1]);
    const Sections sections = ReadExistingSections(section);
    SaveSettingsFile(file, sections, arguments.Has(L"--yes"));
    PrintLine(file + L": " + ContentsOf(sections));
    return ExitCode::Done;
}

}  // namespace

const Command kExport = {
    L"export",
    L"[SECTION] FILE.reg [--yes]",
    L"writes a section and all below it into a file for regedit",
    L"Without a section, all settings. The file is of version 5, in UTF-16, and holds values of\n"
    L"every type byte by byte; kitbag import, regedit and reg import load it. A file that exists\n"
    L"is replaced with --yes only. Nothing is written where any section cannot be read.\n",
    {1, 2, {L"--yes"}},
    Export};

}  // namespace kitbag::tool
