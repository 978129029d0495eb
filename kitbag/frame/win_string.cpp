#include <kitbag/frame/win_string.h>

#include <cstddef>
#include <cstdio>
#include <memory>

namespace kitbag {

namespace {

constexpr std::size_t kFirstBuffer = 512;
/// Sizes double up to this: the last one tried is 32768, terminator included.
constexpr std::size_t kLargestBuffer = 51200;
// Support staff search logs for this wording; it stays as it is.
constexpr char kTooBig[] = "ERROR: Output of Format was to big to handle\n";

/// Formats into a buffer of the given size, always terminated; negative where it does not fit.
int FormatInto(char* buffer, std::size_t size, const char* format, std::va_list arguments) {
    std::va_list pass;
    va_copy(pass, arguments);
    const int result = ::_vsnprintf(buffer, size - 1, format, pass);
    va_end(pass);
    buffer[size - 1] = '\0';
    return result;
}

}  // namespace

int FormatText(std::string& text, const char* format, std::va_list arguments) {
    char first[kFirstBuffer];
    int result = FormatInto(first, sizeof first, format, arguments);
    if (result >= 0) {
        text = first;
        return result;
    }
    for (std::size_t size = 2 * kFirstBuffer; size <= kLargestBuffer; size *= 2) {
        const auto buffer = std::make_unique_for_overwrite<char[]>(size);
        result = FormatInto(buffer.get(), size, format, arguments);
        if (result >= 0) {
            text = buffer.get();
            return result;
        }
    }
    text = kTooBig;
    return result;
}

}  // namespace kitbag
