#include <kitbag/frame/caller_memory.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/frame/text_form.h>
#include <kitbag/registry/settings_key.h>
#include <kitbag/registry/stored_values.h>
#include <oleauto.h>

#include <string>
#include <utility>

namespace kitbag {

namespace {

struct Stored {
    DWORD type;
    DWORD bytes;
};

/// Reads a value into a buffer of stored.bytes bytes (none: asks only) and tells what was there.
template <class Ch>
LSTATUS Query(const RegistryKey& key, const Ch* name, Stored& stored, void* buffer = nullptr) {
    return QueryValue(key.Get(), name, &stored.type, buffer, &stored.bytes);
}

template <class Ch>
bool QueryText(const RegistryKey& key, const Ch* name, Stored& stored) {
    return Query(key, name, stored) == ERROR_SUCCESS && stored.type == REG_SZ;
}

constexpr LSTATUS kNoSuchText = ERROR_FILE_NOT_FOUND;

/// Even beside a process that does nothing but write, one read in eight at most meets a text that
/// grows; that all of these do is as good as impossible.
constexpr int kReadAttempts = 8;

/// Makes a read of two queries, for the size and for the text. It is made anew where the text does
/// not fit the size any more, because another process has stored a longer one between the two.
template <class Read>
bool ReadWhileItGrows(Read read) {
    LSTATUS status = ERROR_MORE_DATA;
    for (int i = 0; status == ERROR_MORE_DATA && i < kReadAttempts; ++i) status = read();
    return status == ERROR_SUCCESS;
}

template <class Ch>
bool Store(const Ch* section, const Ch* name, DWORD type, const void* data, DWORD bytes) {
    const RegistryKey key = CreateSection(section);
    return key && SetValue(key.Get(), name, type, data, bytes) == ERROR_SUCCESS;
}

template <class Ch, class Number>
bool GetNumber(const Ch* section, const Ch* name, Number* value) {
    static_assert(sizeof(Number) == sizeof(DWORD));
    const RegistryKey key = OpenSection(section);
    if (!key) return false;
    Number number{};
    Stored stored{REG_NONE, sizeof number};
    if (Query(key, name, stored, &number) != ERROR_SUCCESS) return false;
    if (stored.bytes != sizeof number || stored.type != REG_DWORD) return false;
    if (!IsWritable(value)) return false;
    *value = number;
    return true;
}

template <class Ch, class Number>
bool SetNumber(const Ch* section, const Ch* name, Number value) {
    static_assert(sizeof(Number) == sizeof(DWORD));
    return Store(section, name, REG_DWORD, &value, sizeof value);
}

template <class Ch>
bool GetBool(const Ch* section, const Ch* name, bool* value) {
    int number = 0;
    if (!GetNumber(section, name, &number) || !IsWritable(value)) return false;
    *value = number != 0;
    return true;
}

template <class Ch>
bool GetString(const Ch* section, const Ch* name, Ch* buffer, DWORD size) {
    if (size > MAXDWORD / sizeof(Ch) || !IsWritable(buffer, BytesOf<Ch>(size))) return false;
    const RegistryKey key = OpenSection(section);
    if (!key) return false;
    return ReadWhileItGrows([&] {
        Stored stored{};
        const bool fits = QueryText(key, name, stored) && stored.bytes < BytesOf<Ch>(size);
        return fits ? Query(key, name, stored, buffer) : kNoSuchText;
    });
}

template <class Ch>
bool SetString(const Ch* section, const Ch* name, const Ch* text) {
    return Store(section, name, REG_SZ, text, BytesOf<Ch>(Length(text)));
}

/// The characters of a stored text as they are, terminator included; there is room for the odd byte
/// of a damaged 16-bit text.
template <class Ch>
bool ReadText(const Ch* section, const Ch* name, std::basic_string<Ch>& characters) {
    const RegistryKey key = OpenSection(section);
    if (!key) return false;
    Stored stored{};
    const bool isRead = ReadWhileItGrows([&] {
        if (!QueryText(key, name, stored)) return kNoSuchText;
        characters.resize((stored.bytes + sizeof(Ch) - 1) / sizeof(Ch));
        return stored.bytes > 0 ? Query(key, name, stored, characters.data()) : ERROR_SUCCESS;
    });
    if (isRead) characters.resize(stored.bytes / sizeof(Ch));
    return isRead;
}

template <class Ch>
bool GetStringObject(const Ch* section, const Ch* name, StringOf<Ch>& text) {
    std::basic_string<Ch> characters;
    if (!ReadText(section, name, characters)) return false;
    // The last character is dropped even where it is no terminator.
    if (!characters.empty()) characters.pop_back();
    text = std::move(characters);
    return true;
}

/// Reading wants an existing BSTR, not only a place for one: callers rely on a null one being
/// refused.
bool IsExistingBstr(BSTR* text) { return IsWritable(text) && IsWritable(*text, sizeof(DWORD)); }

bool NewBstr(const wchar_t* characters, BSTR* text) {
    BSTR created = ::SysAllocString(characters);
    if (!created) return false;
    *text = created;
    return true;
}

// The A form passes the text through the ANSI code page, in both directions.
std::wstring BstrText(const std::string& stored) { return ToWide(stored.c_str()); }
const std::wstring& BstrText(const std::wstring& stored) { return stored; }

template <class Ch>
bool GetBstr(const Ch* section, const Ch* name, BSTR* text) {
    if (!IsExistingBstr(text)) return false;
    std::basic_string<Ch> stored;
    return ReadText(section, name, stored) && NewBstr(BstrText(stored).c_str(), text);
}

bool SetBstr(const char* section, const char* name, BSTR text) {
    return SetString(section, name, text ? ToNarrow(text).c_str() : nullptr);
}
bool SetBstr(const wchar_t* section, const wchar_t* name, BSTR text) {
    return SetString<wchar_t>(section, name, text);
}

template <class Ch>
bool GetDataSize(const Ch* section, const Ch* name, DWORD* size) {
    if (!IsWritable(size)) return false;
    const RegistryKey key = OpenSection(section);
    return key && QueryValue(key.Get(), name, nullptr, nullptr, size) == ERROR_SUCCESS;
}

template <class Ch>
bool GetData(const Ch* section, const Ch* name, DWORD bufferSize, void* buffer,
             DWORD* returnedSize) {
    if (buffer && !IsWritable(buffer, bufferSize)) return false;
    const RegistryKey key = OpenSection(section);
    Stored stored{REG_NONE, bufferSize};
    if (!key || Query(key, name, stored, buffer) != ERROR_SUCCESS) return false;
    if (IsWritable(returnedSize)) *returnedSize = stored.bytes;
    return true;
}

template <class Ch>
bool SetData(const Ch* section, const Ch* name, DWORD size, const void* data) {
    return IsReadable(data, size) && Store(section, name, REG_BINARY, data, size);
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_GetBoolA(const char* section, const char* name, bool* value) {
    return Guarded([&] { return kitbag::GetBool(section, name, value); });
}
bool KB_GetBoolW(const wchar_t* section, const wchar_t* name, bool* value) {
    return Guarded([&] { return kitbag::GetBool(section, name, value); });
}
bool KB_SetBoolA(const char* section, const char* name, bool value) {
    return Guarded([&] { return kitbag::SetNumber(section, name, value ? 1 : 0); });
}
bool KB_SetBoolW(const wchar_t* section, const wchar_t* name, bool value) {
    return Guarded([&] { return kitbag::SetNumber(section, name, value ? 1 : 0); });
}

bool KB_GetDWORDA(const char* section, const char* name, DWORD* value) {
    return Guarded([&] { return kitbag::GetNumber(section, name, value); });
}
bool KB_GetDWORDW(const wchar_t* section, const wchar_t* name, DWORD* value) {
    return Guarded([&] { return kitbag::GetNumber(section, name, value); });
}
bool KB_SetDWORDA(const char* section, const char* name, DWORD value) {
    return Guarded([&] { return kitbag::SetNumber(section, name, value); });
}
bool KB_SetDWORDW(const wchar_t* section, const wchar_t* name, DWORD value) {
    return Guarded([&] { return kitbag::SetNumber(section, name, value); });
}

bool KB_GetIntA(const char* section, const char* name, int* value) {
    return Guarded([&] { return kitbag::GetNumber(section, name, value); });
}
bool KB_GetIntW(const wchar_t* section, const wchar_t* name, int* value) {
    return Guarded([&] { return kitbag::GetNumber(section, name, value); });
}
bool KB_SetIntA(const char* section, const char* name, int value) {
    return Guarded([&] { return kitbag::SetNumber(section, name, value); });
}
bool KB_SetIntW(const wchar_t* section, const wchar_t* name, int value) {
    return Guarded([&] { return kitbag::SetNumber(section, name, value); });
}

bool KB_GetStringA(const char* section, const char* name, char* buffer, DWORD size) {
    return Guarded([&] { return kitbag::GetString(section, name, buffer, size); });
}
bool KB_GetStringW(const wchar_t* section, const wchar_t* name, wchar_t* buffer, DWORD size) {
    return Guarded([&] { return kitbag::GetString(section, name, buffer, size); });
}
bool KB_SetStringA(const char* section, const char* name, const char* text) {
    return Guarded([&] { return kitbag::SetString(section, name, text); });
}
bool KB_SetStringW(const wchar_t* section, const wchar_t* name, const wchar_t* text) {
    return Guarded([&] { return kitbag::SetString(section, name, text); });
}

bool KB_GetTStringA(const char* section, const char* name, TWinString<char>& text) {
    return Guarded([&] { return kitbag::GetStringObject(section, name, text); });
}
bool KB_GetTStringW(const wchar_t* section, const wchar_t* name, std::wstring& text) {
    return Guarded([&] { return kitbag::GetStringObject(section, name, text); });
}
bool KB_SetTStringA(const char* section, const char* name, const TWinString<char>& text) {
    return KB_SetStringA(section, name, text.c_str());
}
bool KB_SetTStringW(const wchar_t* section, const wchar_t* name, const std::wstring& text) {
    return KB_SetStringW(section, name, text.c_str());
}

bool KB_GetBSTRA(const char* section, const char* name, BSTR* text) {
    return Guarded([&] { return kitbag::GetBstr(section, name, text); });
}
bool KB_GetBSTRW(const wchar_t* section, const wchar_t* name, BSTR* text) {
    return Guarded([&] { return kitbag::GetBstr(section, name, text); });
}
bool KB_SetBSTRA(const char* section, const char* name, BSTR text) {
    return Guarded([&] { return kitbag::SetBstr(section, name, text); });
}
bool KB_SetBSTRW(const wchar_t* section, const wchar_t* name, BSTR text) {
    return Guarded([&] { return kitbag::SetBstr(section, name, text); });
}

bool KB_GetDataSizeA(const char* section, const char* name, DWORD* size) {
    return Guarded([&] { return kitbag::GetDataSize(section, name, size); });
}
bool KB_GetDataSizeW(const wchar_t* section, const wchar_t* name, DWORD* size) {
    return Guarded([&] { return kitbag::GetDataSize(section, name, size); });
}
bool KB_GetDataA(const char* section, const char* name, DWORD bufferSize, void* buffer,
                 DWORD* returnedSize) {
    return Guarded(
        [&] { return kitbag::GetData(section, name, bufferSize, buffer, returnedSize); });
}
bool KB_GetDataW(const wchar_t* section, const wchar_t* name, DWORD bufferSize, void* buffer,
                 DWORD* returnedSize) {
    return Guarded(
        [&] { return kitbag::GetData(section, name, bufferSize, buffer, returnedSize); });
}
bool KB_SetDataA(const char* section, const char* name, DWORD size, const void* data) {
    return Guarded([&] { return kitbag::SetData(section, name, size, data); });
}
bool KB_SetDataW(const wchar_t* section, const wchar_t* name, DWORD size, const void* data) {
    return Guarded([&] { return kitbag::SetData(section, name, size, data); });
}
