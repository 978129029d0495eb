#include <tests/support/trace_capture.h>
#include <windows.h>

namespace kitbag::test {

namespace {

constexpr DWORD kDebuggerText = 0x40010006;

std::vector<std::string> captured;

LONG WINAPI Collect(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != kDebuggerText) return EXCEPTION_CONTINUE_SEARCH;
    captured.emplace_back(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
    return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

TraceCapture::TraceCapture() : handler_(::AddVectoredExceptionHandler(1, Collect)) {
    captured.clear();
}

TraceCapture::~TraceCapture() { ::RemoveVectoredExceptionHandler(handler_); }

const std::vector<std::string>& TraceCapture::Lines() const { return captured; }

void TraceCapture::Expect(const std::vector<std::string>& lines) {
    const std::vector<std::string> expected = kDiagnostic ? lines : std::vector<std::string>{};
    EXPECT_EQ(expected, captured);
    captured.clear();
}

}  // namespace kitbag::test
