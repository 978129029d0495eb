#include <tests/faults/failing_import.h>

#include <atomic>
#include <map>
#include <new>
#include <set>
#include <utility>

namespace kitbag::test {

namespace {

using Function = void();

std::atomic<int> calls;
DWORD answer;

template <class... Words>
DWORD WINAPI Fail(Words...) {
    ++calls;
    return answer;
}

[[noreturn]] void* NoMemory(std::size_t) {
    ++calls;
    throw std::bad_alloc();
}

/// Waits all the same: what the workload has started must end before it does.
DWORD WINAPI WaitAndFail(HANDLE object, DWORD timeout) {
    ::WaitForSingleObject(object, timeout);
    return Fail();
}

template <class Any>
Function* Fake(Any* function) {
    return reinterpret_cast<Function*>(function);
}

/// One that takes so many words of arguments off the stack.
template <std::size_t... word>
Function* FakeOf(std::index_sequence<word...>) {
    return Fake(Fail<decltype(word)...>);
}

/// What stands in for each import of the system, and for those of the compiler's runtime that run
/// out of memory or into a file that is not there.
const std::map<std::string, Function*> kFakes = {
    {"_Znaj", Fake(NoMemory)},
    {"_Znwj", Fake(NoMemory)},
    {"_strdup", Fake(Fail<>)},
    {"_ZnwjRKSt9nothrow_t", Fake(Fail<>)},
    {"fopen", Fake(Fail<>)},
    {"_vsnprintf", Fake(Fail<>)},
    {"WaitForSingleObject", Fake(WaitAndFail)},
#include "import_fakes.inc"
};

/// System functions that are not made to fail.
const std::set<std::string> kExempt = {
    // They have no failure: clocks, locks, conversions of what is at hand.
    "DeleteCriticalSection", "EnterCriticalSection", "GetCurrentThreadId", "GetLastError",
    "GetTickCount", "InitializeCriticalSection", "IsDBCSLeadByteEx", "LeaveCriticalSection",
    "SetErrorMode", "Sleep", "TlsGetValue", "lstrlenA", "lstrlenW",
    // They release; one that does not has leaked, whatever the library does.
    "CloseHandle", "CoUninitialize", "FindClose", "FreeLibrary", "GlobalFree", "GlobalUnlock",
    "LocalFree", "RegCloseKey", "SysFreeString",
    // They are called while the library is loaded or unloaded, most of them by the compiler's
    // start-up code.
    "DisableThreadLibraryCalls", "GetModuleHandleW", "HeapDestroy", "VirtualProtect",
    // Only Windows 9x's network leads to it.
    "IsBadStringPtrA"};

/// How functions say that they failed, by the beginnings of their names. The others answer 0.
const std::pair<DWORD, std::vector<const char*>> kFailures[] = {
    {0xffffffff,
     {"CreateFile", "FindFirstFile", "GetFileAttributes", "GetFileSize", "SetFilePointer",
      "WaitFor", "_vsnprintf"}},
    {0x80004005,
     {"CLSIDFrom", "Co", "CreateErrorInfo", "LoadTypeLib", "QueryPathOfRegTypeLib",
      "RegisterTypeLib", "SHGetMalloc", "SetErrorInfo"}},
    {ERROR_ACCESS_DENIED, {"Reg"}},
    {TRUE, {"IsBad"}}};

DWORD FailureOf(const std::string& name) {
    for (const auto& [failure, beginnings] : kFailures)
        for (const char* beginning : beginnings)
            if (name.starts_with(beginning)) return failure;
    return 0;
}

}  // namespace

std::vector<std::string> ImportsThatCanFail() {
    std::vector<std::string> names = ImportedNames();
    std::erase_if(names, [](const std::string& name) {
        return !kFakes.contains(name) || kExempt.contains(name);
    });
    return names;
}

FailingImport::FailingImport(const std::string& name) : patch_(name.c_str(), kFakes.at(name)) {
    calls = 0;
    answer = FailureOf(name);
}

int FailingImport::Calls() const { return calls; }

}  // namespace kitbag::test
