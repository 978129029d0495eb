// Files of the system.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kitbag::tool {

/// Owns an open file.
class File {
 public:
    explicit File(HANDLE handle) : handle_(handle) {}
    File(File&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (*this) ::CloseHandle(handle_);
    }

    explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return handle_; }

 private:
    HANDLE handle_;
};

/// Opens a file for reading; throws where that is refused. Others may go on using it.
File OpenFile(const std::wstring& path);

bool FileExists(const std::wstring& path);
bool FolderExists(const std::wstring& path);

/// As the system would resolve it from the current folder.
std::wstring FullPath(const std::wstring& path);
/// With the backslash at its end; empty where there is none.
std::wstring FolderOf(const std::wstring& path);
std::wstring WithBackslash(std::wstring path);

/// The full path of a loaded module's file; null is this program.
std::wstring ModuleFile(HMODULE module);

/// The names of the files that a path with wildcards means, in order.
std::vector<std::wstring> FileNames(const std::wstring& pattern);

}  // namespace kitbag::tool
