// The settings as they stand in the registry, looked at without touching anything.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "stored_value.h"
#include "text.h"

namespace kitbag::tool {

/// Below HKEY_LOCAL_MACHINE.
inline constexpr wchar_t kApplicationKey[] = L"Software\\Tarnwick\\Vidmoor";
inline constexpr wchar_t kSettingsRoot[] = L"Software\\Tarnwick\\Vidmoor\\Configuration";

struct KeyCloser {
    using pointer = HKEY;
    void operator()(HKEY key) const { ::RegCloseKey(key); }
};
using Key = std::unique_ptr<HKEY, KeyCloser>;

LSTATUS OpenKey(HKEY parent, const std::wstring& path, REGSAM access, Key& key);

using Values = std::map<std::wstring, StoredValue, NameLess>;

struct Section {
    Values values;
    /// Why the section cannot be read.
    LSTATUS status = ERROR_SUCCESS;
};

/// Every section stands right before those below it.
struct SectionLess {
    bool operator()(const std::wstring& a, const std::wstring& b) const;
};

/// By the path below the settings' root, "" for the root itself.
using Sections = std::map<std::wstring, Section, SectionLess>;

/// The section with all below it; nothing where it does not exist. Sections that cannot be read are
/// there with the reason.
Sections ReadSections(const std::wstring& section);

/// The same; throws where any of them cannot be read.
Sections ReadAllSections(const std::wstring& section);

/// The same; throws also where the section itself does not exist.
Sections ReadExistingSections(const std::wstring& section);

/// Nothing where there is none; throws where it cannot be read.
std::optional<StoredValue> FindValue(const std::wstring& section, const std::wstring& name);

/// The values of any key; nothing where it does not exist or cannot be read.
Values ReadValues(HKEY parent, const std::wstring& path);
/// A text of any key; nothing where it is missing or no text.
std::optional<std::wstring> ReadText(HKEY parent, const std::wstring& path,
                                     const std::wstring& name);

/// The path of the section's key below HKEY_LOCAL_MACHINE, and its full name for messages and
/// files.
std::wstring PathOf(const std::wstring& section);
std::wstring KeyName(const std::wstring& section);
/// For messages: the value's key and name.
std::wstring FullName(const std::wstring& section, const std::wstring& name);
/// For lists: "(default)" for the value without a name.
std::wstring DisplayName(const std::wstring& name);

/// The section that a key's full name means: the settings' root or what lies below it, on 64-bit
/// Windows also as 64-bit programs name it. Nothing for any other key.
std::optional<std::wstring> SectionOfKey(std::wstring_view key);

/// The section that a word of the command line means: without backslashes around it, also where it
/// is a key's full name. Throws for a path with an empty step.
std::wstring SectionArgument(const std::wstring& word);

std::wstring JoinedPath(const std::wstring& path, const std::wstring& name);
/// Whether a section is the other one or lies below it.
bool IsWithin(const std::wstring& section, const std::wstring& outer);

}  // namespace kitbag::tool
