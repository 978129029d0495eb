#include <kitbag/files/shell_link.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_conversion.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <string>

namespace kitbag {

namespace {

using Microsoft::WRL::ComPtr;

// STGM_READ; clang-tidy rejects the spelling inside that macro.
constexpr DWORD kRead = 0;

// A target that was moved is searched for, and nothing is shown to the user meanwhile. The upper
// half of the flags, a limit for the search, stays 0: the system's own limit of 3 seconds.
constexpr DWORD kSearchUnseen = DWORD{SLR_NO_UI} | DWORD{SLR_ANY_MATCH};

std::wstring NameOf(const char* linkFile) { return ToWide(linkFile); }
std::wstring NameOf(const wchar_t* linkFile) { return linkFile; }

/// Both text forms read the link in 8-bit text: the 16-bit form's callers take its buffers for
/// such.
bool ReadLink(const std::wstring& file, char* target, char* description) {
    ComPtr<IShellLinkA> link;
    ComPtr<IPersistFile> storage;
    return SUCCEEDED(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER,
                                        IID_PPV_ARGS(link.GetAddressOf()))) &&
           SUCCEEDED(link.As(&storage)) && SUCCEEDED(storage->Load(file.c_str(), kRead)) &&
           SUCCEEDED(link->Resolve(::GetFocus(), kSearchUnseen)) &&
           // The short form is for programs that know no long names.
           SUCCEEDED(link->GetPath(target, MAX_PATH, nullptr, SLGP_SHORTPATH)) &&
           (!description || SUCCEEDED(link->GetDescription(description, MAX_PATH)));
}

template <class Ch>
bool GetLinkInfo(const Ch* linkFile, Ch* target, Ch* description) {
    if (!target) return false;
    *target = Ch{};
    if (description) *description = Ch{};
    if (!linkFile) return false;
    const std::wstring file = NameOf(linkFile);
    return file.size() < MAX_PATH &&
           ReadLink(file, reinterpret_cast<char*>(target), reinterpret_cast<char*>(description));
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_GetLinkInfoA(const char* linkFile, char* target, char* description) {
    return Guarded([&] { return kitbag::GetLinkInfo(linkFile, target, description); });
}
bool KB_GetLinkInfoW(const wchar_t* linkFile, wchar_t* target, wchar_t* description) {
    return Guarded([&] { return kitbag::GetLinkInfo(linkFile, target, description); });
}
