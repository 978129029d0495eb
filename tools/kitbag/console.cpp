#include "console.h"

#include <windows.h>

#include <algorithm>

#include "system_error.h"
#include "text.h"

namespace kitbag::tool {

namespace {

/// Longer texts than these are refused by some systems' consoles.
constexpr std::size_t kMostAtOnce = 8192;
constexpr DWORD kProgressMilliseconds = 200;

bool IsConsole(HANDLE output) {
    DWORD mode = 0;
    return ::GetConsoleMode(output, &mode) != FALSE;
}

bool WriteToConsole(HANDLE output, std::wstring_view text) {
    while (!text.empty()) {
        DWORD written = 0;
        const auto length = static_cast<DWORD>(std::min(text.size(), kMostAtOnce));
        if (!::WriteConsoleW(output, text.data(), length, &written, nullptr) || written == 0)
            return false;
        text.remove_prefix(written);
    }
    return true;
}

std::wstring WithSystemLineEnds(std::wstring_view text) {
    std::wstring lines;
    for (const wchar_t c : text) {
        if (c == L'\n') lines += L'\r';
        lines += c;
    }
    return lines;
}

bool WriteToFile(HANDLE output, std::wstring_view text) {
    const std::string bytes = ToBytes(CP_UTF8, WithSystemLineEnds(text));
    for (std::size_t done = 0; done < bytes.size();) {
        DWORD written = 0;
        if (!::WriteFile(output, bytes.data() + done, static_cast<DWORD>(bytes.size() - done),
                         &written, nullptr))
            return false;
        done += written;
    }
    return true;
}

bool Write(DWORD stream, std::wstring_view text) {
    HANDLE output = ::GetStdHandle(stream);
    return IsConsole(output) ? WriteToConsole(output, text) : WriteToFile(output, text);
}

}  // namespace

void Print(std::wstring_view text) {
    if (!Write(STD_OUTPUT_HANDLE, text)) throw SystemFailure(L"Cannot write", ::GetLastError());
}

void PrintError(std::wstring_view message) {
    Write(STD_ERROR_HANDLE, L"kitbag: " + std::wstring(message) + L'\n');
}

Progress::Progress() : last_(::GetTickCount()) {}
Progress::~Progress() { Clear(); }

void Progress::Show(std::wstring_view text) {
    HANDLE output = ::GetStdHandle(STD_ERROR_HANDLE);
    if (::GetTickCount() - last_ < kProgressMilliseconds || !IsConsole(output)) return;
    const std::wstring line = Padded(text.substr(0, 78), shown_);
    WriteToConsole(output, L'\r' + line);
    shown_ = line.size();
    last_ = ::GetTickCount();
}

void Progress::Clear() {
    if (shown_ > 0)
        WriteToConsole(::GetStdHandle(STD_ERROR_HANDLE), L'\r' + Padded({}, shown_) + L'\r');
    shown_ = 0;
}

}  // namespace kitbag::tool
