#include "locale_directories.h"

#include <kitbag/frame/os_dependent_function.h>

#include <iterator>

#include "text.h"

namespace kitbag::tool {

namespace {

constexpr unsigned long kBufferSize = 260;
using Function = TOSDepFn<unsigned (*)(char* buffer, unsigned long size)>;

/// Where a program of that folder finds the library; empty where it does not.
std::wstring LibraryOf(const std::wstring& programFolder) {
    wchar_t system[MAX_PATH] = L"";
    wchar_t path[32768] = L"";
    wchar_t found[MAX_PATH] = L"";
    ::GetSystemDirectoryW(system, std::size(system));
    ::GetEnvironmentVariableW(L"PATH", path, std::size(path));
    const std::wstring folders = programFolder + L';' + system + L';' + path;
    const DWORD length =
        ::SearchPathW(folders.c_str(), L"Lingrel.dll", nullptr, std::size(found), found, nullptr);
    return length < std::size(found) ? found : L"";
}

std::wstring Ask(Function& function) {
    char directory[kBufferSize] = "";
    if (function.Load()) function.Function()(directory, kBufferSize);
    directory[kBufferSize - 1] = '\0';
    return FromAnsi(directory);
}

}  // namespace

LocaleDirectories AskForLocaleDirectories(const std::wstring& programFolder) {
    const std::string library = ToAnsi(LibraryOf(programFolder));
    if (library.empty()) return {};
    Function language(library.c_str(), "GetLocaleLanguageDirectoryA");
    Function subLanguage(library.c_str(), "GetLocaleSubLanguageDirectoryA");
    LocaleDirectories directories;
    directories.language = Ask(language);
    directories.subLanguage = Ask(subLanguage);
    directories.hasLibrary = language.Load() || subLanguage.Load();
    return directories;
}

}  // namespace kitbag::tool
