#include <kitbag/files/paths.h>
#include <kitbag/frame/file_calls.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/owned.h>
#include <kitbag/frame/path_text.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kitbag {

namespace {

struct SearchPolicy {
    using Handle = HANDLE;
    static Handle None() { return INVALID_HANDLE_VALUE; }
    static void Close(HANDLE search) { ::FindClose(search); }
};
using Search = Owned<SearchPolicy>;

template <class Ch>
bool IsSeparator(Ch character) {
    return character == '\\' || character == '/';
}

template <class Ch>
bool CreatePath(const Ch* path) {
    if (!path || CountCharacters<Ch>(path) >= MAX_PATH) return false;
    std::basic_string<Ch> prefix = path;
    for (std::size_t at = 0; at < prefix.size(); at = NextCharacter<Ch>(prefix, at)) {
        if (!IsSeparator(prefix[at])) continue;
        prefix[at] = Ch{};
        MakeFolder(prefix.c_str());
        if (!IsFolder(AttributesOf(prefix.c_str()))) return false;
        prefix[at] = '\\';
    }
    return true;
}

template <class Ch>
bool CopyFileDeep(const Ch* source, const Ch* destination, bool failIfExists) {
    return CreatePath(destination) && CopyOneFile(source, destination, failIfExists);
}

template <class Ch>
bool IsDots(std::basic_string_view<Ch> name) {
    return name == KITBAG_TEXT(Ch, ".") || name == KITBAG_TEXT(Ch, "..");
}

bool IsLink(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }

/// Deletes folders with all that is in them, from the innermost out. Without recursion: how deep
/// the folders lie in one another is no matter of the call stack.
template <class Ch>
class TreeDeletion {
 public:
    /// Whether the folder itself is gone.
    BOOL Delete(const Ch* folder) {
        path_ = folder;
        BOOL removed = FALSE;
        bool isAtEntry = EnterFolder();
        while (!entered_.empty()) {
            if (isAtEntry && TakeEntry()) continue;  // at the first entry of the folder entered
            if (!isAtEntry) removed = LeaveFolder();
            isAtEntry = NextEntry();
        }
        return removed;
    }

 private:
    struct Folder {
        std::size_t pathLength;
        Search search;
    };

    /// Enters the folder of the path and finds its first entry.
    bool EnterFolder() {
        Search search(FindFirst(Join<Ch>(path_, KITBAG_TEXT(Ch, "*")).c_str(), &entry_));
        if (!search) return false;
        entered_.push_back({path_.size(), std::move(search)});
        return true;
    }

    bool NextEntry() {
        return !entered_.empty() && FindNext<Ch>(entered_.back().search.Get(), &entry_);
    }

    /// Deletes the entry or, where it is a folder, enters it; whether it was entered. A link to a
    /// folder is deleted, not what lies in the folder that it leads to.
    bool TakeEntry() {
        const DWORD attributes = entry_.dwFileAttributes;
        if (IsFolder(attributes) && IsDots<Ch>(entry_.cFileName)) return false;
        // Doubles the separator behind a folder that ends with one, which the file system accepts.
        path_ += Ch{'\\'};
        path_ += entry_.cFileName;
        if (!IsFolder(attributes))
            DeleteOneFile(path_.c_str());
        else if (IsLink(attributes))
            RemoveFolder(path_.c_str());
        else if (EnterFolder())
            return true;
        path_.resize(entered_.back().pathLength);
        return false;
    }

    BOOL LeaveFolder() {
        entered_.pop_back();  // A folder that is searched cannot be removed.
        const BOOL removed = RemoveFolder(path_.c_str());
        if (!entered_.empty()) path_.resize(entered_.back().pathLength);
        return removed;
    }

    /// The innermost folder, or its entry.
    std::basic_string<Ch> path_;
    /// From the outermost folder in.
    std::vector<Folder> entered_;
    /// Of the innermost folder.
    FindData<Ch> entry_;
};

template <class Ch>
BOOL DeleteDirectory(const Ch* directory) {
    return TreeDeletion<Ch>().Delete(directory ? directory : KITBAG_TEXT(Ch, ""));
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
