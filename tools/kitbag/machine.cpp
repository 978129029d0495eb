#include "machine.h"

#include <kitbag/kitbag.h>
#include <shlobj.h>

#include <cstdlib>
#include <memory>

#include "sections.h"
#include "text.h"

namespace kitbag::tool {

namespace {

std::wstring Row(const wchar_t* title, const std::wstring& text) {
    return Padded(title, 22) + text + L'\n';
}

std::wstring YesOrNo(bool is) { return is ? L"yes" : L"no"; }

/// Asked of the system's core: other functions answer programs that do not name a newer Windows
/// with an older one.
std::wstring WindowsText() {
    TOSDepFn<LONG(WINAPI*)(OSVERSIONINFOW*)> ask("ntdll.dll", "RtlGetVersion");
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (!ask.Load() || ask.Function()(&version) != 0) return L"unknown";
    std::wstring text = std::to_wstring(version.dwMajorVersion) + L'.' +
                        std::to_wstring(version.dwMinorVersion) + L", build " +
                        std::to_wstring(version.dwBuildNumber);
    if (*version.szCSDVersion) text += L", " + std::wstring(version.szCSDVersion);
    return text;
}

bool Is64Bit() {
    TOSDepFn<BOOL(WINAPI*)(HANDLE, BOOL*)> ask("kernel32.dll", "IsWow64Process");
    BOOL is = FALSE;
    return ask.Load() && ask.Function()(::GetCurrentProcess(), &is) && is;
}

/// The library's two lines, as rows.
std::wstring ProcessorText() {
    const std::unique_ptr<char, decltype(&std::free)> description(KB_GetSystemDescription(),
                                                                  std::free);
    const std::wstring text = description ? FromAnsi(description.get()) : L"unknown";
    const std::size_t end = std::min(text.find(L'\n'), text.size());
    return Row(L"processor", text.substr(0, end)) +
           (end < text.size() ? Row(L"", text.substr(end + 1)) : L"");
}

std::wstring FirstRunText() {
    Key key;
    const std::wstring path = JoinedPath(kApplicationKey, L"RunOnce");
    const bool isThere = OpenKey(HKEY_LOCAL_MACHINE, path, KEY_READ, key) == ERROR_SUCCESS;
    if (isThere == KB_IsFirstRun()) return isThere ? L"not completed" : L"completed";
    return L"not completed ! but this user's programs cannot tell: no full access to the key";
}

std::wstring LevelText() {
    const auto stored = FindValue(L"Screen", L"User experience level");
    return std::to_wstring(KB_GetUserInterfaceLevel()) + L" of 0 (everything) to 3 (the least)" +
           (stored ? L", stored as " + ValueText(*stored) : L", nothing is stored");
}

std::wstring IdleText() {
    // Not ended afterwards: where the system has hooks for this, all programs share them.
    if (!KB_UserIdleMonitorInit()) return L"cannot be measured";
    const DWORD seconds = KB_GetUserIdleTime() / 1000;
    return std::to_wstring(seconds / 60) + L" min " + std::to_wstring(seconds % 60) + L" s";
}

}  // namespace

std::wstring ComputerName() {
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD length = std::size(name);
    return ::GetComputerNameW(name, &length) ? std::wstring(name, length) : L"unknown";
}

std::wstring SystemText() {
    return Row(L"computer", ComputerName()) + Row(L"Windows", WindowsText()) +
           Row(L"NT family", YesOrNo(KB_IsNT())) + Row(L"64-bit", YesOrNo(Is64Bit())) +
           Row(L"ANSI code page", std::to_wstring(::GetACP())) + ProcessorText();
}

std::wstring SessionText() {
    const bool isRemote = ::GetSystemMetrics(SM_REMOTESESSION) != 0;
    return Row(L"interactive", YesOrNo(KB_IsInteractiveSession())) +
           Row(L"remote", YesOrNo(isRemote)) +
           Row(L"administrator", YesOrNo(::IsUserAnAdmin() != FALSE)) +
           Row(L"first run", FirstRunText()) + Row(L"user interface level", LevelText()) +
           Row(L"idle for", IdleText());
}

}  // namespace kitbag::tool
