// kitbag.exe: looks at and mends the settings and surroundings of the application, for support.

#include <windows.h>

#include <cwctype>
#include <exception>

#include "commands/commands.h"
#include "console.h"
#include "text.h"

namespace kitbag::tool {

namespace {

/// In the order of the help.
const Command* const kCommands[] = {&kList,   &kGet,     &kSet,   &kDelete, &kExport,
                                    &kImport, &kCompare, &kReset, &kWatch,  &kReport,
                                    &kPage,   &kModules, &kCrc,   &kUnc,    &kLocal};

std::wstring UsageOf(const Command& command) {
    return L"kitbag " + std::wstring(command.name) + L' ' + command.arguments;
}

void PrintHelp() {
    Print(
        L"Looks at and mends the settings of Vidmoor and what surrounds them.\n\n"
        L"  kitbag COMMAND [ARGUMENT ...]\n\n");
    for (const Command* command : kCommands)
        PrintLine(L"  " + Padded(command->name, 9) + command->summary);
    Print(
        L"\nkitbag COMMAND --help says more. Nothing is changed but by set, delete, import and "
        L"reset.\n"
        L"A SECTION is a path below the settings' root, such as Audio or \"Plug-ins\\Weather\"; "
        L"\"\" is the root.\n"
        L"Behind -- a word that begins with a dash is no option.\n\n"
        L"Exit codes: 0 found or done, 1 not found or different, 2 wrong use, 3 no access.\n");
}

void PrintHelp(const Command& command) {
    std::wstring summary = command.summary;
    summary[0] = static_cast<wchar_t>(std::towupper(summary[0]));
    Print(L"  " + UsageOf(command) + L"\n\n" + summary + L".\n\n" + command.help);
}

const Command* FindCommand(const std::wstring& name) {
    for (const Command* command : kCommands)
        if (name == command->name) return command;
    return nullptr;
}

Arguments Understood(const Command& command, const std::vector<std::wstring>& words) {
    try {
        return {words, command.syntax};
    } catch (Failure& failure) {
        failure.message += L"; see kitbag " + std::wstring(command.name) + L" --help";
        throw;
    }
}

ExitCode Run(const Command& command, const std::vector<std::wstring>& words) {
    if (!AsksForHelp(words)) return command.run(Understood(command, words));
    PrintHelp(command);
    return ExitCode::Done;
}

ExitCode Run(const std::vector<std::wstring>& words) {
    if (words.empty() || AsksForHelp({words[0]})) {
        PrintHelp();
        return words.empty() ? ExitCode::WrongUse : ExitCode::Done;
    }
    const Command* command = FindCommand(words[0]);
    if (command) return Run(*command, {words.begin() + 1, words.end()});
    PrintError(L"unknown command \"" + words[0] + L"\"; see kitbag --help");
    return ExitCode::WrongUse;
}

}  // namespace

}  // namespace kitbag::tool

int main() {
    using namespace kitbag::tool;
    try {
        return static_cast<int>(Run(CommandLineWords()));
    } catch (const Failure& failure) {
        PrintError(failure.message);
        return static_cast<int>(failure.code);
    } catch (const std::exception& error) {
        // Memory that ran out, most likely.
        PrintError(FromAnsi(error.what()));
        return static_cast<int>(ExitCode::NoAccess);
    }
}
