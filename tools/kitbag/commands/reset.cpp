#include <windows.h>

#include <algorithm>

#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/file.h"
#include "tools/kitbag/sections_text.h"
#include "tools/kitbag/settings_change.h"

namespace kitbag::tool {

namespace {

/// "Audio 2026-03-01 14.05.09.reg"
std::wstring NameOfCopy(const std::wstring& section) {
    SYSTEMTIME now;
    ::GetLocalTime(&now);
    std::wstring name = section + L' ' + TimeText(now) + L".reg";
    // A key's name may hold what a file's may not.
    const auto isNoFileName = [](wchar_t c) {
        return c < L' ' || std::wstring_view(L"\\/*?\"<>|").find(c) != std::wstring_view::npos;
    };
    std::ranges::replace_if(name, isNoFileName, L'_');
    std::ranges::replace(name, L':', L'.');
    return name;
}

ExitCode Reset(const Arguments& arguments) {
    const std::wstring section = SectionArgument(arguments[0]);
    if (section.empty())
        throw Failure{ExitCode::WrongUse, L"the settings are not reset as a whole"};
    const Sections sections = ReadExistingSections(section);
    const std::wstring file = FullPath(arguments.Count() == 2 ? arguments[1] : NameOfCopy(section));
    RequireConsent(arguments.Has(L"--yes"),
                   L"would delete " + ContentsOf(sections) + L", after a copy to " + file);
    SaveSettingsFile(file, sections, false);
    PrintLine(L"copied to " + file);
    DeleteSection(section);
    PrintLine(L"deleted " + ContentsOf(sections));
    return ExitCode::Done;
}

}  // namespace

const Command kReset = {
    L"reset",
    L"SECTION [FILE.reg] --yes",
    L"deletes a section, so that programs use their defaults; keeps a copy",
    L"The section is first exported with everything below it: into the file, or into the current\n"
    L"folder under the section's name and the time. Without that copy nothing is deleted; no file\n"
    L"is replaced. kitbag import FILE.reg brings everything back.\n",
    {1, 2, {L"--yes"}},
    Reset};

}  // namespace kitbag::tool
