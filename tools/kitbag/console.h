// What the program writes: 16-bit text on a console, UTF-8 anywhere else.
#pragma once

#include <string>
#include <string_view>

namespace kitbag::tool {

/// Writes at once: whoever reads a pipe sees each line when it is written. Line ends are those of
/// the system. Throws where the output does not take it.
void Print(std::wstring_view text);
inline void PrintLine(const std::wstring& text = {}) { Print(text + L'\n'); }

/// On the standard error, behind the program's name. Never throws.
void PrintError(std::wstring_view message);

/// A line that says how far long work is, for a person at a console. Nothing is shown elsewhere,
/// nor by work that ends within the blink of an eye.
class Progress {
 public:
    Progress();
    /// Takes the line away.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(std::wstring_view text);
    void Clear();

 private:
    unsigned long last_;
    std::size_t shown_ = 0;
};

}  // namespace kitbag::tool
