// The directories of the current language, as the application's locale library names them.
#pragma once

#include <kitbag/frame/os_dependent_function.h>

#include <string>

namespace kitbag {

/// Asks "Lingrel.dll", which is loaded at the first question. Used from one thread at a time.
class LocaleDirectories {
 public:
    /// Asks for both directories anew; empty where the library or its function is missing.
    void Update() {
        language = Ask(languageFunction_);
        subLanguage = Ask(subLanguageFunction_);
    }

    std::string language;
    std::string subLanguage;

 private:
    static constexpr unsigned long kBufferSize = 260;
    using Function = TOSDepFn<unsigned (*)(char* buffer, unsigned long size)>;

    static std::string Ask(Function& function) {
        // Only the text counts: it is empty where the library knows no directory.
        char directory[kBufferSize] = "";
        if (function.Load()) function.Function()(directory, kBufferSize);
        directory[kBufferSize - 1] = '\0';
        return directory;
    }

    Function languageFunction_{"Lingrel.dll", "GetLocaleLanguageDirectoryA"};
    Function subLanguageFunction_{"Lingrel.dll", "GetLocaleSubLanguageDirectoryA"};
};

}  // namespace kitbag
