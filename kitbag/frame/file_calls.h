// The file system's functions in both text forms under one name each.
#pragma once

#include <kitbag/frame/text_form.h>
#include <windows.h>

#include <string>
#include <type_traits>

namespace kitbag {

template <class Ch>
DWORD AttributesOf(const Ch* path) {
    return PickForm<Ch>(::GetFileAttributesA, ::GetFileAttributesW)(path);
}

inline bool IsFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

template <class Ch>
BOOL MakeFolder(const Ch* path) {
    return PickForm<Ch>(::CreateDirectoryA, ::CreateDirectoryW)(path, nullptr);
}

template <class Ch>
BOOL RemoveFolder(const Ch* path) {
    return PickForm<Ch>(::RemoveDirectoryA, ::RemoveDirectoryW)(path);
}

template <class Ch>
BOOL CopyOneFile(const Ch* source, const Ch* destination, BOOL failIfExists) {
    return PickForm<Ch>(::CopyFileA, ::CopyFileW)(source, destination, failIfExists);
}

template <class Ch>
BOOL DeleteOneFile(const Ch* path) {
    return PickForm<Ch>(::DeleteFileA, ::DeleteFileW)(path);
}

template <class Ch>
using FindData = std::conditional_t<std::is_same_v<Ch, char>, WIN32_FIND_DATAA, WIN32_FIND_DATAW>;

template <class Ch>
HANDLE FindFirst(const Ch* pattern, FindData<Ch>* found) {
    return PickForm<Ch>(::FindFirstFileA, ::FindFirstFileW)(pattern, found);
}
template <class Ch>
BOOL FindNext(HANDLE search, FindData<Ch>* found) {
    return PickForm<Ch>(::FindNextFileA, ::FindNextFileW)(search, found);
}

template <class Ch>
DWORD CurrentFolder(DWORD size, Ch* path) {
    return PickForm<Ch>(::GetCurrentDirectoryA, ::GetCurrentDirectoryW)(size, path);
}

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
