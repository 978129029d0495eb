#include "system_error.h"

namespace kitbag::tool {

std::wstring ErrorText(DWORD error) {
    wchar_t buffer[512];
    DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                         0, buffer, sizeof buffer / sizeof *buffer, nullptr);
    // The system's messages end in a full stop and a line break.
    while (length > 0 && (buffer[length - 1] <= L' ' || buffer[length - 1] == L'.')) --length;
    const std::wstring words = length > 0 ? std::wstring(buffer, length) : L"Unknown reason";
    return words + L" (error " + std::to_wstring(error) + L")";
}

Failure NotThere(const std::wstring& what) {
    return {ExitCode::NotFound, what + L" does not exist"};
}

Failure SystemFailure(const std::wstring& what, DWORD error) {
    const bool isMissing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
    return {isMissing ? ExitCode::NotFound : ExitCode::NoAccess, what + L": " + ErrorText(error)};
}

Failure SystemFailure(const std::wstring& what, LSTATUS status) {
    return SystemFailure(what, static_cast<DWORD>(status));
}

}  // namespace kitbag::tool
