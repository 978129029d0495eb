#include "text.h"

#include <algorithm>

namespace kitbag::tool {

std::string ToBytes(UINT codePage, std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int size =
        ::WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(codePage, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::wstring FromBytes(UINT codePage, std::string_view bytes) {
    const int size = static_cast<int>(bytes.size());
    const int length = ::MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    ::MultiByteToWideChar(codePage, 0, bytes.data(), size, text.data(), length);
    return text;
}

std::wstring Folded(std::wstring_view text) {
    std::wstring folded(text);
    ::CharUpperBuffW(folded.data(), static_cast<DWORD>(folded.size()));
    return folded;
}

bool AreSameNames(std::wstring_view a, std::wstring_view b) { return Folded(a) == Folded(b); }

std::wstring Padded(std::wstring_view text, std::size_t width) {
    std::wstring padded(text);
    padded.resize(std::max(padded.size(), width), L' ');
    return padded;
}

std::wstring Hexadecimal(DWORD number, std::size_t digits) {
    std::wstring text;
    for (; number > 0 || text.size() < digits; number >>= 4)
        text.insert(text.begin(), L"0123456789abcdef"[number & 0xf]);
    return text;
}

std::wstring TimeText(const SYSTEMTIME& time) {
    wchar_t text[32];
    ::wsprintfW(text, L"%04u-%02u-%02u %02u:%02u:%02u", time.wYear, time.wMonth, time.wDay,
                time.wHour, time.wMinute, time.wSecond);
    return text;
}

std::wstring Counted(std::size_t number, std::wstring_view noun) {
    return std::to_wstring(number) + L' ' + std::wstring(noun) + (number == 1 ? L"" : L"s");
}

std::wstring Indented(std::wstring_view text, std::size_t columns) {
    std::wstring indented;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(L'\n'), text.size() - 1) + 1;
        if (end > 1) indented.append(columns, L' ');
        indented += text.substr(0, end);
        text.remove_prefix(end);
    }
    return indented;
}

}  // namespace kitbag::tool
