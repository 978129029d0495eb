// The directories of the current language, as the application's locale library names them.
#pragma once

#include <string>

namespace kitbag::tool {

struct LocaleDirectories {
    /// Empty where the library names none.
    std::wstring language;
    std::wstring subLanguage;
    bool hasLibrary = false;
};

/// Asks the "Lingrel.dll" that the system finds for a program in that folder.
LocaleDirectories AskForLocaleDirectories(const std::wstring& programFolder);

}  // namespace kitbag::tool
