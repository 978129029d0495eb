// DebugTrace: one-line diagnostics, "Function: message\n".
//
// A diagnostic build writes them to the debugger output (OutputDebugString), where a debugger or a
// viewer shows them without a file to be found and cleaned up. In the shipping build every call
// site is compiled out, arguments and texts included.
#pragma once

#if defined(KITBAG_DIAGNOSTIC)

namespace kitbag {
/// printf-style; never throws.
[[gnu::format(printf, 1, 2)]] void WriteTrace(const char* format, ...) noexcept;
}  // namespace kitbag

#define DebugTrace(...) ::kitbag::WriteTrace(__VA_ARGS__)

#else

namespace kitbag {
/// Never called: it only lets the compiler check the arguments.
[[gnu::format(printf, 1, 2)]] inline void WriteTrace(const char*, ...) noexcept {}
}  // namespace kitbag

#define DebugTrace(...) (false ? ::kitbag::WriteTrace(__VA_ARGS__) : static_cast<void>(0))

#endif
