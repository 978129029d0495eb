// The letters that move the keyboard's focus.
#pragma once

#include <windows.h>

#include <string>

/// Gives each label of a window a letter of its own, as long as there are some.
class Mnemonics {
 public:
    /// Letters that the window has given away already, in lower case.
    explicit Mnemonics(std::wstring used) : used_(std::move(used)) {}

    /// The label with an ampersand before its letter; an ampersand of its own stays visible.
    std::wstring Mark(const std::wstring& label) {
        const std::size_t chosen = Choose(label);
        std::wstring marked;
        for (std::size_t i = 0; i < label.size(); ++i) {
            if (i == chosen || label[i] == L'&') marked += L'&';
            marked += label[i];
        }
        return marked;
    }

 private:
    std::size_t Choose(const std::wstring& label) {
        for (std::size_t i = 0; i < label.size(); ++i) {
            const wchar_t letter = Lower(label[i]);
            if (!::IsCharAlphaW(letter) || used_.find(letter) != std::wstring::npos) continue;
            used_ += letter;
            return i;
        }
        return std::wstring::npos;
    }
    static wchar_t Lower(wchar_t letter) {
        ::CharLowerBuffW(&letter, 1);
        return letter;
    }

    std::wstring used_;
};
