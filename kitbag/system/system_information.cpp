#include <intrin.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/owned.h>
#include <kitbag/frame/registry_calls.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/system/system_information.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace kitbag {

namespace {

/// An answer that stays the same while the process runs.
enum class Answer { kUnknown, kNo, kYes };
using CachedAnswer = std::atomic<Answer>;

Answer AnswerOf(bool yes) { return yes ? Answer::kYes : Answer::kNo; }

/// An answer of kUnknown is not kept: the next call asks again.
bool FromCache(CachedAnswer& cache, Answer (*ask)()) {
    Answer answer = cache.load(std::memory_order_relaxed);
    if (answer == Answer::kUnknown) {
        answer = ask();
        cache.store(answer, std::memory_order_relaxed);
    }
    return answer == Answer::kYes;
}

Answer AskForNtFamily() {
    OSVERSIONINFOA version{};
    static_assert(sizeof version == 148);
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExA(&version)) return Answer::kUnknown;
    return AnswerOf(version.dwPlatformId == VER_PLATFORM_WIN32_NT);
}

bool IsNt() {
    static constinit CachedAnswer cache = Answer::kUnknown;
    return FromCache(cache, AskForNtFamily);
}

Answer AskForVisibleStation() {
    HWINSTA station = ::GetProcessWindowStation();
    USEROBJECTFLAGS flags{};
    static_assert(sizeof flags == 12);
    return AnswerOf(
        station && ::GetUserObjectInformationA(station, UOI_FLAGS, &flags, sizeof flags, nullptr) &&
        flags.dwFlags == WSF_VISIBLE);
}

bool IsInteractiveSession() {
    // Windows 9x has no window stations.
    if (!IsNt()) return true;
    static constinit CachedAnswer cache = Answer::kUnknown;
    return FromCache(cache, AskForVisibleStation);
}

/// Busy until more than this many milliseconds have passed since the start; returns the tick that
/// ended the wait. The difference is signed, so that the tick count may wrap.
DWORD SpinPast(DWORD start, LONG milliseconds) {
    for (;;) {
        const DWORD now = ::GetTickCount();
        if (static_cast<LONG>(now - start) > milliseconds) return now;
    }
}

struct CpuRegisters {
    int abcd[4];
};

CpuRegisters QueryCpu(unsigned leaf) {
    CpuRegisters registers;
    __cpuid(registers.abcd, static_cast<int>(leaf));
    return registers;
}

/// The low half of the time stamp, once all instructions before it are done.
DWORD TimeStamp() {
    QueryCpu(0);
    return static_cast<DWORD>(__rdtsc());
}

DWORD MeasureCpuSpeed() {
    // Starts at the edge of a tick.
    const DWORD start = SpinPast(::GetTickCount(), 1);
    const DWORD first = TimeStamp();
    SpinPast(start, 1000);
    return (TimeStamp() - first) / 1'000'000;
}

int CpuSpeedOnNt() {
    constexpr char path[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
    if (const RegistryKey processor = OpenedKey(HKEY_LOCAL_MACHINE, path, KEY_READ)) {
        int stored = 0;
        DWORD bytes = sizeof stored;
        // The outcome is taken the other way round: callers rely on a known speed being measured
        // rather than looked up.
        if (QueryValue(processor.Get(), "~MHz", nullptr, &stored, &bytes) != ERROR_SUCCESS)
            return stored;
    }
    return static_cast<int>(MeasureCpuSpeed());
}

int CpuSpeed() { return IsNt() ? CpuSpeedOnNt() : static_cast<int>(MeasureCpuSpeed()); }

std::string_view TrimmedBrand(std::string_view brand) {
    constexpr auto isPrintable = [](unsigned char character) {
        return std::isgraph(character) != 0;
    };
    if (std::ranges::none_of(brand, isPrintable)) return {};
    const auto first = brand.find_first_not_of(' ');
    return brand.substr(first, brand.find_last_not_of(' ') - first + 1);
}

/// A text that the runtime library's free releases, as callers do with those handed out.
struct FreePolicy {
    void operator()(char* text) const { std::free(text); }
};
using AllocatedText = std::unique_ptr<char, FreePolicy>;

AllocatedText Duplicate(const std::string& text) { return AllocatedText(::_strdup(text.c_str())); }

AllocatedText VendorString() {
    char brand[64] = {};
    char* part = brand;
    for (const unsigned leaf : {0x80000002u, 0x80000003u, 0x80000004u}) {
        const CpuRegisters registers = QueryCpu(leaf);
        std::memcpy(part, &registers, sizeof registers);
        part += sizeof registers;
    }
    return Duplicate(std::string(TrimmedBrand(brand)));
}

AllocatedText SystemDescription() {
    const AllocatedText brand = VendorString();
    if (!brand) return nullptr;
    TWinString<char> description;
    description.Format("CPUID '%s'\nCPU %dMhz", brand.get(), CpuSpeed());
    return Duplicate(description);
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_IsNT() { return Guarded(kitbag::IsNt); }
bool KB_IsInteractiveSession() { return Guarded(kitbag::IsInteractiveSession); }

int KB_GetCPUSpeed() { return Guarded(kitbag::CpuSpeed); }
int KB_GetCPUSpeedNT() { return Guarded(kitbag::CpuSpeedOnNt); }
DWORD KB_GetCPUSpeedCalculated() { return Guarded(kitbag::MeasureCpuSpeed); }

char* KB_GetVendorString() {
    return Guarded([] { return kitbag::VendorString().release(); });
}
char* KB_GetSystemDescription() {
    return Guarded([] { return kitbag::SystemDescription().release(); });
}
