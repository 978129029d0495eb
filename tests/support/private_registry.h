// A registry of the test's own: HKEY_LOCAL_MACHINE replaced by a private key.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

namespace kitbag::test {

/// The settings root key, spelled out here once more: tests do not take it from the library.
inline constexpr char kRoot[] = "Software\\Tarnwick\\Vidmoor\\Configuration";

/// While it lives, HKEY_LOCAL_MACHINE of this process is an empty key of its own below
/// "HKEY_CURRENT_USER\Software\Kitbag tests"; the key is deleted at the end. The test program's
/// main gives one to each test. The key's name carries process and time.
class PrivateRegistry {
 public:
    PrivateRegistry() {
        ::RegCreateKeyA(HKEY_CURRENT_USER, path_.c_str(), &key_);
        // Without a key of its own the test would go on in the real settings.
        if (!key_ || ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, key_)) std::abort();
    }
    ~PrivateRegistry() {
        ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        ::RegCloseKey(key_);
        ::RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str());
    }

 private:
    static inline int count_ = 0;
    const std::string path_ = "Software\\Kitbag tests\\" + std::to_string(::GetCurrentProcessId()) +
                              '-' + std::to_string(::GetTickCount()) + '-' +
                              std::to_string(++count_);
    HKEY key_ = nullptr;
};

/// Raw access to the key of a settings section, for arranging and checking what the library sees.
/// An empty section is the settings root. Values are set and read in their 16-bit form, as stored.
class RawKey {
 public:
    /// Creates the key where it is missing.
    explicit RawKey(const std::string& section = {}) {
        EXPECT_FALSE(::RegCreateKeyW(HKEY_LOCAL_MACHINE, PathOf(section).c_str(), &key_));
    }
    ~RawKey() { ::RegCloseKey(key_); }

    static bool Exists(const std::string& section = {}) {
        HKEY key = nullptr;
        ::RegOpenKeyW(HKEY_LOCAL_MACHINE, PathOf(section).c_str(), &key);
        return key && ::RegCloseKey(key) == ERROR_SUCCESS;
    }

    HKEY Get() const { return key_; }
    bool Has(const wchar_t* name) const { return !::RegQueryValueExW(key_, name, {}, {}, {}, {}); }
    DWORD NumberOf(const wchar_t* name) const {
        DWORD number = 0, size = sizeof number;
        EXPECT_FALSE(
            ::RegGetValueW(key_, nullptr, name, RRF_RT_REG_DWORD, nullptr, &number, &size));
        return number;
    }
    /// The type and the bytes of a value; no type and no bytes where it is missing.
    std::pair<DWORD, std::string> Read(const wchar_t* name) const {
        DWORD type = REG_NONE, size = 0;
        ::RegQueryValueExW(key_, name, nullptr, &type, nullptr, &size);
        std::string bytes(size, '\0');
        ::RegQueryValueExW(key_, name, nullptr, nullptr, reinterpret_cast<BYTE*>(bytes.data()),
                           &size);
        return {type, bytes};
    }

    /// The text without its terminator, which must be there; an empty text is stored as no bytes.
    std::wstring TextOf(const wchar_t* name) const {
        const auto [type, bytes] = Read(name);
        const std::wstring text(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / 2);
        EXPECT_EQ(DWORD{REG_SZ}, type) << testing::PrintToString(name);
        EXPECT_EQ(text.size(), text.find(L'\0') + 1) << testing::PrintToString(name);
        return text.c_str();
    }

    void Set(const wchar_t* name, DWORD type, const void* data, DWORD bytes) const {
        // Followed by what is no zero: the registry would store a terminator that it saw there.
        const std::string exact = std::string(static_cast<const char*>(data), bytes) + "##";
        EXPECT_FALSE(::RegSetValueExW(key_, name, 0, type,
                                      reinterpret_cast<const BYTE*>(exact.data()), bytes));
    }
    void Set(const wchar_t* name, DWORD value) const { Set(name, REG_DWORD, &value, sizeof value); }
    void Set(const wchar_t* name, const std::wstring& text) const {
        Set(name, REG_SZ, text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    }

 private:
    /// In 16-bit form: the system's 8-bit functions take key paths of up to 260 characters only.
    static std::wstring PathOf(const std::string& section) {
        const std::string path = section.empty() ? kRoot : std::string(kRoot) + '\\' + section;
        return {path.begin(), path.end()};
    }

    HKEY key_ = nullptr;
};

}  // namespace kitbag::test
