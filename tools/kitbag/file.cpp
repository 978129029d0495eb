#include "file.h"

#include <algorithm>
#include <iterator>

#include "system_error.h"

namespace kitbag::tool {

namespace {

constexpr DWORD kLongestPath = 32768;

}  // namespace

File OpenFile(const std::wstring& path) {
    File file(::CreateFileW(path.c_str(), GENERIC_READ,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) throw SystemFailure(path, ::GetLastError());
    return file;
}

bool FileExists(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool FolderExists(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::wstring FullPath(const std::wstring& path) {
    std::wstring buffer(kLongestPath, L'\0');
    const DWORD length = ::GetFullPathNameW(path.c_str(), kLongestPath, buffer.data(), nullptr);
    return length > 0 && length < kLongestPath ? buffer.substr(0, length) : path;
}

std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.rfind(L'\\') + 1); }

std::wstring WithBackslash(std::wstring path) {
    if (!path.empty() && path.back() != L'\\') path += L'\\';
    return path;
}

std::wstring ModuleFile(HMODULE module) {
    std::wstring buffer(kLongestPath, L'\0');
    buffer.resize(::GetModuleFileNameW(module, buffer.data(), kLongestPath));
    return buffer;
}

std::vector<std::wstring> FileNames(const std::wstring& pattern) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found;
    HANDLE search = ::FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            names.emplace_back(found.cFileName);
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
    std::ranges::sort(names);
    return names;
}

}  // namespace kitbag::tool
