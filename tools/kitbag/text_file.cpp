#include "text_file.h"

#include <windows.h>

#include "file.h"
#include "system_error.h"
#include "text.h"

namespace kitbag::tool {

namespace {

constexpr std::string_view kUtf16Mark = "\xff\xfe";
constexpr std::string_view kUtf8Mark = "\xef\xbb\xbf";

std::wstring FromUtf16(std::string_view bytes) {
    std::wstring text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        text += static_cast<wchar_t>(static_cast<BYTE>(bytes[i]) |
                                     (static_cast<BYTE>(bytes[i + 1]) << 8));
    return text;
}

std::string ToUtf16(std::wstring_view text) {
    std::string bytes;
    for (const wchar_t c : text) {
        bytes += static_cast<char>(c & 0xff);
        bytes += static_cast<char>(c >> 8);
    }
    return bytes;
}

bool IsUtf8(std::string_view bytes) {
    return bytes.empty() || ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(),
                                                  static_cast<int>(bytes.size()), nullptr, 0) > 0;
}

std::wstring Decoded(std::string_view bytes) {
    if (bytes.starts_with(kUtf16Mark)) return FromUtf16(bytes.substr(kUtf16Mark.size()));
    if (bytes.starts_with(kUtf8Mark)) return FromBytes(CP_UTF8, bytes.substr(kUtf8Mark.size()));
    return IsUtf8(bytes) ? FromBytes(CP_UTF8, bytes) : FromAnsi(bytes);
}

std::string Encoded(std::wstring_view text, Encoding encoding) {
    std::wstring lines;
    for (const wchar_t c : text) {
        if (c == L'\n') lines += L'\r';
        lines += c;
    }
    return encoding == Encoding::Utf16 ? std::string(kUtf16Mark) + ToUtf16(lines)
                                       : std::string(kUtf8Mark) + ToBytes(CP_UTF8, lines);
}

/// The system's last error where the file cannot be written.
DWORD WriteWhole(const std::wstring& path, std::string_view bytes) {
    const File file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    const bool isDone = file && ::WriteFile(file.Get(), bytes.data(),
                                            static_cast<DWORD>(bytes.size()), &written, nullptr);
    return isDone ? ERROR_SUCCESS : ::GetLastError();
}

DWORD Rename(const std::wstring& from, const std::wstring& to, DWORD flags) {
    return ::MoveFileExW(from.c_str(), to.c_str(), flags) ? ERROR_SUCCESS : ::GetLastError();
}

}  // namespace

std::wstring ReadTextFile(const std::wstring& path) {
    const File file = OpenFile(path);
    std::string bytes;
    char chunk[32768];
    for (DWORD read = 1; read > 0;) {
        if (!::ReadFile(file.Get(), chunk, sizeof chunk, &read, nullptr))
            throw SystemFailure(path, ::GetLastError());
        bytes.append(chunk, read);
    }
    return Decoded(bytes);
}

void WriteTextFile(const std::wstring& path, std::wstring_view text, Encoding encoding,
                   bool mayReplace) {
    if (FolderExists(path)) throw Failure{ExitCode::WrongUse, path + L" is a folder"};
    if (!mayReplace && FileExists(path))
        throw Failure{ExitCode::WrongUse, path + L" exists; --yes replaces it"};
    const std::wstring unfinished = path + L".new";
    DWORD error = WriteWhole(unfinished, Encoded(text, encoding));
    if (error == ERROR_SUCCESS)
        error = Rename(unfinished, path, mayReplace ? MOVEFILE_REPLACE_EXISTING : 0);
    if (error == ERROR_SUCCESS) return;
    ::DeleteFileW(unfinished.c_str());
    throw SystemFailure(path, error);
}

}  // namespace kitbag::tool
