#include <kitbag/frame/text_conversion.h>
#include <windows.h>

namespace kitbag {

std::string ToNarrow(const wchar_t* text) {
    if (!text) return {};
    const int bytes = ::WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (bytes <= 1) return {};
    std::string narrow(static_cast<std::size_t>(bytes), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, text, -1, narrow.data(), bytes, nullptr, nullptr);
    narrow.pop_back();
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
