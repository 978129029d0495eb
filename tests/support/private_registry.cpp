#include <gtest/gtest.h>
#include <tests/support/private_registry.h>

#include <cstring>

namespace kitbag::test {

namespace {

/// In 16-bit form: the system's 8-bit functions take key paths of up to 260 characters only.
std::wstring PathOf(const std::string& section) {
    const std::string path = section.empty() ? kRoot : std::string(kRoot) + '\\' + section;
    return {path.begin(), path.end()};
}

struct RawValue {
    DWORD type = REG_NONE;
    std::string bytes;
    bool found = false;
};

RawValue ReadRaw(HKEY key, const wchar_t* name) {
    RawValue value;
    DWORD bytes = 0;
    if (::RegQueryValueExW(key, name, nullptr, &value.type, nullptr, &bytes) != ERROR_SUCCESS)
        return value;
    value.bytes.resize(bytes);
    value.found =
        ::RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(value.bytes.data()),
                           &bytes) == ERROR_SUCCESS;
    return value;
}

}  // namespace

PrivateRegistry::PrivateRegistry()
    : path_("Software\\Kitbag tests\\" + std::to_string(::GetCurrentProcessId()) + '-' +
            std::to_string(::GetTickCount())) {
    ::RegCreateKeyExA(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                      &key_, nullptr);
    if (::RegOverridePredefKey(HKEY_LOCAL_MACHINE, key_) != ERROR_SUCCESS) std::abort();
}

PrivateRegistry::~PrivateRegistry() {
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    ::RegCloseKey(key_);
    ::RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str());
}

RawKey::RawKey(const std::string& section) {
    EXPECT_EQ(ERROR_SUCCESS,
              ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, PathOf(section).c_str(), 0, nullptr, 0,
                                KEY_ALL_ACCESS, nullptr, &key_, nullptr));
}

bool RawKey::Exists(const std::string& section) {
    HKEY key = nullptr;
    if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, PathOf(section).c_str(), 0, KEY_READ, &key) !=
        ERROR_SUCCESS)
        return false;
    ::RegCloseKey(key);
    return true;
}

void RawKey::Set(const wchar_t* name, DWORD type, const void* data, DWORD bytes) const {
    // Followed by what is no zero: the registry would store a terminator that it saw there.
    const std::string exact = std::string(static_cast<const char*>(data), bytes) + "##";
    EXPECT_EQ(ERROR_SUCCESS, ::RegSetValueExW(key_, name, 0, type,
                                              reinterpret_cast<const BYTE*>(exact.data()), bytes));
}

void RawKey::Set(const wchar_t* name, const std::wstring& text) const {
    Set(name, REG_SZ, text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

bool RawKey::Has(const wchar_t* name) const { return ReadRaw(key_, name).found; }

DWORD RawKey::TypeOf(const wchar_t* name) const { return ReadRaw(key_, name).type; }

std::string RawKey::BytesOf(const wchar_t* name) const { return ReadRaw(key_, name).bytes; }

DWORD RawKey::NumberOf(const wchar_t* name) const {
    const RawValue value = ReadRaw(key_, name);
    EXPECT_TRUE(value.found);
    EXPECT_EQ(DWORD{REG_DWORD}, value.type);
    EXPECT_EQ(sizeof(DWORD), value.bytes.size());
    DWORD number = 0;
    std::memcpy(&number, value.bytes.data(), std::min(sizeof number, value.bytes.size()));
    return number;
}

std::wstring RawKey::TextOf(const wchar_t* name) const {
    const RawValue value = ReadRaw(key_, name);
    EXPECT_TRUE(value.found);
    EXPECT_EQ(DWORD{REG_SZ}, value.type);
    std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), value.bytes.data(), text.size() * sizeof(wchar_t));
    // An empty text is stored as no bytes at all.
    if (text.empty()) return text;
    EXPECT_EQ(L'\0', text.back());
    text.pop_back();
    return text;
}

}  // namespace kitbag::test
