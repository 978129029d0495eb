// The file system's functions in both text forms under one name each.
#pragma once

#include <kitbag/frame/text_form.h>
#include <windows.h>

#include <string>
#include <type_traits>

namespace kitbag {

inline DWORD AttributesOf(const char* path) { return ::GetFileAttributesA(path); }
inline DWORD AttributesOf(const wchar_t* path) { return ::GetFileAttributesW(path); }

inline bool IsFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

inline BOOL MakeFolder(const char* path) { return ::CreateDirectoryA(path, nullptr); }
inline BOOL MakeFolder(const wchar_t* path) { return ::CreateDirectoryW(path, nullptr); }

inline BOOL RemoveFolder(const char* path) { return ::RemoveDirectoryA(path); }
inline BOOL RemoveFolder(const wchar_t* path) { return ::RemoveDirectoryW(path); }

inline BOOL CopyOneFile(const char* source, const char* destination, BOOL failIfExists) {
    return ::CopyFileA(source, destination, failIfExists);
}
inline BOOL CopyOneFile(const wchar_t* source, const wchar_t* destination, BOOL failIfExists) {
    return ::CopyFileW(source, destination, failIfExists);
}

inline BOOL DeleteOneFile(const char* path) { return ::DeleteFileA(path); }
inline BOOL DeleteOneFile(const wchar_t* path) { return ::DeleteFileW(path); }

template <class Ch>
using FindData = std::conditional_t<std::is_same_v<Ch, char>, WIN32_FIND_DATAA, WIN32_FIND_DATAW>;

inline HANDLE FindFirst(const char* pattern, FindData<char>* found) {
    return ::FindFirstFileA(pattern, found);
}
inline HANDLE FindFirst(const wchar_t* pattern, FindData<wchar_t>* found) {
    return ::FindFirstFileW(pattern, found);
}
inline BOOL FindNext(HANDLE search, FindData<char>* found) {
    return ::FindNextFileA(search, found);
}
inline BOOL FindNext(HANDLE search, FindData<wchar_t>* found) {
    return ::FindNextFileW(search, found);
}

inline DWORD CurrentFolder(DWORD size, char* path) { return ::GetCurrentDirectoryA(size, path); }
inline DWORD CurrentFolder(DWORD size, wchar_t* path) { return ::GetCurrentDirectoryW(size, path); }

/// The file that a module was loaded from, of a null module that of the process; empty where the
/// system cannot tell, or where the path was cut off.
template <class Ch>
std::basic_string<Ch> ModuleFile(HMODULE module) {
    Ch path[MAX_PATH];
    const DWORD length =
        PickForm<Ch>(::GetModuleFileNameA, ::GetModuleFileNameW)(module, path, MAX_PATH);
    return length < MAX_PATH ? std::basic_string<Ch>(path, length) : std::basic_string<Ch>();
}

}  // namespace kitbag
