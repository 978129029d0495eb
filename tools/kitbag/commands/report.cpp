#include <windows.h>

#include "commands.h"
#include "tools/kitbag/application_directories.h"
#include "tools/kitbag/class_registration.h"
#include "tools/kitbag/com.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/file.h"
#include "tools/kitbag/machine.h"
#include "tools/kitbag/modules.h"
#include "tools/kitbag/sections_text.h"
#include "tools/kitbag/settings_survey.h"
#include "tools/kitbag/shares.h"
#include "tools/kitbag/system_error.h"
#include "tools/kitbag/text_file.h"

namespace kitbag::tool {

namespace {

/// What cannot be told leaves a line about why; the rest of the report goes on.
std::wstring Chapter(const std::wstring& title, const auto& text) {
    const std::wstring heading = L'\n' + title + L'\n';
    try {
        return heading + Indented(text(), 4);
    } catch (const Failure& failure) {
        return heading + L"    ! " + failure.message + L'\n';
    }
}

std::wstring Head() {
    SYSTEMTIME local;
    SYSTEMTIME utc;
    ::GetLocalTime(&local);
    ::GetSystemTime(&utc);
    return L"Kitbag report of " + TimeText(local) + L" (" + TimeText(utc) + L" UTC)\n";
}

std::wstring DirectoryLine(const wchar_t* kind, const ApplicationDirectory& directory) {
    return Padded(kind, 8) + (directory.path.empty() ? L"none" : directory.path) + L" (" +
           directory.origin + L")\n";
}

std::wstring DirectoriesText(const std::wstring& folder) {
    const Com com;
    return DirectoryLine(L"Config", ConfigDirectory(folder)) +
           DirectoryLine(L"Skin", SkinDirectory(folder)) +
           DirectoryLine(L"Data", DataDirectory(folder)) +
           DirectoryLine(L"Docs", DocDirectory(folder));
}

std::wstring SharesText() {
    const DiskShares list = ListDiskShares();
    std::wstring text;
    for (const DiskShare& share : list.shares) text += share.name + L" is " + share.path + L'\n';
    if (list.status != ERROR_SUCCESS)
        return text + L"! cannot be listed: " + ErrorText(list.status) + L'\n';
    return text.empty() ? L"none\n" : text;
}

std::wstring SettingsText() {
    const Sections sections = ReadSections({});
    return RedirectedSettingsText() + (sections.empty() ? L"none\n" : TreeText(sections));
}

std::wstring ReportText(const std::wstring& folder) {
    const std::wstring library = ModuleFile(::GetModuleHandleW(L"Kitbag.dll"));
    return Head() + Chapter(L"Library", [&] { return ModulesText({ReadModule({}, library)}); }) +
           Chapter(L"Programs and libraries in " + folder,
                   [&] { return ModulesText(ModulesOf(folder)); }) +
           Chapter(L"Module link times that programs remember", ModulesSeenText) +
           Chapter(L"System", SystemText) + Chapter(L"Session and user", SessionText) +
           Chapter(L"Directories of a program in " + folder,
                   [&] { return DirectoriesText(folder); }) +
           Chapter(L"COM classes", [] { return PageFactoryText() + GraphicFactoryText(); }) +
           Chapter(L"Disk shares", SharesText) + Chapter(L"Performance loggers", LoggersText) +
           Chapter(L"Settings", SettingsText);
}

ExitCode Report(const Arguments& arguments) {
    const std::wstring folder =
        WithBackslash(FullPath(arguments.ValueOf(L"--folder").value_or(OwnFolder())));
    const std::wstring text = ReportText(folder);
    if (arguments.Count() == 0) {
        Print(text);
        return ExitCode::Done;
    }
    const std::wstring file = FullPath(arguments[0]);
    WriteTextFile(file, text, Encoding::Utf8, arguments.Has(L"--yes"));
    PrintLine(file);
    return ExitCode::Done;
}

}  // namespace

const Command kReport = {
    L"report",
    L"[FILE] [--folder FOLDER] [--yes]",
    L"shows all that a ticket needs, or writes it into a file",
    L"Versions of the library and of the programs in FOLDER (by default that of kitbag.exe), the\n"
    L"system, the session, the user, the directories and where they come from, COM registration,\n"
    L"shares, performance loggers and all settings. Asks nobody and creates nothing but the file,\n"
    L"in UTF-8; one that exists is replaced with --yes only. Measuring the processor takes a\n"
    L"second or two. What cannot be told stands there as a line that begins with !.\n",
    {0, 1, {L"--folder ", L"--yes"}},
    Report};

}  // namespace kitbag::tool
