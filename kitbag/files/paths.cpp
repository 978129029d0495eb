#include <kitbag/files/paths.h>
#include <kitbag/frame/file_calls.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/owned.h>
#include <kitbag/frame/text_form.h>

#include <algorithm>
#include <string>

namespace kitbag {

namespace {

struct SearchPolicy {
    using Handle = HANDLE;
    static Handle None() { return INVALID_HANDLE_VALUE; }
    static void Close(HANDLE search) { ::FindClose(search); }
};
using Search = Owned<SearchPolicy>;

template <class Ch>
bool CreatePath(const Ch* path) {
    if (!path || Length(path) >= MAX_PATH) return false;
    Ch prefix[MAX_PATH] = {};
    std::copy_n(path, Length(path) + 1, prefix);
    for (Ch* next = prefix; *next; ++next) {
        if (*next != '\\' && *next != '/') continue;
        *next = Ch{};
        MakeFolder(prefix);
        if (!IsFolder(AttributesOf(prefix))) return false;
        *next = '\\';
    }
    return true;
}

template <class Ch>
bool CopyFileDeep(const Ch* source, const Ch* destination, bool failIfExists) {
    return CreatePath(destination) && CopyOneFile(source, destination, failIfExists);
}

template <class Ch>
bool IsDots(const Ch* name) {
    const std::basic_string_view<Ch> text(name);
    return text == KITBAG_TEXT(Ch, ".") || text == KITBAG_TEXT(Ch, "..");
}

template <class Ch>
BOOL DeleteTree(const std::basic_string<Ch>& directory);

template <class Ch>
void DeleteEntry(const std::basic_string<Ch>& directory, const FindData<Ch>& entry) {
    // Doubles the separator behind a directory that ends with one, which the file system accepts.
    const std::basic_string<Ch> name = directory + Ch{'\\'} + entry.cFileName;
    if (!IsFolder(entry.dwFileAttributes))
        DeleteOneFile(name.c_str());
    else if (!IsDots(entry.cFileName))
        DeleteTree(name);
}

template <class Ch>
BOOL DeleteTree(const std::basic_string<Ch>& directory) {
    const auto* all = directory.ends_with(Ch{'\\'}) ? KITBAG_TEXT(Ch, "*") : KITBAG_TEXT(Ch, "\\*");
    FindData<Ch> entry;
    Search search(FindFirst((directory + all).c_str(), &entry));
    if (!search) return FALSE;
    do {
        DeleteEntry(directory, entry);
    } while (FindNext(search.Get(), &entry));
    search.Reset();
    return RemoveFolder(directory.c_str());
}

template <class Ch>
BOOL DeleteDirectory(const Ch* directory) {
    return DeleteTree(directory ? std::basic_string<Ch>(directory) : std::basic_string<Ch>());
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_CreatePathA(const char* path) {
    return Guarded([&] { return kitbag::CreatePath(path); });
}
bool KB_CreatePathW(const wchar_t* path) {
    return Guarded([&] { return kitbag::CreatePath(path); });
}

bool KB_CopyFileDeepA(const char* source, const char* destination, bool failIfExists) {
    return Guarded([&] { return kitbag::CopyFileDeep(source, destination, failIfExists); });
}
bool KB_CopyFileDeepW(const wchar_t* source, const wchar_t* destination, bool failIfExists) {
    return Guarded([&] { return kitbag::CopyFileDeep(source, destination, failIfExists); });
}

BOOL KB_DeleteDirectoryA(const char* directory) {
    return Guarded([&] { return kitbag::DeleteDirectory(directory); });
}
BOOL KB_DeleteDirectoryW(const wchar_t* directory) {
    return Guarded([&] { return kitbag::DeleteDirectory(directory); });
}
