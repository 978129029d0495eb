// A value as the registry stores it.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kitbag::tool {

struct StoredValue {
    DWORD type = REG_NONE;
    std::vector<BYTE> bytes;

    friend bool operator==(const StoredValue&, const StoredValue&) = default;
};

/// The characters as the registry stores them.
std::vector<BYTE> BytesOf(std::wstring_view text);

StoredValue NumberValue(DWORD number);
/// With its terminator.
StoredValue TextValue(std::wstring_view text);

/// The number of a REG_DWORD of the right size.
std::optional<DWORD> NumberOf(const StoredValue& value);

/// The 16-bit characters of a text, the terminator, if there is one, left out.
std::wstring TextOf(const StoredValue& value);

bool IsEmptyText(const StoredValue& value);

/// Whether no program can tell them apart: an empty text may be stored with or without its
/// terminator (regedit writes one, the library none).
bool AreSameToPrograms(const StoredValue& a, const StoredValue& b);

/// "dword", "string" and "data" for what the library writes, otherwise the registry's own name.
std::wstring TypeName(DWORD type);

/// The content for a person to read, texts in quotes, blocks as hexadecimal bytes. What is longer
/// than the most bytes or characters is cut, and says so.
std::wstring ContentText(const StoredValue& value, std::size_t most = std::wstring::npos);

/// Type and content.
std::wstring ValueText(const StoredValue& value, std::size_t most = std::wstring::npos);

/// In quotes; control characters as their codes: "two<0a>lines".
std::wstring Quoted(std::wstring_view text);

}  // namespace kitbag::tool
