#include "arguments.h"

#include <windows.h>
// Not part of a lean <windows.h>.
#include <shellapi.h>

#include <algorithm>
#include <memory>

#include "exit_code.h"

namespace kitbag::tool {

namespace {

constexpr wchar_t kEndOfOptions[] = L"--";

bool IsOption(const std::wstring& word) {
    return word.size() > 1 && word[0] == L'-' && !(word[1] >= L'0' && word[1] <= L'9');
}

Failure WrongUse(const std::wstring& message) { return {ExitCode::WrongUse, message}; }

}  // namespace

Arguments::Arguments(const std::vector<std::wstring>& words, const Syntax& syntax) {
    const auto knows = [&syntax](const std::wstring& option) {
        return std::ranges::find(syntax.options, option) != syntax.options.end();
    };
    bool mayBeOption = true;
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (mayBeOption && *word == kEndOfOptions) {
            mayBeOption = false;
        } else if (!mayBeOption || !IsOption(*word)) {
            words_.push_back(*word);
        } else if (knows(*word)) {
            options_.insert(*word);
        } else if (!knows(*word + L' ')) {
            throw WrongUse(L"unknown option " + *word);
        } else if (word + 1 == words.end()) {
            throw WrongUse(L"nothing stands behind " + *word);
        } else {
            values_.emplace_back(word[0], word[1]);
            ++word;
        }
    }
    if (words_.size() < syntax.fewest) throw WrongUse(L"something is missing");
    if (words_.size() > syntax.most)
        throw WrongUse(L"one word too many: \"" + words_[syntax.most] + L"\"");
}

std::optional<std::wstring> Arguments::ValueOf(const std::wstring& option) const {
    for (const auto& [name, value] : values_)
        if (name == option) return value;
    return std::nullopt;
}

bool AsksForHelp(const std::vector<std::wstring>& words) {
    const auto end = std::ranges::find(words, kEndOfOptions);
    return std::find(words.begin(), end, L"--help") != end ||
           (!words.empty() && (words[0] == L"/?" || words[0] == L"-h"));
}

std::vector<std::wstring> CommandLineWords() {
    int count = 0;
    const std::unique_ptr<LPWSTR[], decltype(&::LocalFree)> words(
        ::CommandLineToArgvW(::GetCommandLineW(), &count), ::LocalFree);
    if (!words || count < 1) return {};
    return {words.get() + 1, words.get() + count};
}

}  // namespace kitbag::tool
