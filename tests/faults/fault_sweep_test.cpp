#include <gmock/gmock.h>
#include <shlobj.h>
#include <tests/faults/workload.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/own_process.h>
#include <tests/support/private_registry.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <regex>
#include <sstream>

namespace {

using namespace kitbag::test;

/// Shows the initial folder and one selection, then is confirmed.
template <class Dialog>
ITEMIDLIST* WINAPI Browse(Dialog* dialog) {
    ITEMIDLIST* chosen = nullptr;
    ::SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, &chosen);
    dialog->lpfn(nullptr, BFFM_INITIALIZED, 0, dialog->lParam);
    dialog->lpfn(nullptr, BFFM_INITIALIZED, 0, 0);
    dialog->lpfn(nullptr, BFFM_SELCHANGED, reinterpret_cast<LPARAM>(chosen), 0);
    return chosen;
}

/// What stands around the library while everything of it is called at once: no dialog, no waiting,
/// no hook in other programs, no real drive, no registration that other tests would see.
struct Surroundings {
    Surroundings() { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes.Get()); }

    const RawKey classes{"Classes"};
    const ImportPatch patches[11] = {
        {"SHBrowseForFolderA", Browse<BROWSEINFOA>},
        {"SHBrowseForFolderW", Browse<BROWSEINFOW>},
        {"GetDriveTypeA", +[](LPCSTR) WINAPI -> UINT { return DRIVE_CDROM; }},
        // A volume is anything that can be opened.
        {"CreateFileA",
         +[](LPCSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* rights, DWORD creation,
             DWORD flags, HANDLE model) WINAPI {
             if (std::string_view(path).starts_with(R"(\\.\)")) path = "NUL";
             return ::CreateFileA(path, access, share, rights, creation, flags, model);
         }},
        // Hears a key at once.
        {"SetWindowsHookExA",
         +[](int, HOOKPROC hook, HINSTANCE, DWORD) WINAPI { return hook(HC_ACTION, 'A', 0) + 4; }},
        {"UnhookWindowsHookEx", +[](HHOOK) WINAPI -> BOOL { return TRUE; }},
        {"DeviceIoControl",
         +[](HANDLE, DWORD, void*, DWORD, void*, DWORD, DWORD*, OVERLAPPED*)
              WINAPI -> BOOL { return TRUE; }},
        // Wine's library of Windows 9x's network ends the process.
        {"GetProcAddress",
         +[](HMODULE module, LPCSTR name) WINAPI {
             const bool isMissing = module == ::GetModuleHandleA("svrapi.dll") ||
                                    std::string_view(name) == "GetLastInputInfo";
             return isMissing ? nullptr : ::GetProcAddress(module, name);
         }},
        // Far apart, so that measuring the processor's speed takes two readings.
        {"GetTickCount", +[]() WINAPI { return ticks += 1500; }},
        {"Sleep", +[](DWORD) WINAPI {}},
        {"fopen", +[](const char*, const char* mode) { return std::fopen("NUL", mode); }}};

    static inline DWORD ticks = 0;
};

std::atomic<int> calls;
DWORD answer;
DWORD Fail() { return ++calls, answer; }

void* NoMemory(std::size_t) {
    Fail();
    throw std::bad_alloc();
}

/// Waits all the same: what the workload has started must end before it does.
DWORD WINAPI WaitAndFail(HANDLE object, DWORD timeout) {
    return ::WaitForSingleObject(object, timeout), Fail();
}

void* Fake(auto* function) { return reinterpret_cast<void*>(function); }

/// Takes so many words of arguments off the stack.
template <std::size_t... word>
void* FakeOf(std::index_sequence<word...>) {
    return Fake(+[](decltype(word)...) WINAPI { return Fail(); });
}

/// What stands in for each import of the system, and for those of the compiler's runtime that run
/// out of memory or into a file that is not there.
const std::map<std::string, void*> kFakes = {
    {"_Znaj", Fake(NoMemory)},
    {"_Znwj", Fake(NoMemory)},
    {"_ZnwjRKSt9nothrow_t", Fake(Fail)},
    {"_strdup", Fake(Fail)},
    {"_vsnprintf", Fake(Fail)},
    {"fopen", Fake(Fail)},
    {"WaitForSingleObject", Fake(WaitAndFail)},
#include "import_fakes.inc"
};

/// The imports that can fail, new ones of the system included.
std::vector<std::string> ImportsThatCanFail() {
    static const std::regex kExempt(
        // They have no failure.
        ".*CriticalSection|GetCurrentThreadId|GetLastError|GetTickCount|IsDBCSLeadByte(Ex)?|"
        "SetErrorMode|Sleep|TlsGetValue|lstrlen.|"
        // They release; one that does not has leaked, whatever the library does.
        "CloseHandle|CoUninitialize|FindClose|FreeLibrary|Global(Free|Unlock)|LocalFree|"
        "RegCloseKey|SysFreeString|"
        // They are called while the library is loaded or unloaded.
        "DisableThreadLibraryCalls|GetModuleHandleW|HeapDestroy|VirtualProtect|"
        // Only Windows 9x's network leads to it.
        "IsBadStringPtrA");
    std::vector<std::string> names = ImportedNames();
    std::erase_if(names, [](const std::string& name) {
        return !kFakes.contains(name) || std::regex_match(name, kExempt);
    });
    return names;
}

/// Says in every system function's language that it failed: an invalid handle or size, a negative
/// result, an error's number, a yes to IsBad...; but those not named here say it with a 0.
DWORD FailureOf(const std::string& name) {
    static const std::regex kNotZero(
        "(CLSIDFrom|Co[CI]|CreateErrorInfo|CreateFile|FindFirst|GetFile(Attributes|Size)|IsBad|"
        "LoadType|"
        "QueryPath|Reg|SHGetMalloc|SetErrorInfo|SetFilePointer|WaitFor|_vsnprintf).*");
    return std::regex_match(name, kNotZero) ? 0xffffffff : 0;
}

/// The blocks in use of all heaps of the process.
int HeapBlocks() {
    HANDLE heaps[64];
    const DWORD count = ::GetProcessHeaps(64, heaps);
    int blocks = 0;
    for (DWORD i = 0; i < count; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        ::HeapLock(heaps[i]);
        while (::HeapWalk(heaps[i], &entry))
            blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
        ::HeapUnlock(heaps[i]);
    }
    return blocks;
}

/// What the library loses it loses in every round; the system keeps this or that at times.
void ExpectNothingLost() {
    int handles = INT_MAX, blocks = INT_MAX;
    for (int round = 0; round < 3; ++round) {
        const int handlesBefore = static_cast<int>(LastNewHandle()), blocksBefore = HeapBlocks();
        RunWorkload();
        handles = std::min(handles, static_cast<int>(LastNewHandle()) - handlesBefore);
        blocks = std::min(blocks, HeapBlocks() - blocksBefore);
    }
    EXPECT_GE(0, handles) << "in steps of 4";
    EXPECT_GE(0, blocks);
}

TEST(Workload, CallsEveryExportAndSucceeds) {
    if (RanInAProcessOfItsOwn()) return;
    // Wine shares no folders, its processor is as fast as the faked clock, a level or a null is an
    // answer, too.
    static const std::regex kMayAnswerNothing(
        "KB_(LocalToUNC|UNCToLocal|GetCPUSpeed|GetAs|.*Level).*");
    const Surroundings surroundings;
    RunWorkload();
    std::vector<std::string> uncalled, failed;
    for (const auto& [address, name] : ExportedFunctions())
        if (!succeeded.contains(name)) uncalled.push_back(name);
    for (const auto& [name, hasSucceeded] : succeeded)
        if (!hasSucceeded && !std::regex_match(name, kMayAnswerNothing)) failed.push_back(name);
    EXPECT_THAT(uncalled, testing::IsEmpty()) << "calls of these belong into workload.h";
    EXPECT_THAT(failed, testing::IsEmpty());
}

struct Refusal {
    const char *import, *refused;
};
/// The calls of the workload that say that they failed when an import does. Where both lack the
/// letter of a text form it holds for either form. What the rooms' own tests show is here, too.
constexpr Refusal kRefusals[] = {
    {"CoCreateInstance", "KB_GetLinkInfoA KB_GetLinkInfoW KB_CreateGraphicFactory GetScript"},
    {"CopyFile", "KB_CopyFileDeep"},
    {"CreateDirectory", "KB_CreatePath KB_CopyFileDeep"},
    {"CreateErrorInfo", "KB_SetIErrorInfoA KB_SetIErrorInfoW"},
    {"CreateFileA", "KB_EjectVolume KB_FileCRC KB_GetStoredLinkTime"},
    {"DeleteFile", "KB_DeleteDirectory"},
    {"FindFirstFile", "KB_DeleteDirectory"},
    {"FindResourceA", "DllRegisterServer DllUnregisterServer"},
    {"GetClipboardData", "KB_PasteText"},
    {"GetDriveTypeA", "KB_EjectVolume"},
    {"GetFileVersionInfoA", "KB_GetModuleVersionA KB_GetModuleVersionW KB_GetMemModuleVersion"},
    {"GetFileVersionInfoSizeA", "KB_GetModuleVersionA KB_GetModuleVersionW KB_GetMemModuleVersion"},
    {"GetModuleFileNameA", "KB_GetMemModuleVersion"},
    {"GetModuleFileNameW", "DllRegisterServer DllUnregisterServer"},
    {"GlobalAlloc", "KB_CopyText"},
    {"GlobalLock", "KB_CopyText KB_PasteText"},
    {"LoadResource", "DllRegisterServer DllUnregisterServer"},
    {"LoadStringA", "LoadResourceString"},
    {"LoadTypeLibEx", "DllRegisterServer DllUnregisterServer"},
    {"LockResource", "DllRegisterServer DllUnregisterServer"},
    {"OpenClipboard", "KB_CopyText KB_PasteText"},
    {"RegisterTypeLib", "DllRegisterServer"},
    {"RegCreateKeyEx",
     "KB_SetBool KB_SetDWORD KB_SetInt KB_SetString KB_SetTString KB_SetBSTR KB_SetData"},
    {"RegDeleteKey", "KB_DeleteKey KB_DeleteSection"},
    {"RegDeleteKeyW", "DllUnregisterServer"},
    {"RegDeleteValue", "KB_DeleteValue"},
    {"RegDeleteValueA", "KB_ForceNewModule"},
    {"RegEnumKeyEx", "KB_EnumKey KB_EnumKeyTString"},
    {"RegEnumValue", "KB_EnumValue KB_EnumValueTString"},
    {"RegOpenKeyEx", "KB_GetBool KB_GetString KB_GetKeyCount KB_DeleteSection"},
    {"RegOpenKeyExA", "KB_IsFirstRun KB_ForceNewModule KB_GetStoredLinkTime"},
    {"RegQueryInfoKey", "KB_GetKeyCount KB_GetValueCount"},
    {"RegQueryValueEx",
     "KB_GetBool KB_GetDWORD KB_GetInt KB_GetString KB_GetTString KB_GetBSTR KB_GetData "
     "KB_GetDataSize"},
    {"RegSetValueEx",
     "KB_SetBool KB_SetDWORD KB_SetInt KB_SetString KB_SetTString KB_SetBSTR KB_SetData"},
    {"RegSetValueExW", "DllRegisterServer"},
    {"RemoveDirectory", "KB_DeleteDirectory"},
    {"SHBrowseForFolder", "KB_BrowseForFolder"},
    {"SHGetMalloc", "KB_BrowseForFolderA KB_BrowseForFolderW"},
    {"SHGetPathFromIDList", "KB_BrowseForFolder"},
    {"SetClipboardData", "KB_CopyText"},
    {"SetErrorInfo", "KB_SetIErrorInfoA KB_SetIErrorInfoW"},
    {"SetWindowsHookExA", "KB_UserIdleMonitorInit"},
    {"SysAllocString", "KB_GetBSTRA KB_GetBSTRW KB_FillModuleInfo LoadResourceString"},
    {"SysAllocStringLen", "KB_PasteText"},
    {"VerQueryValueA", "KB_GetModuleVersionA KB_GetModuleVersionW KB_GetMemModuleVersion"},
    {"_Znwj",
     "AddPage CreatePage GetScript LoadResourceString KB_FillModuleInfo KB_GetDataDirectoryA"},
    {"_ZnwjRKSt9nothrow_t", "KB_CreateKivPageFactory"},
    {"_strdup", "KB_GetVendorString KB_GetSystemDescription"},
};

/// The failures of the table for one import.
std::vector<std::string> RefusedWithout(std::string_view import) {
    std::vector<std::string> found;
    for (const auto& [name, refused] : kRefusals) {
        const std::string form(import.starts_with(name) ? import.substr(std::strlen(name)) : "-");
        if (form != "" && form != "A" && form != "W") continue;
        std::istringstream words(refused);
        for (std::string call; words >> call;) found.push_back(call + form);
    }
    return found;
}

class FaultSweep : public testing::TestWithParam<std::string> {};

TEST_P(FaultSweep, IsSurvivedAndLeavesNothingOpen) {
    const Surroundings surroundings;
    calls = 0;
    answer = FailureOf(GetParam());
    const ImportPatch fault(GetParam().c_str(), kFakes.at(GetParam()));
    RunWorkload();
    EXPECT_GT(calls, 0) << "the workload must be extended to reach it";
    for (const std::string& call : RefusedWithout(GetParam()))
        ASSERT_FALSE(succeeded.at(call)) << call << " says that it succeeded";
    // The checking heap is slow, and keeps freed blocks for a while.
    if (std::getenv("KITBAG_HEAP_CHECK")) return;
    RunWorkload();  // what the system and the library keep once is there afterwards
    ExpectNothingLost();
}

INSTANTIATE_TEST_SUITE_P(Imports, FaultSweep, testing::ValuesIn(ImportsThatCanFail()),
                         [](const auto& import) { return import.param; });

}  // namespace
