// A registry of the test's own: HKEY_LOCAL_MACHINE replaced by a private key.
#pragma once

#include <windows.h>

#include <string>
#include <utility>

namespace kitbag::test {

/// The settings root key, spelled out here once more: tests do not take it from the library.
inline constexpr char kRoot[] = "Software\\Tarnwick\\Vidmoor\\Configuration";

/// While it lives, HKEY_LOCAL_MACHINE of this process is an empty key of its own below
/// "HKEY_CURRENT_USER\Software\Kitbag tests"; the key is deleted at the end. The test program's
/// main holds one around every test. The key's name carries process and time.
class PrivateRegistry {
 public:
    PrivateRegistry();
    ~PrivateRegistry();
    PrivateRegistry(PrivateRegistry&&) = delete;

 private:
    std::string path_;
    HKEY key_ = nullptr;
};

/// Raw access to a key below HKEY_LOCAL_MACHINE, for arranging and checking what the library sees.
class RawKey {
 public:
    /// Creates the key of a settings section; an empty section is the settings root.
    explicit RawKey(const std::string& section = {});
    ~RawKey() { ::RegCloseKey(key_); }
    RawKey(RawKey&&) = delete;

    /// True where the section's key exists already.
    static bool Exists(const std::string& section = {});

    HKEY Get() const { return key_; }
    /// The value's bytes are set and read in their 16-bit form, as they are stored.
    void Set(const wchar_t* name, DWORD type, const void* data, DWORD bytes) const;
    void Set(const wchar_t* name, DWORD value) const { Set(name, REG_DWORD, &value, sizeof value); }
    void Set(const wchar_t* name, const std::wstring& text) const;
    bool Has(const wchar_t* name) const;
    DWORD TypeOf(const wchar_t* name) const { return Read(name).first; }
    std::string BytesOf(const wchar_t* name) const { return Read(name).second; }
    DWORD NumberOf(const wchar_t* name) const;
    /// The text without its terminator; the terminator must be there.
    std::wstring TextOf(const wchar_t* name) const;

 private:
    std::pair<DWORD, std::string> Read(const wchar_t* name) const;

    HKEY key_ = nullptr;
};

}  // namespace kitbag::test
