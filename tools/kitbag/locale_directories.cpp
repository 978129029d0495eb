#include "locale_directories.h"

#include <kitbag/frame/os_dependent_function.h>

#include "file.h"
#include "text.h"

namespace kitbag::tool {

namespace {

constexpr unsigned long kBufferSize = 260;
using Function = TOSDepFn<unsigned (*)(char* buffer, unsigned long size)>;

std::wstring Ask(Function& function) {
    char directory[kBufferSize] = "";
    if (function.Load()) function.Function()(directory, kBufferSize);
    directory[kBufferSize - 1] = '\0';
    return FromAnsi(directory);
}

}  // namespace

LocaleDirectories AskForLocaleDirectories(const std::wstring& programFolder) {
    const std::wstring beside = programFolder + L"Lingrel.dll";
    const std::string library = FileExists(beside) ? ToAnsi(beside) : "Lingrel.dll";
    Function language(library.c_str(), "GetLocaleLanguageDirectoryA");
    Function subLanguage(library.c_str(), "GetLocaleSubLanguageDirectoryA");
    LocaleDirectories directories;
    directories.language = Ask(language);
    directories.subLanguage = Ask(subLanguage);
    directories.hasLibrary = language.Load() || subLanguage.Load();
    return directories;
}

}  // namespace kitbag::tool
