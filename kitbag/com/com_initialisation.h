// COM for the time of a call, on whatever thread it comes from.
#pragma once

#include <kitbag/frame/debug_trace.h>
#include <objbase.h>
#include <windows.h>

namespace kitbag {

/// Callers should have initialised COM on their thread; for them the count of initialisations is
/// the same again afterwards. On any other thread the trace says so, and COM stays initialised for
/// good: what the call leaves behind has to outlive it.
class ComInitialisation {
 public:
    explicit ComInitialisation([[maybe_unused]] const char* caller)
        : balanced_(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) == S_FALSE) {
        if (!balanced_)
            DebugTrace("%s - Thread 0x%08X should call CoInitialise\n", caller,
                       static_cast<unsigned>(::GetCurrentThreadId()));
    }
    ~ComInitialisation() {
        if (balanced_) ::CoUninitialize();
    }
    ComInitialisation(const ComInitialisation&) = delete;
    ComInitialisation& operator=(const ComInitialisation&) = delete;

 private:
    bool balanced_;
};

}  // namespace kitbag
