// What a failing row prints: the call with its arguments, bytes as a debugger shows them.
//
//     SCOPED_TRACE(Called("KB_GetString", section, name, size));
//     EXPECT_EQ(Bytes(expected), Bytes(output));
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>

namespace kitbag::test {

/// Bytes that print in hexadecimal with their printable characters: "2 bytes: 41 00 |A.|".
struct Bytes {
    explicit Bytes(std::string_view bytes) : content(bytes) {}
    Bytes(const void* bytes, std::size_t size) : content(static_cast<const char*>(bytes), size) {}
    bool operator==(const Bytes&) const = default;

    friend void PrintTo(const Bytes& bytes, std::ostream* out) {
        *out << bytes.content.size() << " bytes:";
        std::string printable;
        for (const char c : bytes.content) {
            const auto byte = static_cast<unsigned char>(c);
            char hexadecimal[4];
            std::snprintf(hexadecimal, sizeof hexadecimal, " %02x", byte);
            *out << hexadecimal;
            printable += std::isprint(byte) ? static_cast<char>(byte) : '.';
        }
        *out << " |" << printable << '|';
    }

    std::string content;
};

namespace detail {

template <class Argument>
std::string Shown(const Argument& argument) {
    if constexpr (std::is_convertible_v<Argument, const void*>) {
        if (!static_cast<const void*>(argument)) return "null";
    }
    return testing::PrintToString(argument);
}

}  // namespace detail

/// The call as it would be written: KB_GetDWORDA("Audio", null, 512).
template <class... Arguments>
std::string Called(const std::string& function, const Arguments&... arguments) {
    std::string text = function + '(';
    const char* between = "";
    ((text += between + detail::Shown(arguments), between = ", "), ...);
    return text + ')';
}

}  // namespace kitbag::test
