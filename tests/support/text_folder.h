// A temporary folder whose paths are spelled in the text form under test, and shell links in it.
#pragma once

#include <shlobj.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/text_forms.h>
#include <wrl/client.h>

#include <fstream>

namespace kitbag::test {

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
