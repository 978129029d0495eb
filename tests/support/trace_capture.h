// The trace lines that the library writes while a test looks.
#pragma once

#include <gmock/gmock.h>
#include <windows.h>

namespace kitbag::test {

/// True in the diagnostic build; the shipping library writes no trace at all.
inline constexpr bool kDiagnostic = KITBAG_IS_DIAGNOSTIC;

/// Collects what this process writes to the debugger output, from construction on. One at a time.
class TraceCapture {
 public:
    using Texts = std::vector<std::string>;

    TraceCapture() { lines_.clear(); }
    ~TraceCapture() { ::RemoveVectoredExceptionHandler(handler_); }

    /// Expects exactly these lines since the last call; none in the shipping build.
    void Expect(const Texts& lines) {
        EXPECT_EQ(kDiagnostic ? lines : Texts(), std::exchange(lines_, {}));
    }

 private:
    static LONG WINAPI Collect(EXCEPTION_POINTERS* pointers) {
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        if (record.ExceptionCode != DBG_PRINTEXCEPTION_C) return EXCEPTION_CONTINUE_SEARCH;
        lines_.emplace_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    static inline Texts lines_;
    void* const handler_ = ::AddVectoredExceptionHandler(1, Collect);
};

}  // namespace kitbag::test
