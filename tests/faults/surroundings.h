// What stands around the library while everything of it is called at once: no dialog, no waiting,
// no hook in other programs, no real drive, no registration that other tests would see.
#pragma once

#include <shlobj.h>
#include <tests/support/import_patch.h>

#include <cstdio>
#include <cstring>
#include <utility>

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

    /// Waits for the end of the library's thread, by a way that does not fail.
    static void JoinThread() {
        ::WaitForSingleObject(thread_, INFINITE);
        ::CloseHandle(std::exchange(thread_, nullptr));
    }

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
    /// A volume is anything that can be closed.
    static HANDLE WINAPI OpenFile(LPCSTR path, DWORD access, DWORD share,
                                  SECURITY_ATTRIBUTES* rights, DWORD creation, DWORD flags,
                                  HANDLE model) {
        return std::strncmp(path, R"(\\.\)", 4) == 0
                   ? ::CreateEventA(nullptr, TRUE, FALSE, nullptr)
                   : ::CreateFileA(path, access, share, rights, creation, flags, model);
    }
    static BOOL WINAPI Control(HANDLE, DWORD, void*, DWORD, void*, DWORD, DWORD*, OVERLAPPED*) {
        return TRUE;
    }

    /// Hears a key at once.
    static HHOOK WINAPI InstallHook(int, HOOKPROC hook, HINSTANCE, DWORD) {
        hook(HC_ACTION, 'A', 0);
        return reinterpret_cast<HHOOK>(4);
    }
    static BOOL WINAPI RemoveHook(HHOOK) { return TRUE; }
    static FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name) {
        const bool isMissing = std::strcmp(name, "GetLastInputInfo") == 0;
        return isMissing ? nullptr : ::GetProcAddress(module, name);
    }
    /// Wine's library of Windows 9x's network ends the process.
    static HMODULE WINAPI LoadModule(LPCSTR name) {
        return std::strcmp(name, "svrapi.dll") == 0 ? nullptr : ::LoadLibraryA(name);
    }

    static HANDLE WINAPI StartThread(SECURITY_ATTRIBUTES* rights, SIZE_T stack,
                                     LPTHREAD_START_ROUTINE run, void* argument, DWORD flags,
                                     DWORD* id) {
        HANDLE started = ::CreateThread(rights, stack, run, argument, flags, id);
        thread_ = ::OpenThread(SYNCHRONIZE, FALSE, *id);
        return started;
    }
    /// Far apart, so that measuring the processor's speed takes two readings.
    static DWORD WINAPI CountTicks() { return ticks_ += 1500; }
    static void WINAPI DoNotWait(DWORD) {}
    static std::FILE* OpenNothing(const char*, const char* mode) { return std::fopen("NUL", mode); }

    static inline HANDLE thread_ = nullptr;
    static inline DWORD ticks_ = 0;
    const ImportPatch patches_[13] = {{"SHBrowseForFolderA", Browse<BROWSEINFOA>},
                                      {"SHBrowseForFolderW", Browse<BROWSEINFOW>},
                                      {"GetDriveTypeA", FindDrive},
                                      {"CreateFileA", OpenFile},
                                      {"DeviceIoControl", Control},
                                      {"SetWindowsHookExA", InstallHook},
                                      {"UnhookWindowsHookEx", RemoveHook},
                                      {"GetProcAddress", FindFunction},
                                      {"LoadLibraryA", LoadModule},
                                      {"CreateThread", StartThread},
                                      {"GetTickCount", CountTicks},
                                      {"Sleep", DoNotWait},
                                      {"fopen", OpenNothing}};
};

}  // namespace kitbag::test
