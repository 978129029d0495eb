#include <kitbag/com/registration_script.h>
#include <kitbag/frame/text_conversion.h>

#include <algorithm>
#include <charconv>
#include <cwchar>
#include <utility>

namespace kitbag {

namespace {

constexpr std::wstring_view kBlanks = L" \t\r\n";
constexpr std::wstring_view kMarks = L"{}=";
/// What ends a word that is not quoted.
constexpr std::wstring_view kEnds = L" \t\r\n{}='";

const std::pair<std::wstring_view, HKEY> kRoots[] = {
    {L"HKCR", HKEY_CLASSES_ROOT},
    {L"HKCU", HKEY_CURRENT_USER},
    {L"HKLM", HKEY_LOCAL_MACHINE},
    {L"HKU", HKEY_USERS},
};

/// Losing one of these would break every other program.
constexpr const wchar_t* kSharedKeys[] = {
    L"AppID",    L"CLSID",     L"Component Categories",
    L"Hardware", L"Interface", L"MIME",
    L"SAM",      L"Security",  L"Software",
    L"System",   L"TypeLib",
};

bool IsShared(const std::wstring& name) {
    return std::ranges::any_of(
        kSharedKeys, [&](const wchar_t* shared) { return ::_wcsicmp(shared, name.c_str()) == 0; });
}

/// The words of a script, one after the other.
class Words {
 public:
    Words(std::wstring_view script, const Replacements& replacements)
        : script_(script), replacements_(replacements) {
        Advance();
    }

    bool AtEnd() const { return word_.empty() && !quoted_; }

    /// Whether this mark or keyword comes next.
    bool IsNext(std::wstring_view expected) const { return !quoted_ && word_ == expected; }

    bool Skip(std::wstring_view expected) {
        const bool found = IsNext(expected);
        if (found) Advance();
        return found;
    }

    /// A name or text with its replacements made.
    std::wstring Take(const char* expected) {
        if (AtEnd() || IsMark()) Fail(expected);
        std::wstring text = Expanded();
        Advance();
        return text;
    }

    [[noreturn]] void Fail(const char* expected) const {
        throw RegistrationScriptError{
            1 + static_cast<long>(std::ranges::count(script_.substr(0, start_), L'\n')), expected};
    }

 private:
    bool IsMark() const { return !quoted_ && kMarks.find(word_.front()) != kMarks.npos; }

    void Advance() {
        SkipBlanksAndComments();
        start_ = next_;
        quoted_ = next_ < script_.size() && script_[next_] == L'\'';
        word_ = quoted_ ? ReadQuoted() : ReadBare();
    }

    void SkipBlanksAndComments() {
        for (;;) {
            next_ = std::min(script_.find_first_not_of(kBlanks, next_), script_.size());
            if (!script_.substr(next_).starts_with(L"//")) return;
            next_ = std::min(script_.find(L'\n', next_), script_.size());
        }
    }

    std::wstring ReadBare() {
        auto end = std::min(script_.find_first_of(kEnds, next_), script_.size());
        // A mark is a word of its own.
        if (end == next_ && end < script_.size()) ++end;
        next_ = end;
        return std::wstring(script_.substr(start_, end - start_));
    }

    std::wstring ReadQuoted() {
        std::wstring text;
        do {
            const auto end = script_.find_first_of(L"'\n", next_ + 1);
            if (end == script_.npos || script_[end] == L'\n') Fail("an apostrophe");
            // Right behind an apostrophe another one is part of the text.
            if (next_ != start_) text += L'\'';
            text += script_.substr(next_ + 1, end - next_ - 1);
            next_ = end + 1;
        } while (next_ < script_.size() && script_[next_] == L'\'');
        return text;
    }

    std::wstring Expanded() const {
        std::wstring text;
        std::wstring_view rest = word_;
        for (auto percent = rest.find(L'%'); percent != rest.npos; percent = rest.find(L'%')) {
            text += rest.substr(0, percent);
            rest.remove_prefix(percent + 1);
            const auto end = rest.find(L'%');
            if (end == rest.npos) Fail("a percent sign");
            text += Replacement(rest.substr(0, end));
            rest.remove_prefix(end + 1);
        }
        return text.append(rest);
    }

    std::wstring_view Replacement(std::wstring_view name) const {
        if (name.empty()) return L"%";
        const auto found = replacements_.find(name);
        if (found == replacements_.end()) Fail("a known replacement");
        return found->second;
    }

    std::wstring_view script_;
    const Replacements& replacements_;
    std::wstring word_;
    bool quoted_ = false;
    std::size_t start_ = 0;
    std::size_t next_ = 0;
};

std::wstring ReadName(Words& words) {
    std::wstring name = words.Take("a name");
    // An empty key name would stand for the key around it, a path for keys that nobody takes back.
    if (name.empty() || name.find(L'\\') != name.npos) words.Fail("a plain name before this");
    return name;
}

DWORD ReadNumber(Words& words) {
    const std::string text = ToNarrow(words.Take("a number").c_str());
    const bool hexadecimal = text.starts_with("0x");
    const char* const end = text.data() + text.size();
    DWORD number = 0;
    const auto [behind, error] =
        std::from_chars(text.data() + (hexadecimal ? 2 : 0), end, number, hexadecimal ? 16 : 10);
    if (error != std::errc{} || behind != end) words.Fail("a number of 32 bits before this");
    return number;
}

RegistrationData ReadData(Words& words) {
    if (words.Skip(L"s")) return words.Take("a text");
    if (words.Skip(L"d")) return ReadNumber(words);
    words.Fail("s or d");
}

RegistrationEntry::Kind ReadKind(Words& words) {
    using Kind = RegistrationEntry::Kind;
    if (words.Skip(L"ForceRemove")) return Kind::OwnKey;
    if (words.Skip(L"NoRemove")) return Kind::SharedKey;
    if (words.Skip(L"Delete")) return Kind::DeletedKey;
    if (words.Skip(L"val")) return Kind::Value;
    return Kind::Key;
}

std::vector<RegistrationEntry> ReadBlock(Words& words, bool belowRoot);

RegistrationEntry ReadEntry(Words& words, bool belowRoot) {
    using Kind = RegistrationEntry::Kind;
    RegistrationEntry entry;
    entry.kind = ReadKind(words);
    entry.name = ReadName(words);
    const bool isKey = entry.kind != Kind::Value;
    if (belowRoot && isKey && IsShared(entry.name)) {
        if (entry.kind == Kind::DeletedKey) words.Fail("a key of our own before this");
        entry.kind = Kind::SharedKey;
    }
    if (entry.kind == Kind::DeletedKey) return entry;
    if (words.Skip(L"="))
        entry.data = ReadData(words);
    else if (!isKey)
        words.Fail("=");
    if (isKey && words.IsNext(L"{")) entry.entries = ReadBlock(words, false);
    return entry;
}

std::vector<RegistrationEntry> ReadBlock(Words& words, bool belowRoot) {
    if (!words.Skip(L"{")) words.Fail("{");
    std::vector<RegistrationEntry> entries;
    while (!words.Skip(L"}")) entries.push_back(ReadEntry(words, belowRoot));
    return entries;
}

RegistrationRoot ReadRoot(Words& words) {
    for (const auto& [name, key] : kRoots)
        if (words.Skip(name)) return {key, ReadBlock(words, true)};
    words.Fail("a root key");
}

}  // namespace

std::vector<RegistrationRoot> ParseRegistrationScript(std::wstring_view text,
                                                      const Replacements& replacements) {
    Words words(text, replacements);
    std::vector<RegistrationRoot> roots;
    while (!words.AtEnd()) roots.push_back(ReadRoot(words));
    return roots;
}

}  // namespace kitbag
