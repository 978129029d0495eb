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

bool RawKey::Has(const wchar_t* name) const {
    return ::RegQueryValueExW(key_, name, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

std::pair<DWORD, std::string> RawKey::Read(const wchar_t* name) const {
    DWORD type = REG_NONE, size = 0;
    ::RegQueryValueExW(key_, name, nullptr, &type, nullptr, &size);
    std::string bytes(size, '\0');
    ::RegQueryValueExW(key_, name, nullptr, nullptr, reinterpret_cast<BYTE*>(bytes.data()), &size);
    return {type, bytes};
}

DWORD RawKey::NumberOf(const wchar_t* name) const {
    const auto [type, bytes] = Read(name);
    DWORD number = 0;
    EXPECT_TRUE(type == REG_DWORD && bytes.size() == sizeof number);
    bytes.copy(reinterpret_cast<char*>(&number), sizeof number);
    return number;
}

std::wstring RawKey::TextOf(const wchar_t* name) const {
    const auto [type, bytes] = Read(name);
    EXPECT_EQ(DWORD{REG_SZ}, type);
    std::wstring text(reinterpret_cast<const wchar_t*>(bytes.data()),
                      bytes.size() / sizeof(wchar_t));
    // An empty text is stored as no bytes at all.
    if (text.empty()) return text;
    EXPECT_EQ(L'\0', text.back());
    text.pop_back();
    return text;
}

}  // namespace kitbag::test
