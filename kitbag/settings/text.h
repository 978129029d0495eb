// 8-bit texts, in the ANSI code page, and 16-bit ones.
#pragma once

#include <kitbag/frame/win_string.h>
#include <windows.h>

#include <string>

namespace kitbag {

inline std::wstring Widened(const std::string& text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

/// Characters that the code page lacks become its question mark, or one that looks alike.
inline std::string Narrowed(const std::wstring& text) {
    constexpr std::size_t kMostBytesOfAUnit = 3;
    const int length = static_cast<int>(text.size());
    std::string narrow(text.size() * kMostBytesOfAUnit, '\0');
    const int bytes = ::WideCharToMultiByte(CP_ACP, 0, text.data(), length, narrow.data(),
                                            static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<std::size_t>(bytes));
    return narrow;
}

}  // namespace kitbag
