// The words of a command line.
#pragma once

#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kitbag::tool {

/// What a command takes.
struct Syntax {
    std::size_t fewest = 0;
    std::size_t most = 0;
    /// For example "--tree"; one that takes the word behind it ends in a blank: "--folder ".
    std::vector<std::wstring> options;
};

/// What a command was given. Throws what is missing, too much or unknown.
///
/// A word that begins with a dash and no number is an option; behind "--" none is.
class Arguments {
 public:
    Arguments(const std::vector<std::wstring>& words, const Syntax& syntax);

    std::size_t Count() const { return words_.size(); }
    const std::wstring& operator[](std::size_t index) const { return words_[index]; }
    const std::vector<std::wstring>& All() const { return words_; }
    /// The word at the index, empty where there are fewer.
    std::wstring At(std::size_t index) const { return index < Count() ? words_[index] : L""; }

    bool Has(const std::wstring& option) const { return options_.contains(option); }
    /// The word behind an option of the kind that takes one.
    std::optional<std::wstring> ValueOf(const std::wstring& option) const;

 private:
    std::vector<std::wstring> words_;
    std::set<std::wstring> options_;
    std::vector<std::pair<std::wstring, std::wstring>> values_;
};

/// Whether help is asked for rather than anything else.
bool AsksForHelp(const std::vector<std::wstring>& words);

/// The program's command line, its own name left out. Wildcards stay as they are: they may be the
/// names of values.
std::vector<std::wstring> CommandLineWords();

}  // namespace kitbag::tool
