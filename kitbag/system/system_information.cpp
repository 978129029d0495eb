#include <kitbag/frame/guard.h>
#include <kitbag/system/system_information.h>
#include <windows.h>

#include <atomic>

namespace kitbag {

namespace {

/// An answer that stays the same while the process runs. First calls may race: each of them stores
/// the same answer.
enum class Answer { kUnknown, kNo, kYes };
using CachedAnswer = std::atomic<Answer>;

Answer AskForNtFamily() {
    OSVERSIONINFOA version{};
    static_assert(sizeof version == 148);
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExA(&version)) return Answer::kUnknown;
    return version.dwPlatformId == VER_PLATFORM_WIN32_NT ? Answer::kYes : Answer::kNo;
}

bool FromCache(CachedAnswer& cache, Answer (*ask)()) {
    Answer answer = cache.load(std::memory_order_relaxed);
    if (answer == Answer::kUnknown) {
        answer = ask();
        cache.store(answer, std::memory_order_relaxed);
    }
    return answer == Answer::kYes;
}

bool IsNt() {
    static constinit CachedAnswer cache = Answer::kUnknown;
    return FromCache(cache, AskForNtFamily);
}

}  // namespace

}  // namespace kitbag

bool KB_IsNT() { return kitbag::Guarded(kitbag::IsNt); }
