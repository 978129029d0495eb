// A registry that anybody may have written to, and what the system itself answers about it.
#pragma once

#include <tests/support/private_registry.h>

#include <optional>
#include <random>
#include <vector>

namespace kitbag::test {

/// The bytes of a stored value in its 8-bit form; of one type only, if any is given.
inline std::optional<std::string> BytesIn(const std::string& section, const std::string& name,
                                          DWORD wanted = REG_NONE) {
    BYTE data[200];
    DWORD type = REG_NONE, size = sizeof data;
    const LONG error =
        ::RegQueryValueExA(RawKey(section).Get(), name.c_str(), nullptr, &type, data, &size);
    if (error || (wanted != REG_NONE && wanted != type)) return {};
    return std::string(data, data + size);
}

template <class Number = DWORD>
std::optional<Number> NumberIn(const std::string& section, const std::string& name) {
    const auto bytes = BytesIn(section, name, REG_DWORD);
    if (!bytes || bytes->size() != sizeof(DWORD)) return {};
    return static_cast<Number>(*reinterpret_cast<const DWORD*>(bytes->data()));
}

/// The last character counts as the terminator, whatever it is.
inline std::optional<std::string> TextIn(const std::string& section, const std::string& name) {
    auto text = BytesIn(section, name, REG_SZ);
    if (text && !text->empty()) text->pop_back();
    return text;
}

/// At random, the same in every run.
inline DWORD Below(std::size_t bound) {
    static std::mt19937 random(19);
    return random() % bound;
}

/// Mostly one of the texts or a number, whole and of its own type; else a part, or nothing.
inline void Store(const RawKey& key, const wchar_t* name, const std::vector<std::wstring>& texts) {
    const std::wstring& text = texts[Below(texts.size())];
    std::string bytes(reinterpret_cast<const char*>(text.c_str()), 2 * text.size() + 2);
    const DWORD type = Below(2) ? REG_SZ : Below(4) ? REG_DWORD : Below(13);
    if (type == REG_DWORD) bytes.assign(sizeof(DWORD), static_cast<char>(Below(3) - 1));
    if (!Below(5)) bytes.resize(Below(bytes.size()));
    ::RegDeleteValueW(key.Get(), name);
    if (Below(5)) key.Set(name, type, bytes.data(), static_cast<DWORD>(bytes.size()));
}

}  // namespace kitbag::test
