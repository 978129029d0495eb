#include <kitbag/kitbag.h>

#include <limits>

#include "commands.h"
#include "tools/kitbag/console.h"
#include "tools/kitbag/sections.h"
#include "tools/kitbag/settings_change.h"

namespace kitbag::tool {

namespace {

[[noreturn]] void Refuse(const std::wstring& type, const std::wstring& word) {
    throw Failure{ExitCode::WrongUse, Quoted(word) + L" is no " + type};
}

/// Decimal, or hexadecimal behind 0x; all of the word, within the limits.
long long NumberOf(const std::wstring& type, const std::wstring& word, long long least,
                   long long most) {
    const std::size_t start = word.starts_with(L"-") ? 1 : 0;
    const bool isHexadecimal = word.compare(start, 2, L"0x") == 0;
    const wchar_t* const digits = isHexadecimal ? L"0123456789abcdefABCDEF" : L"0123456789";
    const std::size_t first = start + (isHexadecimal ? 2 : 0);
    // No number within the limits is longer, and none of this length overflows.
    const bool isNumber = word.size() > first && word.size() < 16 &&
                          word.find_first_not_of(digits, first) == std::wstring::npos;
    if (!isNumber) Refuse(type, word);
    const long long number = std::stoll(word, nullptr, isHexadecimal ? 16 : 10);
    if (number < least || number > most) Refuse(type, word);
    return number;
}

bool TruthOf(const std::wstring& word) {
    for (const wchar_t* yes : {L"1", L"true", L"yes", L"on"})
        if (AreSameNames(word, yes)) return true;
    for (const wchar_t* no : {L"0", L"false", L"no", L"off"})
        if (AreSameNames(word, no)) return false;
    Refuse(L"bool", word);
}

/// Two digits for each byte; blanks and commas may stand between bytes.
std::vector<BYTE> BytesOf(const std::wstring& word) {
    std::vector<BYTE> bytes;
    for (std::size_t i = 0; i < word.size();) {
        if (word[i] == L' ' || word[i] == L',') {
            ++i;
            continue;
        }
        const std::wstring digits = word.substr(i, 2);
        if (digits.size() < 2 ||
            digits.find_first_not_of(L"0123456789abcdefABCDEF") != std::wstring::npos)
            Refuse(L"data: two hexadecimal digits make a byte", word);
        bytes.push_back(static_cast<BYTE>(std::stoul(digits, nullptr, 16)));
        i += 2;
    }
    return bytes;
}

/// Whether the library has written the value.
bool Write(const wchar_t* section, const wchar_t* name, const std::wstring& type,
           const std::wstring& word) {
    if (type == L"bool") return KB_SetBoolW(section, name, TruthOf(word));
    if (type == L"dword")
        return KB_SetDWORDW(section, name, static_cast<DWORD>(NumberOf(type, word, 0, MAXDWORD)));
    if (type == L"int")
        return KB_SetIntW(section, name,
                          static_cast<int>(NumberOf(type, word, std::numeric_limits<int>::min(),
                                                    std::numeric_limits<int>::max())));
    if (type == L"string") return KB_SetTStringW(section, name, word);
    if (type == L"data") {
        const std::vector<BYTE> bytes = BytesOf(word);
        return KB_SetDataW(section, name, static_cast<DWORD>(bytes.size()), bytes.data());
    }
    throw Failure{ExitCode::WrongUse,
                  L"unknown type " + Quoted(type) + L"; it is bool, dword, int, string or data"};
}

ExitCode Set(const Arguments& arguments) {
    const std::wstring section = SectionArgument(arguments[0]);
    const std::wstring& name = arguments[1];
    const auto before = FindValue(section, name);
    if (!Write(section.c_str(), name.c_str(), arguments[2], arguments[3]))
        throw WhyNotWritten(section, FullName(section, name));
    const auto now = FindValue(section, name);
    PrintLine((now ? ValueText(*now) : L"gone again") +
              (before ? L" (was " + ValueText(*before) + L')' : L" (new)"));
    return ExitCode::Done;
}

}  // namespace

const Command kSet = {
    L"set",
    L"SECTION NAME TYPE VALUE",
    L"writes one value; creates the section where it is missing",
    L"  bool    1, true, yes, on or 0, false, no, off\n"
    L"  dword   0 to 4294967295, or hexadecimal: 0x1f\n"
    L"  int     -2147483648 to 2147483647\n"
    L"  string  a text\n"
    L"  data    bytes, each two hexadecimal digits: \"1b 00 26\"\n\n"
    L"The value is written as the library writes it, whatever type was stored before; what was\n"
    L"there is shown. The name \"\" is that of the section's default value.\n",
    {4, 4, {}},
    Set};

}  // namespace kitbag::tool
