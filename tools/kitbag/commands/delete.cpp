#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/sections_text.h"
#include "tools/kitbag/settings_change.h"
#include "tools/kitbag/system_error.h"

namespace kitbag::tool {

namespace {

void DeleteOneValue(const std::wstring& section, const std::wstring& name, bool isWanted) {
    const auto value = FindValue(section, name);
    const std::wstring fullName = FullName(section, name);
    if (!value) throw NotThere(fullName);
    RequireConsent(isWanted, L"would delete " + fullName + L": " + ValueText(*value, 128));
    DeleteValue(section, name);
    PrintLine(L"deleted " + fullName + L": " + ValueText(*value, 128));
}

void DeleteWholeSection(const std::wstring& section, bool isWanted) {
    if (section.empty())
        throw Failure{ExitCode::WrongUse, L"the settings are not deleted as a whole"};
    const std::wstring what = ContentsOf(ReadExistingSections(section));
    RequireConsent(isWanted, L"would delete " + what);
    DeleteSection(section);
    PrintLine(L"deleted " + what);
}

ExitCode Delete(const Arguments& arguments) {
    const std::wstring section = SectionArgument(arguments[0]);
    const bool isWanted = arguments.Has(L"--yes");
    if (arguments.Count() == 2)
        DeleteOneValue(section, arguments[1], isWanted);
    else
        DeleteWholeSection(section, isWanted);
    return ExitCode::Done;
}

}  // namespace

const Command kDelete = {
    L"delete",
    L"SECTION [NAME] --yes",
    L"deletes a value, or a section with everything below it",
    L"Without --yes it only says what it would delete. The name \"\" is that of the section's\n"
    L"default value. kitbag reset deletes a section, too, and keeps a copy.\n",
    {1, 2, {L"--yes"}},
    Delete};

}  // namespace kitbag::tool
