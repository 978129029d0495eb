#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/differences.h"
#include "tools/kitbag/file.h"
#include "tools/kitbag/settings_file.h"

namespace kitbag::tool {

namespace {

constexpr std::size_t kMostShown = 128;

Sections Within(const Sections& sections, const std::wstring& outer) {
    Sections within;
    for (const auto& entry : sections)
        if (IsWithin(entry.first, outer)) within.insert(entry);
    return within;
}

std::wstring Text(const Difference& difference) {
    const std::wstring where =
        L'[' + difference.section + L']' +
        (difference.name ? L' ' + DisplayName(*difference.name) : L" the section");
    if (!difference.name)
        return (difference.wasThere ? L"only in the file      " : L"only on this machine  ") +
               where + L'\n';
    if (!difference.isThere)
        return L"only in the file      " + where + L": " +
               ValueText(*difference.before, kMostShown) + L'\n';
    if (!difference.wasThere)
        return L"only on this machine  " + where + L": " +
               ValueText(*difference.after, kMostShown) + L'\n';
    return L"different             " + where + L"\n    file          " +
           ValueText(*difference.before, kMostShown) + L"\n    this machine  " +
           ValueText(*difference.after, kMostShown) + L'\n';
}

ExitCode Compare(const Arguments& arguments) {
    const std::vector<SectionChange> changes = LoadSettingsFile(FullPath(arguments[0]));
    const Sections inFile = SettingsOf(changes);
    std::size_t found = 0;
    for (const std::wstring& top : TopSections(changes)) {
        const auto differences = DifferencesOf(Within(inFile, top), ReadAllSections(top));
        for (const Difference& difference : differences) Print(Text(difference));
        found += differences.size();
    }
    PrintLine(found == 0 ? L"no difference" : Counted(found, L"difference"));
    return found == 0 ? ExitCode::Done : ExitCode::NotFound;
}

}  // namespace

const Command kCompare = {
    L"compare",
    L"FILE.reg",
    L"shows what differs between a file and this machine, both ways",
    L"Compared are the sections that the file names, with everything below them: what is only in\n"
    L"the file, only on this machine, or different. The file is checked as by kitbag import. An\n"
    L"empty text is the same with and without its terminator.\n",
    {1, 1, {}},
    Compare};

}  // namespace kitbag::tool
