// The trace lines that the library writes while a test looks.
#pragma once

#include <gmock/gmock.h>
#include <windows.h>

#include <string>
#include <utility>
#include <vector>

namespace kitbag::test {

/// True in the diagnostic build; the shipping library writes no trace at all.
inline constexpr bool kDiagnostic = KITBAG_IS_DIAGNOSTIC;

/// Collects what this process writes to the debugger output, from construction on. One at a time.
class TraceCapture {
 public:
    TraceCapture() : handler_(::AddVectoredExceptionHandler(1, Collect)) { lines_.clear(); }
    ~TraceCapture() { ::RemoveVectoredExceptionHandler(handler_); }
    TraceCapture(TraceCapture&&) = delete;

    const std::vector<std::string>& Lines() const { return lines_; }

    /// Expects exactly these lines since the last call; none in the shipping build.
    void Expect(const std::vector<std::string>& lines) {
        EXPECT_EQ(kDiagnostic ? lines : decltype(lines_){}, std::exchange(lines_, {}));
    }

 private:
    static LONG WINAPI Collect(EXCEPTION_POINTERS* pointers) {
        constexpr DWORD kDebuggerText = 0x40010006;
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        if (record.ExceptionCode != kDebuggerText) return EXCEPTION_CONTINUE_SEARCH;
        lines_.emplace_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    static inline std::vector<std::string> lines_;
    void* handler_;
};

}  // namespace kitbag::test
