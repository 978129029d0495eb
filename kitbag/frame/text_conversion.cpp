#include <kitbag/frame/text_conversion.h>
#include <windows.h>

#include <cwchar>

namespace kitbag {

std::string ToNarrow(const wchar_t* text) {
    if (!text) return {};
    // No ANSI code page needs more than two bytes for a 16-bit character.
    std::string narrow(2 * std::wcslen(text) + 2, '\0');
    const int bytes = ::WideCharToMultiByte(CP_ACP, 0, text, -1, narrow.data(),
                                            static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(bytes > 0 ? static_cast<std::size_t>(bytes) - 1 : 0);
    return narrow;
}

std::wstring ToWide(const char* text) {
    if (!text) return {};
    const int characters = ::MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    if (characters <= 1) return {};
    std::wstring wide(static_cast<std::size_t>(characters), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), characters);
    wide.pop_back();
    return wide;
}

}  // namespace kitbag
