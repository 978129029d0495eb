#include <kitbag/frame/debug_trace.h>

#if defined(KITBAG_DIAGNOSTIC)

#include <kitbag/frame/win_string.h>
#include <windows.h>

#include <cstdarg>
#include <string>

namespace kitbag {

void WriteTrace(const char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    try {
        std::string message;
        FormatText(message, format, arguments);
        ::OutputDebugStringA(message.c_str());
    } catch (...) {
        ::OutputDebugStringA("DebugTrace: out of memory\n");
    }
    va_end(arguments);
}

}  // namespace kitbag

#endif
