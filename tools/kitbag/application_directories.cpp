#include "application_directories.h"

#include <kitbag/kitbag.h>

#include "file.h"
#include "text.h"

namespace kitbag::tool {

namespace {

/// The library's own texts, cut where a second terminator was stored.
std::wstring RememberedPath(const std::wstring& kind) {
    std::wstring path;
    KB_GetTStringW(L"Directories", (kind + L" Directory").c_str(), path);
    return path.substr(0, path.find(L'\0'));
}

/// The target of a link whose name holds the word twice, as the library looks for it.
std::wstring LinkedFolder(const std::wstring& link) {
    char target[MAX_PATH] = "";
    if (!FileExists(link) || !KB_GetLinkInfoA(ToAnsi(link).c_str(), target, nullptr)) return {};
    const std::wstring folder = FromAnsi(target);
    return FolderExists(folder) ? folder : std::wstring();
}

ApplicationDirectory FindUpward(const std::wstring& kind, std::wstring folder) {
    while (!folder.empty()) {
        const std::wstring candidate = folder + kind;
        if (FolderExists(candidate)) return {candidate + L'\\', L"found upward from the programs"};
        const std::wstring link = candidate + kind + L".lnk";
        const std::wstring target = LinkedFolder(link);
        if (!target.empty()) return {WithBackslash(target), L"found upward, by the link " + link};
        folder = FolderOf(folder.substr(0, folder.size() - 1));
    }
    return {};
}

ApplicationDirectory FindExisting(const std::wstring& kind, const std::wstring& programFolder) {
    const std::wstring remembered = RememberedPath(kind);
    if (FolderExists(remembered)) return {WithBackslash(remembered), L"remembered"};
    ApplicationDirectory found = FindUpward(kind, programFolder);
    if (!remembered.empty())
        found.origin += (found.path.empty() ? L"remembered " : L"; remembered ") + remembered +
                        L" is no folder and will be forgotten";
    return found;
}

ApplicationDirectory WithConsequence(ApplicationDirectory directory,
                                     const std::wstring& consequence) {
    if (directory.path.empty())
        directory.origin += (directory.origin.empty() ? L"" : L"; ") + consequence;
    return directory;
}

constexpr wchar_t kAsks[] = L"the next program that needs it asks the user";

}  // namespace

ApplicationDirectory ConfigDirectory(const std::wstring& programFolder) {
    return WithConsequence(FindExisting(L"Config", programFolder), kAsks);
}

ApplicationDirectory SkinDirectory(const std::wstring& programFolder) {
    ApplicationDirectory skin = FindExisting(L"Skin", programFolder);
    if (!skin.path.empty()) return skin;
    skin.path = ConfigDirectory(programFolder).path;
    skin.origin += (skin.origin.empty() ? L"" : L"; ") + std::wstring(L"that of the configuration");
    return skin;
}

ApplicationDirectory DataDirectory(const std::wstring& programFolder) {
    const std::wstring remembered = RememberedPath(L"Data");
    // Only this one is created again where it is remembered.
    if (!remembered.empty() && !FolderExists(remembered) && !FileExists(remembered))
        return {{}, L"remembered " + remembered + L" is missing; the next program creates it"};
    return WithConsequence(FindExisting(L"Data", programFolder),
                           L"the next program that needs it creates Data beside Kitbag.dll");
}

ApplicationDirectory DocDirectory(const std::wstring& programFolder) {
    return WithConsequence(FindExisting(L"Docs", programFolder), kAsks);
}

std::wstring OwnFolder() { return FolderOf(ModuleFile(nullptr)); }

}  // namespace kitbag::tool
