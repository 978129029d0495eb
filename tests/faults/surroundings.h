// What stands around the library while everything of it is called at once: no dialog, no waiting,
// no hook in other programs, no real drive, no registration that other tests would see.
#pragma once

#include <shlobj.h>
#include <tests/support/import_patch.h>

#include <cstdio>
#include <cstring>

namespace kitbag::test {

/// Shows the initial folder and one selection, then is confirmed.
template <class Dialog>
ITEMIDLIST* WINAPI Browse(Dialog* dialog) {
    ITEMIDLIST* chosen = nullptr;
    ::SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, &chosen);
    for (const LPARAM folder : {dialog->lParam, LPARAM{}})
        dialog->lpfn(nullptr, BFFM_INITIALIZED, 0, folder);
    dialog->lpfn(nullptr, BFFM_SELCHANGED, reinterpret_cast<LPARAM>(chosen), 0);
    return chosen;
}

inline DWORD ticks = 0;

struct Surroundings {
    Surroundings() {
        HKEY classes = nullptr;
        ::RegCreateKeyA(HKEY_LOCAL_MACHINE, "Classes", &classes);
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes);
        ::RegCloseKey(classes);
    }
    ~Surroundings() { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }

    const ImportPatch patches[10] = {
        {"SHBrowseForFolderA", Browse<BROWSEINFOA>},
        {"SHBrowseForFolderW", Browse<BROWSEINFOW>},
        {"GetDriveTypeA", +[](LPCSTR) WINAPI -> UINT { return DRIVE_CDROM; }},
        // A volume is anything that can be opened.
        {"CreateFileA",
         +[](LPCSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* rights, DWORD creation,
             DWORD flags, HANDLE model) WINAPI {
             if (std::strncmp(path, R"(\\.\)", 4) == 0) path = "NUL";
             return ::CreateFileA(path, access, share, rights, creation, flags, model);
         }},
        // Hears a key at once.
        {"SetWindowsHookExA",
         +[](int, HOOKPROC hook, HINSTANCE, DWORD)
              WINAPI { return reinterpret_cast<HHOOK>(4 + hook(HC_ACTION, 'A', 0)); }},
        {"UnhookWindowsHookEx", +[](HHOOK) WINAPI -> BOOL { return TRUE; }},
        // Wine's library of Windows 9x's network ends the process.
        {"GetProcAddress",
         +[](HMODULE module, LPCSTR name) WINAPI {
             const bool isMissing = module == ::GetModuleHandleA("svrapi.dll") ||
                                    !std::strcmp(name, "GetLastInputInfo");
             return isMissing ? nullptr : ::GetProcAddress(module, name);
         }},
        // Far apart, so that measuring the processor's speed takes two readings.
        {"GetTickCount", +[]() WINAPI { return ticks += 1500; }},
        {"Sleep", +[](DWORD) WINAPI {}},
        {"fopen", +[](const char*, const char* mode) { return std::fopen("NUL", mode); }}};
};

}  // namespace kitbag::test
