#include "reg_file_writer.h"

#include <algorithm>

namespace kitbag::tool {

namespace {

/// The registry editor's own.
constexpr std::size_t kLongestLine = 76;

std::wstring Escaped(std::wstring_view text) {
    std::wstring escaped = L"\"";
    for (const wchar_t c : text) {
        if (c == L'\\' || c == L'"') escaped += L'\\';
        if (c == L'\n')
            escaped += L"\\n";
        else if (c == L'\r')
            escaped += L"\\r";
        else
            escaped += c;
    }
    return escaped + L'"';
}

/// Whether the text in quotes means exactly these bytes: with one terminator, at its end. Line
/// breaks in quotes are not read alike by all systems.
bool IsPlainText(const StoredValue& value) {
    return value.type == REG_SZ && value == TextValue(TextOf(value)) &&
           TextOf(value).find_first_of(std::wstring_view(L"\r\n\0", 3)) == std::wstring::npos;
}

std::wstring Bytes(const std::wstring& lineBefore, const std::vector<BYTE>& bytes) {
    std::wstring text;
    std::size_t column = lineBefore.size();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (column > kLongestLine) {
            text += L"\\\n  ";
            column = 2;
        }
        text += Hexadecimal(bytes[i], 2);
        if (i + 1 < bytes.size()) text += L',';
        column += 3;
    }
    return text;
}

std::wstring ValueLine(const std::wstring& name, const StoredValue& value) {
    std::wstring line = (name.empty() ? L"@" : Escaped(name)) + L'=';
    if (IsPlainText(value)) return line + Escaped(TextOf(value));
    if (const auto number = NumberOf(value)) return line + L"dword:" + Hexadecimal(*number, 8);
    line += value.type == REG_BINARY ? L"hex:" : L"hex(" + Hexadecimal(value.type) + L"):";
    return line + Bytes(line, value.bytes);
}

}  // namespace

std::wstring RegFileText(const Sections& sections) {
    std::wstring text = L"Windows Registry Editor Version 5.00\n";
    for (const auto& [path, section] : sections) {
        text += L"\n[" + KeyName(path) + L"]\n";
        for (const auto& [name, value] : section.values) text += ValueLine(name, value) + L'\n';
    }
    return text + L'\n';
}

}  // namespace kitbag::tool
