#include "modules.h"

#include <kitbag/kitbag.h>

#include <algorithm>

#include "console.h"
#include "file.h"
#include "system_error.h"
#include "text.h"

namespace kitbag::tool {

namespace {

bool Read(const File& file, DWORD position, void* buffer, DWORD size) {
    DWORD read = 0;
    return ::SetFilePointer(file.Get(), static_cast<LONG>(position), nullptr, FILE_BEGIN) ==
               position &&
           ::ReadFile(file.Get(), buffer, size, &read, nullptr) && read == size;
}

/// From the file's header, as the library reads it; its own function would store it.
std::optional<DWORD> LinkTimeOf(const std::wstring& path) {
    const File file(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, 0, nullptr));
    IMAGE_DOS_HEADER dos;
    struct {
        DWORD signature;
        IMAGE_FILE_HEADER header;
    } module;
    if (!file || !Read(file, 0, &dos, sizeof dos) || dos.e_magic != IMAGE_DOS_SIGNATURE ||
        !Read(file, static_cast<DWORD>(dos.e_lfanew), &module, sizeof module) ||
        module.signature != IMAGE_NT_SIGNATURE)
        return std::nullopt;
    return module.header.TimeDateStamp;
}

std::wstring VersionText(DWORD upper, DWORD lower) {
    return std::to_wstring(HIWORD(upper)) + L'.' + std::to_wstring(LOWORD(upper)) + L'.' +
           std::to_wstring(HIWORD(lower)) + L'.' + std::to_wstring(LOWORD(lower));
}

struct Column {
    const wchar_t* title;
    std::wstring (*text)(const Module&);
};

constexpr Column kColumns[] = {
    {L"file", [](const Module& module) { return module.name; }},
    {L"product", [](const Module& module) { return module.productVersion; }},
    {L"version", [](const Module& module) { return module.fileVersion; }},
    {L"linked",
     [](const Module& module) {
         return module.linkTime ? LinkTimeText(*module.linkTime) : std::wstring(L"no module");
     }},
    {L"description", [](const Module& module) { return module.description; }},
};

}  // namespace

Module ReadModule(const std::wstring& folder, const std::wstring& name) {
    Module module;
    module.name = name;
    module.linkTime = LinkTimeOf(folder + name);
    const std::string path = ToAnsi(folder + name);
    CModuleVersion version(path.c_str());
    if (!version.Read()) return module;
    module.productVersion = VersionText(version.dwProductVersionMS, version.dwProductVersionLS);
    module.fileVersion = VersionText(version.dwFileVersionMS, version.dwFileVersionLS);
    const char* const description = version.GetStringValue("FileDescription");
    if (description) module.description = FromAnsi(description);
    return module;
}

std::vector<Module> ModulesOf(const std::wstring& folder) {
    if (!FolderExists(folder)) throw SystemFailure(folder, DWORD{ERROR_PATH_NOT_FOUND});
    const std::wstring prefix = WithBackslash(folder);
    std::vector<std::wstring> names;
    for (const wchar_t* pattern : {L"*.exe", L"*.dll", L"*.ocx"})
        std::ranges::copy(FileNames(prefix + pattern), std::back_inserter(names));
    std::ranges::sort(names, NameLess());
    Progress progress;
    std::vector<Module> modules;
    for (const std::wstring& name : names) {
        progress.Show(L"reading " + Counted(names.size(), L"module") + L": " + name);
        modules.push_back(ReadModule(prefix, name));
    }
    return modules;
}

std::wstring ModulesText(const std::vector<Module>& modules) {
    if (modules.empty()) return L"none\n";
    std::vector<std::wstring> lines(modules.size() + 1);
    for (const Column& column : kColumns) {
        std::size_t width = std::wstring(column.title).size();
        for (const Module& module : modules) width = std::max(width, column.text(module).size());
        lines[0] += Padded(column.title, width + 2);
        for (std::size_t i = 0; i < modules.size(); ++i)
            lines[i + 1] += Padded(column.text(modules[i]), width + 2);
    }
    std::wstring text;
    for (const std::wstring& line : lines)
        text += line.substr(0, line.find_last_not_of(L' ') + 1) + L'\n';
    return text;
}

std::wstring LinkTimeText(DWORD seconds) {
    constexpr ULONGLONG kTicksPerSecond = 10'000'000;
    constexpr ULONGLONG k1970 = 116'444'736'000'000'000;
    ULARGE_INTEGER ticks;
    ticks.QuadPart = seconds * kTicksPerSecond + k1970;
    const FILETIME file = {ticks.LowPart, ticks.HighPart};
    SYSTEMTIME time{};
    ::FileTimeToSystemTime(&file, &time);
    return TimeText(time) + L" UTC";
}

}  // namespace kitbag::tool
