#include <shlobj.h>
#include <tests/faults/surroundings.h>

#include <cstdio>
#include <cstring>

namespace kitbag::test {

namespace {

HOOKPROC hooks[2] = {};
int installed = 0;

/// Shows the initial folder and one selection, then is confirmed.
ITEMIDLIST* Choose(BFFCALLBACK callback, LPARAM data) {
    ITEMIDLIST* chosen = nullptr;
    ::SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, &chosen);
    callback(nullptr, BFFM_INITIALIZED, 0, data);
    callback(nullptr, BFFM_INITIALIZED, 0, 0);
    callback(nullptr, BFFM_SELCHANGED, reinterpret_cast<LPARAM>(chosen), data);
    return chosen;
}
ITEMIDLIST* WINAPI BrowseA(BROWSEINFOA* dialog) { return Choose(dialog->lpfn, dialog->lParam); }
ITEMIDLIST* WINAPI BrowseW(BROWSEINFOW* dialog) { return Choose(dialog->lpfn, dialog->lParam); }

UINT WINAPI IsCdDrive(LPCSTR) { return DRIVE_CDROM; }
HANDLE WINAPI OpenFile(LPCSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                       DWORD creation, DWORD flags, HANDLE original) {
    // A volume is anything that can be closed.
    if (std::strncmp(path, R"(\\.\)", 4) == 0) return ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    return ::CreateFileA(path, access, share, security, creation, flags, original);
}
BOOL WINAPI Control(HANDLE, DWORD, void*, DWORD, void*, DWORD, DWORD*, OVERLAPPED*) { return TRUE; }

HHOOK WINAPI Install(int, HOOKPROC hook, HINSTANCE, DWORD) {
    hooks[installed++ % 2] = hook;
    return reinterpret_cast<HHOOK>(4);
}
BOOL WINAPI Uninstall(HHOOK) { return TRUE; }
FARPROC WINAPI WithoutInputInfo(HMODULE module, LPCSTR name) {
    return std::strcmp(name, "GetLastInputInfo") == 0 ? nullptr : ::GetProcAddress(module, name);
}

/// Wine's library of Windows 9x's network ends the process.
HMODULE WINAPI WithoutNetworkOf9x(LPCSTR name) {
    return std::strcmp(name, "svrapi.dll") == 0 ? nullptr : ::LoadLibraryA(name);
}

/// Far apart, so that measuring the processor's speed takes two readings.
DWORD WINAPI Ticks() {
    static DWORD ticks = 0;
    return ticks += 1500;
}
void WINAPI DoNotWait(DWORD) {}
std::FILE* OpenNothing(const char*, const char* mode) { return std::fopen("NUL", mode); }

}  // namespace

Surroundings::Surroundings() {
    ::RegCreateKeyA(HKEY_LOCAL_MACHINE, "Classes", &classes_);
    ::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes_);
    patches_.emplace_back("SHBrowseForFolderA", BrowseA);
    patches_.emplace_back("SHBrowseForFolderW", BrowseW);
    patches_.emplace_back("GetDriveTypeA", IsCdDrive);
    patches_.emplace_back("CreateFileA", OpenFile);
    patches_.emplace_back("DeviceIoControl", Control);
    patches_.emplace_back("SetWindowsHookExA", Install);
    patches_.emplace_back("UnhookWindowsHookEx", Uninstall);
    patches_.emplace_back("GetProcAddress", WithoutInputInfo);
    patches_.emplace_back("LoadLibraryA", WithoutNetworkOf9x);
    patches_.emplace_back("GetTickCount", Ticks);
    patches_.emplace_back("Sleep", DoNotWait);
    patches_.emplace_back("fopen", OpenNothing);
}

Surroundings::~Surroundings() {
    ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    ::RegCloseKey(classes_);
}

void Surroundings::PressAKey() {
    for (const HOOKPROC hook : hooks)
        if (hook) hook(HC_ACTION, 'A', 0);
}

}  // namespace kitbag::test
