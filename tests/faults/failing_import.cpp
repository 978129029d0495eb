#include <gtest/gtest.h>
#include <tests/faults/failing_import.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <set>

namespace kitbag::test {

namespace {

constexpr struct {
    const char* function;
    unsigned bytes;
} kArgumentSizes[] = {
#include "argument_sizes.inc"
};

/// The bytes of arguments that a system function takes off the stack; none for a function that does
/// not belong to the system.
std::optional<unsigned> ArgumentBytes(const std::string& name) {
    const auto* found = std::ranges::find_if(
        kArgumentSizes, [&](const auto& size) { return name == size.function; });
    if (found == std::end(kArgumentSizes)) return std::nullopt;
    return found->bytes;
}

/// System functions that are not made to fail.
const std::set<std::string> kExempt = {
    // They have no failure: clocks, locks, probes, conversions of what is at hand.
    "DeleteCriticalSection", "EnterCriticalSection", "GetCurrentProcess", "GetCurrentProcessId",
    "GetCurrentThread", "GetCurrentThreadId", "GetLastError", "GetTickCount",
    "InitializeCriticalSection", "InterlockedDecrement", "InterlockedIncrement", "IsBadReadPtr",
    "IsBadStringPtrA", "IsBadStringPtrW", "IsBadWritePtr", "IsDBCSLeadByteEx",
    "LeaveCriticalSection", "SetErrorMode", "SetLastError", "Sleep", "SysStringLen", "TlsGetValue",
    "VariantInit", "lstrcmpA", "lstrcmpW", "lstrcmpiA", "lstrcmpiW", "lstrlenA", "lstrlenW",
    // They release; one that does not has leaked, whatever the library does.
    "CloseHandle", "CoTaskMemFree", "CoUninitialize", "FindClose", "FreeLibrary", "GlobalFree",
    "GlobalUnlock", "LocalFree", "RegCloseKey", "SysFreeString",
    // They are called while the library is loaded or unloaded, most of them by the compiler's
    // start-up code.
    "DisableThreadLibraryCalls", "GetModuleHandleW", "HeapDestroy", "VirtualProtect"};

/// Functions that say "failed" with all bits set.
const std::set<std::string> kFailWithAllBits = {
    "CreateFileA",    "CreateFileW",        "FindFirstFileA",
    "FindFirstFileW", "GetFileAttributesA", "GetFileAttributesW",
    "GetFileSize",    "SetFilePointer",     "WaitForSingleObject"};

/// Functions that say "failed" with an HRESULT.
bool AnswersHresult(const std::string& name) {
    static const std::set<std::string> others = {
        "CLSIDFromString",  "CreateErrorInfo", "DispGetIDsOfNames", "GetErrorInfo",
        "IIDFromString",    "LoadRegTypeLib",  "LoadTypeLib",       "LoadTypeLibEx",
        "RegisterTypeLib",  "SHGetMalloc",     "SetErrorInfo",      "StringFromCLSID",
        "UnRegisterTypeLib"};
    return name.starts_with("Co") || others.contains(name);
}

std::uint32_t FailureOf(const std::string& name) {
    if (kFailWithAllBits.contains(name) || name == "_vsnprintf") return 0xffffffff;
    if (AnswersHresult(name)) return static_cast<std::uint32_t>(E_FAIL);
    if (name.starts_with("Reg")) return ERROR_ACCESS_DENIED;
    return 0;
}

int* countOfThrows = nullptr;

[[noreturn]] void* NoMemory(std::size_t) {
    ++*countOfThrows;
    throw std::bad_alloc();
}

/// Counts the call, answers and takes the arguments off the stack as the real function would.
class Stub {
 public:
    Stub(std::uint32_t answer, unsigned argumentBytes, int* calls)
        : code_(static_cast<std::uint8_t*>(
              ::VirtualAlloc(nullptr, 64, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE))) {
        std::uint8_t* end = code_;
        const auto emit = [&](std::initializer_list<std::uint8_t> opcode, const auto& operand) {
            end = std::copy(opcode.begin(), opcode.end(), end);
            std::memcpy(end, &operand, sizeof operand);
            end += sizeof operand;
        };
        emit({0xff, 0x05}, calls);                                // inc dword [calls]
        emit({0xb8}, answer);                                     // mov eax, answer
        emit({0xc2}, static_cast<std::uint16_t>(argumentBytes));  // ret argumentBytes
    }
    void* Code() const { return code_; }

 private:
    std::uint8_t* code_;  // never freed: a thread of the library may still be in it
};

bool IsOperatorNew(const std::string& name) { return name == "_Znwj" || name == "_Znaj"; }

}  // namespace

std::vector<std::string> ImportsThatCanFail() {
    static const std::set<std::string> ofTheRuntime = {"_Znaj", "_Znwj", "_strdup", "_vsnprintf",
                                                       "fopen"};
    std::set<std::string> names;
    for (const std::string& name : ImportedNames())
        if (ofTheRuntime.contains(name) || (ArgumentBytes(name) && !kExempt.contains(name)))
            names.insert(name);
    return {names.begin(), names.end()};
}

FailingImport::FailingImport(const std::string& name) {
    if (IsOperatorNew(name)) {
        countOfThrows = &calls_;
        patch_.emplace(name.c_str(), NoMemory);
        return;
    }
    const Stub stub(FailureOf(name), ArgumentBytes(name).value_or(0), &calls_);
    patch_.emplace(name.c_str(), reinterpret_cast<void (*)()>(stub.Code()));
}

}  // namespace kitbag::test
