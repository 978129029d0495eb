#include "stored_value.h"

#include <algorithm>
#include <cstring>

#include "text.h"

namespace kitbag::tool {

namespace {

constexpr const wchar_t* kTypeNames[] = {
    L"REG_NONE",
    L"string",
    L"REG_EXPAND_SZ",
    L"data",
    L"dword",
    L"REG_DWORD_BIG_ENDIAN",
    L"REG_LINK",
    L"REG_MULTI_SZ",
    L"REG_RESOURCE_LIST",
    L"REG_FULL_RESOURCE_DESCRIPTOR",
    L"REG_RESOURCE_REQUIREMENTS_LIST",
    L"REG_QWORD",
};

std::wstring NumberText(DWORD number) {
    const std::wstring hexadecimal = L"0x" + Hexadecimal(number);
    const int asSigned = static_cast<int>(number);
    return std::to_wstring(number) +
           (asSigned < 0 ? L" (" + std::to_wstring(asSigned) + L", " + hexadecimal + L')'
                         : L" (" + hexadecimal + L')');
}

/// The texts of a REG_MULTI_SZ, each in quotes.
std::wstring TextsOf(const StoredValue& value) {
    std::wstring texts;
    std::wstring_view rest;
    const std::wstring all = TextOf(value);
    for (rest = all; !rest.empty();) {
        const std::size_t end = std::min(rest.find(L'\0'), rest.size());
        texts += (texts.empty() ? L"" : L", ") + Quoted(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return texts.empty() ? L"no texts" : texts;
}

std::wstring BytesText(const std::vector<BYTE>& bytes, std::size_t most) {
    std::wstring text;
    for (std::size_t i = 0; i < std::min(bytes.size(), most); ++i)
        text += (i > 0 ? L" " : L"") + Hexadecimal(bytes[i], 2);
    return text.empty() ? L"no bytes" : text;
}

}  // namespace

std::vector<BYTE> BytesOf(std::wstring_view text) {
    std::vector<BYTE> bytes(text.size() * sizeof(wchar_t));
    if (!text.empty()) std::memcpy(bytes.data(), text.data(), bytes.size());
    return bytes;
}

StoredValue NumberValue(DWORD number) {
    StoredValue value = {REG_DWORD, std::vector<BYTE>(sizeof number)};
    std::memcpy(value.bytes.data(), &number, sizeof number);
    return value;
}

StoredValue TextValue(std::wstring_view text) {
    return {REG_SZ, BytesOf(std::wstring(text) + L'\0')};
}

std::optional<DWORD> NumberOf(const StoredValue& value) {
    DWORD number = 0;
    if (value.type != REG_DWORD || value.bytes.size() != sizeof number) return std::nullopt;
    std::memcpy(&number, value.bytes.data(), sizeof number);
    return number;
}

std::wstring TextOf(const StoredValue& value) {
    std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
    if (!text.empty()) std::memcpy(text.data(), value.bytes.data(), text.size() * sizeof(wchar_t));
    if (text.ends_with(L'\0')) text.pop_back();
    return text;
}

bool IsEmptyText(const StoredValue& value) {
    return value.type == REG_SZ && value.bytes.size() <= sizeof(wchar_t) && TextOf(value).empty();
}

bool AreSameToPrograms(const StoredValue& a, const StoredValue& b) {
    return a == b || (IsEmptyText(a) && IsEmptyText(b));
}

std::wstring TypeName(DWORD type) {
    return type < std::size(kTypeNames) ? kTypeNames[type] : L"type 0x" + Hexadecimal(type);
}

std::wstring ContentText(const StoredValue& value, std::size_t most) {
    if (const auto number = NumberOf(value)) return NumberText(*number);
    const std::wstring size = L" (" + Counted(value.bytes.size(), L"byte") + L')';
    const bool isText = value.type == REG_SZ || value.type == REG_EXPAND_SZ;
    if (isText && TextOf(value).size() <= most) return Quoted(TextOf(value));
    if (isText) return Quoted(TextOf(value).substr(0, most)) + L"..." + size;
    if (value.type == REG_MULTI_SZ && value.bytes.size() <= most) return TextsOf(value);
    return BytesText(value.bytes, most) + (value.bytes.size() > most ? L" ..." + size : L"");
}

std::wstring ValueText(const StoredValue& value, std::size_t most) {
    return TypeName(value.type) + L' ' + ContentText(value, most);
}

std::wstring Quoted(std::wstring_view text) {
    std::wstring quoted = L"\"";
    for (const wchar_t c : text) {
        const bool isControl = c < L' ' || c == 0x7f;
        quoted += isControl ? L'<' + Hexadecimal(c, 2) + L'>' : std::wstring(1, c);
    }
    return quoted + L'"';
}

}  // namespace kitbag::tool
