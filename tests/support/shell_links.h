// Real shell links, made with the shell's own objects.
#pragma once

#include <gtest/gtest.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <filesystem>

namespace kitbag::test {

/// COM, initialised on this thread while it lives.
struct Com {
    Com() { ::CoInitialize(nullptr); }
    ~Com() { ::CoUninitialize(); }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;
};

inline void MakeLink(const std::filesystem::path& file, const char* target,
                     const char* description) {
    Microsoft::WRL::ComPtr<IShellLinkA> link;
    Microsoft::WRL::ComPtr<IPersistFile> storage;
    ASSERT_EQ(S_OK, ::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER,
                                       IID_PPV_ARGS(link.GetAddressOf())));
    ASSERT_EQ(S_OK, link.As(&storage));
    ASSERT_EQ(S_OK, link->SetPath(target));
    ASSERT_EQ(S_OK, link->SetDescription(description));
    ASSERT_EQ(S_OK, storage->Save(file.c_str(), TRUE));
}

}  // namespace kitbag::test
