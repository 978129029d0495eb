#include <kitbag/files/folder_dialog.h>
#include <kitbag/files/paths.h>
#include <kitbag/files/shell_link.h>
#include <kitbag/frame/file_calls.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/module_base.h>
#include <kitbag/frame/path_text.h>
#include <kitbag/frame/resource_ids.h>
#include <kitbag/frame/string_table.h>
#include <kitbag/frame/text_form.h>
#include <kitbag/registry/directories.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/registry/tree.h>

#include <atomic>
#include <string>

namespace kitbag {

namespace {

template <class Ch>
constexpr auto& kSection = KITBAG_TEXT(Ch, "Directories");

template <class Ch>
constexpr auto& kConfig = KITBAG_TEXT(Ch, "Config");
template <class Ch>
constexpr auto& kSkin = KITBAG_TEXT(Ch, "Skin");
template <class Ch>
constexpr auto& kData = KITBAG_TEXT(Ch, "Data");
template <class Ch>
constexpr auto& kDocs = KITBAG_TEXT(Ch, "Docs");

/// A directory whose getter does something about its absence, on its first call in the process: it
/// creates a default or, where there is none to create, shows the prompt.
template <class Ch>
struct Directory {
    const Ch* kind;
    UINT prompt;
    bool createsDefault;
    std::atomic<bool> wasAskedFor = false;
};

template <class Ch>
constinit Directory<Ch> configDirectory{kConfig<Ch>, KITBAG_STRING_CONFIG_PROMPT, false};
template <class Ch>
constinit Directory<Ch> dataDirectory{kData<Ch>, KITBAG_STRING_DATA_PROMPT, true};
template <class Ch>
constinit Directory<Ch> docDirectory{kDocs<Ch>, KITBAG_STRING_DOCS_PROMPT, false};

template <class Ch>
std::basic_string<Ch> ValueName(const Ch* kind) {
    return std::basic_string<Ch>(kind) + KITBAG_TEXT(Ch, " Directory");
}

template <class Ch>
bool Remember(const Ch* kind, const StringOf<Ch>& directory) {
    return PickForm<Ch>(KB_SetTStringA, KB_SetTStringW)(kSection<Ch>, ValueName(kind).c_str(),
                                                        directory);
}

/// The path with exactly one backslash at its end, also where it ends with several; an empty path
/// stays empty.
template <class Ch>
std::basic_string<Ch> WithOneBackslash(std::basic_string<Ch> path) {
    if (path.empty()) return path;
    while (EndsWithBackslash<Ch>(path)) path.pop_back();
    return path + Ch{'\\'};
}

/// Creates the whole path, its last folder included.
template <class Ch>
bool CreateFolders(const std::basic_string<Ch>& path) {
    return !path.empty() &&
           PickForm<Ch>(KB_CreatePathA, KB_CreatePathW)(WithOneBackslash(path).c_str());
}

template <class Ch>
bool FindRemembered(const Ch* kind, StringOf<Ch>& directory, bool create) {
    const auto name = ValueName(kind);
    if (!PickForm<Ch>(KB_GetTStringA, KB_GetTStringW)(kSection<Ch>, name.c_str(), directory))
        return false;
    // Without a second terminator that another program stored.
    directory.resize(Length(directory.c_str()));
    const DWORD attributes = AttributesOf(directory.c_str());
    const bool isMissing = attributes == INVALID_FILE_ATTRIBUTES;
    if (IsFolder(attributes) || (isMissing && create && CreateFolders<Ch>(directory))) {
        directory = WithOneBackslash<Ch>(directory);
        return true;
    }
    PickForm<Ch>(KB_DeleteValueA, KB_DeleteValueW)(kSection<Ch>, name.c_str());
    return false;
}

/// The folder that a module was loaded from, with its backslash; empty where the system cannot
/// tell.
template <class Ch>
std::basic_string<Ch> FolderOf(HMODULE module) {
    return FolderOfFile<Ch>(ModuleFile<Ch>(module));
}

/// Follows a shell link to a folder. The 16-bit form gets the target as 8-bit text in its 16-bit
/// buffer and follows it only as far as that goes.
template <class Ch>
bool FollowLink(const std::basic_string<Ch>& link, StringOf<Ch>& directory) {
    Ch target[MAX_PATH] = {};
    if (AttributesOf(link.c_str()) == INVALID_FILE_ATTRIBUTES ||
        !PickForm<Ch>(KB_GetLinkInfoA, KB_GetLinkInfoW)(link.c_str(), target, nullptr) ||
        !IsFolder(AttributesOf(target)))
        return false;
    directory = WithOneBackslash<Ch>(target);
    return true;
}

template <class Ch>
bool FindUpward(const Ch* kind, StringOf<Ch>& directory) {
    for (auto folder = FolderOf<Ch>(nullptr); !folder.empty();) {
        const auto candidate = folder + kind;
        if (IsFolder(AttributesOf(candidate.c_str()))) {
            directory = candidate + Ch{'\\'};
            return true;
        }
        // The word stands twice in the link's name (ConfigConfig.lnk): existing links are named so.
        if (FollowLink<Ch>(candidate + kind + KITBAG_TEXT(Ch, ".lnk"), directory)) return true;
        folder.pop_back();
        folder = FolderOfFile<Ch>(folder);
    }
    return false;
}

template <class Ch>
bool CreateBesideLibrary(const Ch* kind, StringOf<Ch>& directory) {
    const auto folder = FolderOf<Ch>(ModuleBase());
    if (folder.empty()) return false;
    directory = folder + kind + Ch{'\\'};
    // Remembered even where it cannot be created: the setter's result is the answer.
    CreateFolders<Ch>(directory);
    return Remember(kind, directory);
}

template <class Ch>
bool AskUser(const Ch* kind, StringOf<Ch>& directory, const Ch* prompt) {
    Ch chosen[MAX_PATH] = {};
    if (!PickForm<Ch>(KB_BrowseForFolderA, KB_BrowseForFolderW)(chosen, prompt)) return false;
    directory = WithOneBackslash<Ch>(chosen);
    return Remember(kind, directory);
}

template <class Ch>
bool FindExisting(const Ch* kind, StringOf<Ch>& directory, bool create = false) {
    return FindRemembered(kind, directory, create) || FindUpward(kind, directory);
}

template <class Ch>
bool FindCreateOrAsk(const Directory<Ch>& known, StringOf<Ch>& directory) {
    if (FindExisting(known.kind, directory, known.createsDefault)) return true;
    if (known.createsDefault) return CreateBesideLibrary(known.kind, directory);
    const auto prompt = LoadText<Ch>(ModuleBase(), known.prompt);
    return AskUser(known.kind, directory, prompt.c_str());
}

template <class Ch>
bool GetDirectory(Directory<Ch>& known, StringOf<Ch>& directory) {
    // Only one of racing first calls asks the user. All of them create: one that did not would find
    // the folder missing that another one is about to create, and forget it.
    const bool isLaterCall =
        known.createsDefault ? known.wasAskedFor.load() : known.wasAskedFor.exchange(true);
    if (isLaterCall) return FindExisting(known.kind, directory);
    const bool isFound = FindCreateOrAsk(known, directory);
    known.wasAskedFor = true;
    return isFound;
}

/// Skins have no prompt and no default of their own: the configuration's stand in for them.
template <class Ch>
bool GetSkinDirectory(StringOf<Ch>& directory) {
    return FindExisting(kSkin<Ch>, directory) || GetDirectory(configDirectory<Ch>, directory);
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_GetConfigDirectoryA(TWinString<char>& directory) {
    return Guarded([&] { return kitbag::GetDirectory(kitbag::configDirectory<char>, directory); });
}
bool KB_GetConfigDirectoryW(std::wstring& directory) {
    return Guarded(
        [&] { return kitbag::GetDirectory(kitbag::configDirectory<wchar_t>, directory); });
}

bool KB_GetDataDirectoryA(TWinString<char>& directory) {
    return Guarded([&] { return kitbag::GetDirectory(kitbag::dataDirectory<char>, directory); });
}
bool KB_GetDataDirectoryW(std::wstring& directory) {
    return Guarded([&] { return kitbag::GetDirectory(kitbag::dataDirectory<wchar_t>, directory); });
}

bool KB_GetDocDirectoryA(TWinString<char>& directory) {
    return Guarded([&] { return kitbag::GetDirectory(kitbag::docDirectory<char>, directory); });
}
bool KB_GetDocDirectoryW(std::wstring& directory) {
    return Guarded([&] { return kitbag::GetDirectory(kitbag::docDirectory<wchar_t>, directory); });
}

bool KB_GetSkinDirectoryA(TWinString<char>& directory) {
    return Guarded([&] { return kitbag::GetSkinDirectory<char>(directory); });
}
bool KB_GetSkinDirectoryW(std::wstring& directory) {
    return Guarded([&] { return kitbag::GetSkinDirectory<wchar_t>(directory); });
}

bool KB_SetConfigDirectoryA(const TWinString<char>& directory) {
    return Guarded([&] { return kitbag::Remember(kitbag::kConfig<char>, directory); });
}
bool KB_SetConfigDirectoryW(const std::wstring& directory) {
    return Guarded([&] { return kitbag::Remember(kitbag::kConfig<wchar_t>, directory); });
}

bool KB_SetSkinDirectoryA(const TWinString<char>& directory) {
    return Guarded([&] { return kitbag::Remember(kitbag::kSkin<char>, directory); });
}
bool KB_SetSkinDirectoryW(const std::wstring& directory) {
    return Guarded([&] { return kitbag::Remember(kitbag::kSkin<wchar_t>, directory); });
}

bool KB_SetDataDirectoryA(const TWinString<char>& directory) {
    return Guarded([&] { return kitbag::Remember(kitbag::kData<char>, directory); });
}
bool KB_SetDataDirectoryW(const std::wstring& directory) {
    return Guarded([&] { return kitbag::Remember(kitbag::kData<wchar_t>, directory); });
}

bool KB_SetDocDirectoryA(const TWinString<char>& directory) {
    return Guarded([&] { return kitbag::Remember(kitbag::kDocs<char>, directory); });
}
bool KB_SetDocDirectoryW(const std::wstring& directory) {
    return Guarded([&] { return kitbag::Remember(kitbag::kDocs<wchar_t>, directory); });
}
