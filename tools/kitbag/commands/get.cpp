#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/getter_answers.h"
#include "tools/kitbag/sections.h"
#include "tools/kitbag/system_error.h"

namespace kitbag::tool {

namespace {

ExitCode Get(const Arguments& arguments) {
    const std::wstring section = SectionArgument(arguments[0]);
    const std::wstring& name = arguments[1];
    const auto value = FindValue(section, name);
    if (!value) throw NotThere(FullName(section, name));
    PrintLine(ValueText(*value));
    const std::wstring mark = GetterMark(section, name, *value);
    if (!mark.empty()) PrintLine(L"! " + mark);
    return ExitCode::Done;
}

}  // namespace

const Command kGet = {L"get",
                      L"SECTION NAME",
                      L"shows one value with its type",
                      L"The name \"\" is that of the section's default value. A second line, which "
                      L"begins with !, says\n"
                      L"where programs read something else than what is stored.\n",
                      {2, 2, {}},
                      Get};

}  // namespace kitbag::tool
