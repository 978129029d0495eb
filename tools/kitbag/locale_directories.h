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

/// Asks "Lingrel.dll" of the folder (which ends in a backslash) or, where it is not there, the one
/// that the system finds.
LocaleDirectories AskForLocaleDirectories(const std::wstring& programFolder);

}  // namespace kitbag::tool
