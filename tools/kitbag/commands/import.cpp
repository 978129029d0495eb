#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/file.h"
#include "tools/kitbag/settings_change.h"

namespace kitbag::tool {

namespace {

ExitCode Import(const Arguments& arguments) {
    const std::wstring file = FullPath(arguments[0]);
    const std::vector<SectionChange> changes = LoadSettingsFile(file);
    std::size_t done = 0;
    try {
        for (; done < changes.size(); ++done) Apply(changes[done]);
    } catch (Failure& failure) {
        // Whatever the reason: the file is there, and not all of it is in the registry.
        failure.code = ExitCode::NoAccess;
        failure.message += L"; of " + Counted(changes.size(), L"key") + L" in the file the first " +
                           std::to_wstring(done) + L" are done";
        throw;
    }
    PrintLine(file + L": " + Counted(changes.size(), L"key") + L" imported");
    return ExitCode::Done;
}

}  // namespace

const Command kImport = {
    L"import",
    L"FILE.reg",
    L"takes over what a file of regedit's format says",
    L"The file is read and checked as a whole before anything is written: one that is not well\n"
    L"formed, or that names a key other than the settings' root and those below it, is refused.\n"
    L"The root may be named as 64-bit programs do, with WOW6432Node. Files of version 5 and of\n"
    L"version 4 (REGEDIT4) are read, in UTF-16, UTF-8 or the ANSI code page.\n\n"
    L"\"NAME\"=- deletes a value and [-KEY] a section with everything below it. What the file "
    L"does\n"
    L"not name stays. See kitbag compare for what would change.\n",
    {1, 1, {}},
    Import};

}  // namespace kitbag::tool
