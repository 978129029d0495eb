// What stands around the library while everything of it is called at once: no dialog, no waiting,
// no hook in other programs, no real drive, no registration that other tests would see.
#pragma once

#include <shlobj.h>
#include <tests/support/import_patch.h>

#include <cstdio>
#include <cstring>

namespace kitbag::test {

class Surroundings {
 public:
    Surroundings() {
        HKEY classes = nullptr;
        ::RegCreateKeyA(HKEY_LOCAL_MACHINE, "Classes", &classes);
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes);
        ::RegCloseKey(classes);
    }
    ~Surroundings() { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }

 private:
    /// Shows the initial folder and one selection, then is confirmed.
    template <class Dialog>
    static ITEMIDLIST* WINAPI Browse(Dialog* dialog) {
        ITEMIDLIST* chosen = nullptr;
        ::SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, &chosen);
        dialog->lpfn(nullptr, BFFM_INITIALIZED, 0, dialog->lParam);
        dialog->lpfn(nullptr, BFFM_INITIALIZED, 0, 0);
        dialog->lpfn(nullptr, BFFM_SELCHANGED, reinterpret_cast<LPARAM>(chosen), 0);
        return chosen;
    }

    static UINT WINAPI FindDrive(LPCSTR) { return DRIVE_CDROM; }
    /// A volume is anything that can be opened.
    static HANDLE WINAPI Open(LPCSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* rights,
                              DWORD creation, DWORD flags, HANDLE model) {
        const bool isVolume = std::strncmp(path, R"(\\.\)", 4) == 0;
        return ::CreateFileA(isVolume ? "NUL" : path, access, share, rights, creation, flags,
                             model);
    }

    /// Hears a key at once.
    static HHOOK WINAPI InstallHook(int, HOOKPROC hook, HINSTANCE, DWORD) {
        hook(HC_ACTION, 'A', 0);
        return reinterpret_cast<HHOOK>(4);
    }
    static BOOL WINAPI RemoveHook(HHOOK) { return TRUE; }
    /// Wine's library of Windows 9x's network ends the process.
    static FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name) {
        const bool isMissing = module == ::GetModuleHandleA("svrapi.dll") ||
                               std::strcmp(name, "GetLastInputInfo") == 0;
        return isMissing ? nullptr : ::GetProcAddress(module, name);
    }

    /// Far apart, so that measuring the processor's speed takes two readings.
    static DWORD WINAPI CountTicks() { return ticks_ += 1500; }
    static void WINAPI DoNotWait(DWORD) {}
    static std::FILE* OpenNothing(const char*, const char* mode) { return std::fopen("NUL", mode); }

    static inline DWORD ticks_ = 0;
    const ImportPatch patches_[10] = {{"SHBrowseForFolderA", Browse<BROWSEINFOA>},
                                      {"SHBrowseForFolderW", Browse<BROWSEINFOW>},
                                      {"GetDriveTypeA", FindDrive},
                                      {"CreateFileA", Open},
                                      {"SetWindowsHookExA", InstallHook},
                                      {"UnhookWindowsHookEx", RemoveHook},
                                      {"GetProcAddress", FindFunction},
                                      {"GetTickCount", CountTicks},
                                      {"Sleep", DoNotWait},
                                      {"fopen", OpenNothing}};
};

}  // namespace kitbag::test
