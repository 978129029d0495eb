// The registration script: what registering a class writes into the registry.
//
//     HKCR
//     {
//         NoRemove CLSID
//         {
//             ForceRemove %CLSID% = s 'Vidmoor page factory'
//             {
//                 InprocServer32 = s '%MODULE%'
//                 {
//                     val ThreadingModel = s 'Apartment'
//                 }
//             }
//         }
//     }
//
// A script lists root keys (HKCR, HKCU, HKLM, HKU), each with entries between braces. An entry is
//
//   NAME [= DATA] [{ ENTRIES }]  a key, its default value and what lies in it
//   ForceRemove NAME ...         the same for a key that is wholly ours, whatever is in it
//   NoRemove NAME ...            the same for a key that others use, too
//   Delete NAME                  a key that is deleted with everything below it
//   val NAME = DATA              a value of the key around it
//
// DATA is "s TEXT" for a string or "d NUMBER" for a number, decimal or 0x... A name or text that
// holds a blank, a brace or an equals sign stands between apostrophes on one line, with apostrophes
// in it doubled; a quoted name is never a keyword. %NAME% is replaced wherever it stands, and what
// replaced it is not looked at again; %% is a percent sign. // begins a comment, up to the end of
// the line.
//
// Right below a root, the keys in which all programs register (CLSID, TypeLib and their like) count
// as NoRemove whatever the script says, and Delete is refused for them.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kitbag {

using RegistrationData = std::variant<std::wstring, DWORD>;

struct RegistrationEntry {
    enum class Kind { Key, OwnKey, SharedKey, DeletedKey, Value };

    Kind kind = Kind::Key;
    std::wstring name;
    std::optional<RegistrationData> data;
    std::vector<RegistrationEntry> entries;
};

struct RegistrationRoot {
    HKEY key = nullptr;
    std::vector<RegistrationEntry> entries;
};

/// The values of %NAME%.
using Replacements = std::map<std::wstring, std::wstring, std::less<>>;

/// What is thrown for a script that breaks the rules.
struct RegistrationScriptError {
    long line;
    const char* expected;
};

/// Reads a whole script, so that a broken one is found before anything is written.
std::vector<RegistrationRoot> ParseRegistrationScript(std::wstring_view text,
                                                      const Replacements& replacements);

}  // namespace kitbag
