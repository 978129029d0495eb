#include "getter_answers.h"

#include <kitbag/kitbag.h>

#include "text.h"

namespace kitbag::tool {

namespace {

std::wstring NumberMark(const std::wstring& section, const std::wstring& name,
                        const StoredValue& value) {
    DWORD number = 0;
    if (KB_GetDWORDW(section.c_str(), name.c_str(), &number)) return {};
    return L"refused as a number, " + Counted(value.bytes.size(), L"byte") +
           L" instead of 4: programs keep their default";
}

std::wstring TextMark(const std::wstring& section, const std::wstring& name,
                      const StoredValue& value) {
    std::wstring text;
    TWinString<char> narrow;
    if (!KB_GetTStringW(section.c_str(), name.c_str(), text))
        return L"refused as a text: programs keep their default";
    if (text != TextOf(value)) return L"not terminated: programs read " + Quoted(text);
    if (!KB_GetTStringA(ToAnsi(section).c_str(), ToAnsi(name).c_str(), narrow))
        return L"not found by programs that use 8-bit text";
    if (FromAnsi(narrow) != text)
        return L"programs that use 8-bit text read " + Quoted(FromAnsi(narrow));
    return {};
}

}  // namespace

std::wstring GetterMark(const std::wstring& section, const std::wstring& name,
                        const StoredValue& value) {
    switch (value.type) {
        case REG_DWORD:
            return NumberMark(section, name, value);
        case REG_SZ:
            return TextMark(section, name, value);
        case REG_BINARY:
            return {};
        default:
            return L"refused by all getters but KB_GetData, which answers " +
                   Counted(value.bytes.size(), L"byte") + L": programs keep their default";
    }
}

}  // namespace kitbag::tool
