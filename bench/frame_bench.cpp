#include <bench/benches.h>
#include <kitbag/frame/win_string.h>

#include <cstdio>

namespace kitbag::bench {

namespace {

// A result of 40 characters.
constexpr char kFormat[] = "%s|%08x|%d";
constexpr char kText[] = "Recording folder: D:\\Series";

void LibraryFormat(int count) {
    TWinString<char> text;
    for (int i = 0; i < count; ++i) {
        text.Format(kFormat, kText, 0xabcd, 123);
        Keep(text);
    }
}

using Formatter = int (*)(char*, std::size_t, const char*, std::va_list);

void FormatInto(Formatter formatter, char* buffer, std::size_t size, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    formatter(buffer, size, format, arguments);
    va_end(arguments);
}

template <Formatter formatter>
void OnTheStack(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        char buffer[512];
        FormatInto(formatter, buffer, sizeof buffer, kFormat, kText, 0xabcd, 123);
        text = buffer;
        Keep(text);
    }
}

int SystemFormatter(char* buffer, std::size_t size, const char* format, std::va_list arguments) {
    return ::_vsnprintf(buffer, size, format, arguments);
}
int CompilerFormatter(char* buffer, std::size_t size, const char* format, std::va_list arguments) {
    return std::vsnprintf(buffer, size, format, arguments);
}

}  // namespace

std::vector<Result> MeasureFrame() {
    // The library formats with the system's runtime, whose texts callers know (exponents of three
    // digits, for one); the compiler brings a faster formatter of its own.
    return {Measure(Comparison{"TWinString::Format, 40 characters", LibraryFormat,
                               "the runtime's vsnprintf on the stack, assigned",
                               OnTheStack<SystemFormatter>, 1.1}),
            Measure(Comparison{"TWinString::Format, 40 characters", LibraryFormat,
                               "the compiler's vsnprintf on the stack",
                               OnTheStack<CompilerFormatter>})};
}

}  // namespace kitbag::bench
