#include <kitbag/kitbag.h>

#include <algorithm>
#include <map>

#include "commands.h"
#include "tools/kitbag/application_directories.h"
#include "tools/kitbag/com.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/file.h"
#include "tools/kitbag/getter_answers.h"
#include "tools/kitbag/locale_directories.h"
#include "tools/kitbag/sections.h"

namespace kitbag::tool {

namespace {

constexpr wchar_t kSkins[] = L"Skins";

struct ImageDirectory {
    const wchar_t* what;
    std::wstring path;
};

void PrintRow(const std::wstring& title, const std::wstring& text) {
    PrintLine(text.empty() ? title : Padded(title, 24) + text);
}

void PrintOverride(const std::wstring& name) {
    const auto value = FindValue(kSkins, name);
    PrintRow(L"settings", value ? FullName(kSkins, name) + L": " + ValueText(*value)
                                : L"no other file; the page's own name is taken");
    const std::wstring mark = value ? GetterMark(kSkins, name, *value) : L"";
    if (!mark.empty()) PrintRow(L"", L"! " + mark);
}

/// As the page factory takes it: the settings' text of that name, if there is one.
std::wstring ScriptName(const std::wstring& name) {
    TWinString<char> file;
    return KB_GetTStringA(ToAnsi(kSkins).c_str(), ToAnsi(name).c_str(), file) ? FromAnsi(file)
                                                                              : name;
}

std::wstring ScriptFile(const std::wstring& name, const std::wstring& skinDirectory) {
    const std::wstring file = ScriptName(name);
    return file.find_first_of(L":\\") == std::wstring::npos ? skinDirectory + file : file;
}

std::wstring Existing(const std::wstring& folder) {
    if (folder.empty()) return L"none";
    return folder + (FolderExists(folder) ? L"" : L" ! missing");
}

bool IsImage(const std::wstring& name) {
    static constexpr std::wstring_view kExtensions[] = {L".bmp", L".gif", L".ico",  L".jpg",
                                                        L".png", L".tif", L".jpeg", L".tiff"};
    const std::wstring extension = name.substr(std::min(name.rfind(L'.'), name.size()));
    return std::ranges::any_of(kExtensions, [&extension](std::wstring_view known) {
        return AreSameNames(extension, known);
    });
}

void PrintImages(const std::vector<ImageDirectory>& directories) {
    // The first directory that has an image keeps it.
    std::map<std::wstring, const wchar_t*, NameLess> images;
    for (const ImageDirectory& directory : directories)
        if (!directory.path.empty())
            for (const std::wstring& name : FileNames(WithBackslash(directory.path) + L'*'))
                if (IsImage(name)) images.emplace(name, directory.what);
    PrintRow(L"images", images.empty() ? L"none" : L"");
    for (const auto& [name, origin] : images) PrintRow(L"  " + name, origin);
}

ExitCode Page(const Arguments& arguments) {
    const Com com;
    const std::wstring& name = arguments[0];
    const std::wstring folder =
        WithBackslash(FullPath(arguments.ValueOf(L"--folder").value_or(OwnFolder())));
    const ApplicationDirectory skin = SkinDirectory(folder);
    const LocaleDirectories locale = AskForLocaleDirectories(folder);
    const std::wstring script = ScriptFile(name, skin.path);
    const bool isThere = FileExists(script);

    PrintOverride(name);
    PrintRow(L"script", script + (isThere ? L"" : L" ! missing"));
    PrintRow(L"skin directory", Existing(skin.path) + L" (" + skin.origin + L')');
    PrintRow(L"language directory",
             Existing(locale.language) + (locale.hasLibrary ? L"" : L", Lingrel.dll is not there"));
    PrintRow(L"sub-language directory", Existing(locale.subLanguage));
    PrintImages({{L"sub-language directory", locale.subLanguage},
                 {L"language directory", locale.language},
                 {L"skin directory", skin.path}});
    return isThere ? ExitCode::Done : ExitCode::NotFound;
}

}  // namespace

const Command kPage = {
    L"page",
    L"NAME [--folder FOLDER]",
    L"shows from which files a skinned page is made",
    L"The other script file that the settings may name, the script file and whether it exists, "
    L"the\n"
    L"directories of skin and language, and from which of them each image there would come. Looks\n"
    L"as a program in FOLDER does; by default in the folder of kitbag.exe. Exit code 1 where the\n"
    L"script file is missing.\n",
    {1, 1, {L"--folder "}},
    Page};

}  // namespace kitbag::tool
