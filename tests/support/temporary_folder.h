// A folder of the test's own, its paths spelled in the text form under test, and shell links in it.
#pragma once

#include <shlobj.h>
#include <tests/support/text_forms.h>
#include <wrl/client.h>

#include <filesystem>
#include <fstream>

namespace kitbag::test {

/// A new empty folder below the system's temporary folder; deleted with its content at the end.
class TemporaryFolder {
 public:
    TemporaryFolder() { create_directories(path_); }
    ~TemporaryFolder() {
        std::error_code ignored;
        remove_all(path_, ignored);
    }

    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
    static inline int count_ = 0;
    const std::filesystem::path path_ =
        std::filesystem::temp_directory_path() /
        ("kitbag-" + std::to_string(::GetCurrentProcessId()) + '-' + std::to_string(++count_));
};

template <class Ch>
struct TextFolder : TemporaryFolder {
    Text<Ch> In(const std::string& name) const { return (*this / name).template string<Ch>(); }
    bool Has(const std::string& name) const { return exists(*this / name); }
    void Write(const std::string& name, const std::string& content = "x") const {
        create_directories((*this / name).parent_path());
        std::ofstream(*this / name, std::ios::binary) << content;
    }

    /// COM must be initialised.
    void WriteLink(const std::string& name, const std::string& target) const {
        Microsoft::WRL::ComPtr<IShellLinkA> link;
        Microsoft::WRL::ComPtr<IPersistFile> storage;
        ::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&link));
        link->SetPath(target.c_str());
        link->SetDescription("A description");
        link.As(&storage);
        storage->Save((*this / name).c_str(), TRUE);
    }
};

/// COM, initialised on this thread while it lives.
struct Com {
    Com() { ::CoInitialize(nullptr); }
    ~Com() { ::CoUninitialize(); }
};

}  // namespace kitbag::test
