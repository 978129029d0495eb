#include <algorithm>

#include "exit_code.h"
#include "reg_file.h"
#include "text.h"

namespace kitbag::tool {

namespace {

constexpr std::wstring_view kVersion5 = L"Windows Registry Editor Version 5.00";
constexpr std::wstring_view kVersion4 = L"REGEDIT4";
constexpr wchar_t kEnd = L'\0';

bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t'; }
bool IsLineEnd(wchar_t c) { return c == L'\r' || c == L'\n'; }

std::optional<DWORD> DigitOf(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    const wchar_t lower = c | 0x20;
    if (lower >= L'a' && lower <= L'f') return lower - L'a' + 10;
    return std::nullopt;
}

/// The text and how far it is read. Knows the lines, for the messages.
class Cursor {
 public:
    explicit Cursor(std::wstring_view text) : text_(text) {}

    bool IsAtEnd() const { return position_ >= text_.size(); }
    wchar_t Peek() const { return IsAtEnd() ? kEnd : text_[position_]; }
    wchar_t Next() {
        const wchar_t c = Peek();
        if (c == L'\n') ++line_;
        ++position_;
        return c;
    }
    bool Take(std::wstring_view expected) {
        if (!text_.substr(std::min(position_, text_.size())).starts_with(expected)) return false;
        position_ += expected.size();
        return true;
    }
    void SkipBlanks() {
        while (IsBlank(Peek())) Next();
    }
    /// What is left of the line.
    std::wstring_view RestOfLine() const {
        const std::wstring_view rest = text_.substr(std::min(position_, text_.size()));
        return rest.substr(0, std::min(rest.find_first_of(L"\r\n"), rest.size()));
    }
    void Skip(std::size_t characters) { position_ += characters; }
    /// Goes on behind blanks and a comment to the next line; false where something else stands
    /// there.
    bool EndLine() {
        SkipBlanks();
        if (Peek() == L';') Skip(RestOfLine().size());
        if (!IsAtEnd() && !IsLineEnd(Peek())) return false;
        if (Peek() == L'\r') Next();
        if (Peek() == L'\n') Next();
        return true;
    }

    [[noreturn]] void Fail(std::wstring_view reason) const {
        throw Failure{ExitCode::WrongUse,
                      L"line " + std::to_wstring(line_) + L": " + std::wstring(reason)};
    }

 private:
    std::wstring_view text_;
    std::size_t position_ = 0;
    std::size_t line_ = 1;
};

/// Behind the opening quote, up to the closing one. Line breaks may stand within.
std::wstring ParseQuoted(Cursor& cursor) {
    std::wstring text;
    for (;;) {
        if (cursor.IsAtEnd()) cursor.Fail(L"a quote is not closed");
        const wchar_t c = cursor.Next();
        if (c == L'"') return text;
        if (c != L'\\') {
            text += c;
            continue;
        }
        switch (cursor.Next()) {
            case L'\\':
                text += L'\\';
                break;
            case L'"':
                text += L'"';
                break;
            case L'n':
                text += L'\n';
                break;
            case L'r':
                text += L'\r';
                break;
            default:
                cursor.Fail(L"a backslash in quotes is written twice");
        }
    }
}

DWORD ParseHexadecimal(Cursor& cursor, std::size_t mostDigits) {
    DWORD number = 0;
    std::size_t digits = 0;
    for (; const auto digit = DigitOf(cursor.Peek()); ++digits) {
        number = number << 4 | *digit;
        cursor.Next();
    }
    if (digits == 0 || digits > mostDigits) cursor.Fail(L"no hexadecimal number");
    return number;
}

/// A backslash goes on in the next line.
void SkipToByte(Cursor& cursor) {
    cursor.SkipBlanks();
    while (cursor.Take(L"\\")) {
        if (cursor.IsAtEnd() || !cursor.EndLine())
            cursor.Fail(L"a line goes on without a next one");
        cursor.SkipBlanks();
    }
}

std::vector<BYTE> ParseBytes(Cursor& cursor) {
    std::vector<BYTE> bytes;
    SkipToByte(cursor);
    if (!DigitOf(cursor.Peek())) return bytes;
    for (;;) {
        bytes.push_back(static_cast<BYTE>(ParseHexadecimal(cursor, 2)));
        cursor.SkipBlanks();
        if (!cursor.Take(L",")) return bytes;
        SkipToByte(cursor);
    }
}

bool IsTextType(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

std::vector<BYTE> FromAnsiBytes(const std::vector<BYTE>& bytes) {
    return BytesOf(FromAnsi({reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
}

/// Where the first bracket stands behind which a line may end.
std::size_t EndOfKey(std::wstring_view line) {
    std::size_t end = line.find(L']');
    while (end != std::wstring_view::npos) {
        const std::size_t next = line.find_first_not_of(L" \t", end + 1);
        if (next == std::wstring_view::npos || line[next] == L';') return end;
        end = line.find(L']', end + 1);
    }
    return end;
}

class Parser {
 public:
    explicit Parser(std::wstring_view text) : cursor_(text) {}

    RegFile Parse() {
        ParseVersion();
        while (!cursor_.IsAtEnd()) ParseLine();
        return std::move(keys_);
    }

 private:
    void ParseVersion() {
        is8Bit_ = !cursor_.Take(kVersion5);
        if ((is8Bit_ && !cursor_.Take(kVersion4)) || !cursor_.EndLine())
            cursor_.Fail(L"this is no file of the registry editor");
    }

    void ParseLine() {
        cursor_.SkipBlanks();
        if (cursor_.Take(L"["))
            ParseKey();
        else if (cursor_.Take(L"@"))
            ParseValue({});
        else if (cursor_.Take(L"\""))
            ParseValue(ParseQuoted(cursor_));
        if (!cursor_.EndLine())
            cursor_.Fail(L"neither a key nor a value: " + std::wstring(cursor_.RestOfLine()));
    }

    void ParseKey() {
        RegFileKey key;
        key.isDeleted = cursor_.Take(L"-");
        const std::wstring_view line = cursor_.RestOfLine();
        const std::size_t end = EndOfKey(line);
        if (end == std::wstring_view::npos) cursor_.Fail(L"a key without its closing bracket");
        // Names may hold brackets, and so may a comment.
        if (end != line.rfind(L']')) cursor_.Fail(L"it is not clear where the key ends");
        key.name = line.substr(0, end);
        cursor_.Skip(end + 1);
        keys_.push_back(std::move(key));
    }

    void ParseValue(const std::wstring& name) {
        if (keys_.empty()) cursor_.Fail(L"a value before the first key");
        if (keys_.back().isDeleted) cursor_.Fail(L"a value of a key that is deleted");
        cursor_.SkipBlanks();
        if (!cursor_.Take(L"=")) cursor_.Fail(L"a value's name without its equals sign");
        cursor_.SkipBlanks();
        keys_.back().values.push_back({name, ParseContent()});
    }

    std::optional<StoredValue> ParseContent() {
        if (cursor_.Take(L"-")) return std::nullopt;
        if (cursor_.Take(L"\"")) return TextValue(ParseQuoted(cursor_));
        if (cursor_.Take(L"dword:")) {
            cursor_.SkipBlanks();
            return NumberValue(ParseHexadecimal(cursor_, 8));
        }
        if (cursor_.Take(L"hex:")) return StoredValue{REG_BINARY, ParseBytes(cursor_)};
        if (!cursor_.Take(L"hex(")) cursor_.Fail(L"neither a text, dword:, hex: nor -");
        return ParseTyped();
    }

    StoredValue ParseTyped() {
        const DWORD type = ParseHexadecimal(cursor_, 8);
        if (!cursor_.Take(L"):")) cursor_.Fail(L"a type without its closing bracket and colon");
        const std::vector<BYTE> bytes = ParseBytes(cursor_);
        return {type, is8Bit_ && IsTextType(type) ? FromAnsiBytes(bytes) : bytes};
    }

    Cursor cursor_;
    bool is8Bit_ = false;
    RegFile keys_;
};

}  // namespace

RegFile ParseRegFile(std::wstring_view text) { return Parser(text).Parse(); }

}  // namespace kitbag::tool
