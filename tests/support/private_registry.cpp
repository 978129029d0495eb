#include <gtest/gtest.h>
#include <tests/support/private_registry.h>

namespace kitbag::test {

namespace {

/// In 16-bit form: the system's 8-bit functions take key paths of up to 260 characters only.
std::wstring PathOf(const std::string& section) {
    const std::string path = section.empty() ? kRoot : std::string(kRoot) + '\\' + section;
    return {path.begin(), path.end()};
}

}  // namespace

PrivateRegistry::PrivateRegistry()
    : path_("Software\\Kitbag tests\\" + std::to_string(::GetCurrentProcessId()) + '-' +
            std::to_string(::GetTickCount())) {
    ::RegCreateKeyA(HKEY_CURRENT_USER, path_.c_str(), &key_);
    // Without a key of its own the test would go on in the real settings.
    if (!key_ || ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, key_) != ERROR_SUCCESS) std::abort();
}

PrivateRegistry::~PrivateRegistry() {
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    ::RegCloseKey(key_);
    ::RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str());
}

RawKey::RawKey(const std::string& section) {
    EXPECT_EQ(ERROR_SUCCESS, ::RegCreateKeyW(HKEY_LOCAL_MACHINE, PathOf(section).c_str(), &key_));
}

bool RawKey::Exists(const std::string& section) {
    HKEY key = nullptr;
    ::RegOpenKeyW(HKEY_LOCAL_MACHINE, PathOf(section).c_str(), &key);
    return key && ::RegCloseKey(key) == ERROR_SUCCESS;
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

LSTATUS RawKey::Query(const wchar_t* name, DWORD* type, void* data, DWORD* bytes) const {
    return ::RegQueryValueExW(key_, name, nullptr, type, static_cast<BYTE*>(data), bytes);
}

bool RawKey::Has(const wchar_t* name) const {
    return Query(name, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

DWORD RawKey::TypeOf(const wchar_t* name) const {
    DWORD type = REG_NONE;
    Query(name, &type, nullptr, nullptr);
    return type;
}

std::string RawKey::BytesOf(const wchar_t* name) const {
    DWORD size = 0;
    Query(name, nullptr, nullptr, &size);
    std::string bytes(size, '\0');
    Query(name, nullptr, bytes.data(), &size);
    return bytes;
}

DWORD RawKey::NumberOf(const wchar_t* name) const {
    DWORD number = 0, type = REG_NONE, bytes = sizeof number;
    EXPECT_EQ(ERROR_SUCCESS, Query(name, &type, &number, &bytes));
    EXPECT_TRUE(type == REG_DWORD && bytes == sizeof number);
    return number;
}

std::wstring RawKey::TextOf(const wchar_t* name) const {
    EXPECT_EQ(DWORD{REG_SZ}, TypeOf(name));
    const std::string bytes = BytesOf(name);
    const auto* text = reinterpret_cast<const wchar_t*>(bytes.data());
    // An empty text is stored as no bytes at all.
    if (bytes.empty()) return {};
    const std::size_t length = bytes.size() / sizeof(wchar_t) - 1;
    EXPECT_EQ(L'\0', text[length]);
    return {text, length};
}

}  // namespace kitbag::test
