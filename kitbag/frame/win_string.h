// TWinString: the narrow string of every exported class interface.
//
//     TWinString<char> text;
//     text.Format("%s=%d", "Volume", 7);  // "Volume=7"
#pragma once

#include <kitbag/frame/export.h>

#include <cstdarg>
#include <string>
#include <utility>

namespace kitbag {

/// The work behind TWinString::Format.
KITBAG_API int FormatText(std::string& text, const char* format, std::va_list arguments);

}  // namespace kitbag

/// The standard string with one operation more. It adds no state, so it is interchangeable with the
/// standard string at the interface.
template <class Ch>
class TWinString : public std::basic_string<Ch> {
    using Base = std::basic_string<Ch>;

 public:
    using Base::Base;
    TWinString() = default;
    TWinString(const Base& text) : Base(text) {}
    TWinString(Base&& text) noexcept : Base(std::move(text)) {}
    using Base::operator=;

    /// Replaces the text by the printf-style formatting of the arguments; a null format stands for
    /// the object's own text. The arguments may point into the object.
    ///
    /// Returns the number of characters. A text of more than 32,767 characters becomes
    /// "ERROR: Output of Format was to big to handle\n", and the result is negative.
    int Format(const Ch* format, ...) {
        std::va_list arguments;
        va_start(arguments, format);
        const int result = kitbag::FormatText(*this, format ? format : this->c_str(), arguments);
        va_end(arguments);
        return result;
    }
};
