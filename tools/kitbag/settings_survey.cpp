#include "settings_survey.h"

#include <kitbag/kitbag.h>

#include "file.h"
#include "modules.h"
#include "sections.h"

namespace kitbag::tool {

namespace {

constexpr wchar_t kLoggers[] = L"Debug\\Performance";
constexpr std::wstring_view kEnable = L" Enable";
constexpr wchar_t kLoggerReport[] = L"c:\\perflog.txt";

std::wstring LoggerText(const std::wstring& name) {
    bool isOn = false;
    DWORD size = 0;
    KB_GetBoolW(kLoggers, (name + std::wstring(kEnable)).c_str(), &isOn);
    std::wstring text = name + (isOn ? L" is on" : L" is off");
    if (KB_GetDWORDW(kLoggers, (name + L" Size").c_str(), &size))
        text += L", room for " + Counted(size, L"sample");
    return text + L'\n';
}

}  // namespace

std::wstring LoggersText() {
    std::wstring text;
    for (const auto& [name, value] : ReadValues(HKEY_LOCAL_MACHINE, PathOf(kLoggers)))
        if (name.ends_with(kEnable))
            text += LoggerText(name.substr(0, name.size() - kEnable.size()));
    if (text.empty()) text = L"none is switched on or off: all are off\n";
    return text + (FileExists(kLoggerReport) ? L"there is a report: " : L"there is no report: ") +
           kLoggerReport + L'\n';
}

std::wstring ModulesSeenText() {
    std::wstring text;
    const std::wstring key = JoinedPath(kApplicationKey, L"Version");
    for (const auto& [name, value] : ReadValues(HKEY_LOCAL_MACHINE, key)) {
        const auto time = NumberOf(value);
        text += Padded(DisplayName(name), 24) + L"  " +
                (time ? LinkTimeText(*time) : L"! no time: " + ValueText(value)) + L'\n';
    }
    return text.empty() ? L"none\n" : text;
}

std::wstring RedirectedSettingsText() {
    std::wstring text;
    for (const std::wstring software : {L"", L"WOW6432Node\\"}) {
        const std::wstring path = L"Software\\Classes\\VirtualStore\\MACHINE\\SOFTWARE\\" +
                                  software + L"Tarnwick\\Vidmoor";
        Key key;
        if (OpenKey(HKEY_CURRENT_USER, path, KEY_READ, key) == ERROR_SUCCESS)
            text +=
                L"! programs of this user that may not write the settings below read\n  "
                L"HKEY_CURRENT_USER\\" +
                path + L" first\n";
    }
    return text;
}

}  // namespace kitbag::tool
