// The trace lines that the library writes while a test looks.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace kitbag::test {

/// True in the diagnostic build; the shipping library writes no trace at all.
#if defined(KITBAG_DIAGNOSTIC)
inline constexpr bool kDiagnostic = true;
#else
inline constexpr bool kDiagnostic = false;
#endif

/// Collects what this process writes to the debugger output, from construction on. One at a time.
class TraceCapture {
 public:
    TraceCapture();
    ~TraceCapture();
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;

    const std::vector<std::string>& Lines() const;

    /// Expects exactly these lines since the last call; none in the shipping build.
    void Expect(const std::vector<std::string>& lines);

 private:
    void* handler_;
};

}  // namespace kitbag::test
