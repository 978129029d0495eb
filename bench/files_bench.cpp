// The library's own work in translating share names.

#include <bench/benches.h>
#include <kitbag/files/unc_translation.h>
#include <tests/support/import_patch.h>
// The network's types need the system's.
#include <lm.h>

#include <cstring>
#include <string>

namespace kitbag::bench {

namespace {

using test::ImportPatch;

// A server that answers at once with 100 shares.

NET_API_STATUS WINAPI Free(void*) { return NERR_Success; }
NET_API_STATUS WINAPI ServerInfo(wchar_t*, DWORD, BYTE** result) {
    static wchar_t name[] = L"PC";
    static SERVER_INFO_100 info{PLATFORM_ID_NT, name};
    *result = reinterpret_cast<BYTE*>(&info);
    return NERR_Success;
}
NET_API_STATUS WINAPI Shares(wchar_t*, DWORD, BYTE** result, DWORD, DWORD* read, DWORD* total,
                             DWORD*) {
    static std::vector<std::wstring> texts;
    static std::vector<SHARE_INFO_502> shares;
    if (shares.empty()) {
        for (int i = 0; i < 100; ++i) {
            texts.push_back(L"Share" + std::to_wstring(i));
            texts.push_back(L"C:\\Media\\Folder " + std::to_wstring(i));
        }
        for (std::size_t i = 0; i < texts.size(); i += 2) {
            SHARE_INFO_502 share{};
            share.shi502_netname = texts[i].data();
            share.shi502_path = texts[i + 1].data();
            shares.push_back(share);
        }
    }
    *result = reinterpret_cast<BYTE*>(shares.data());
    *read = *total = static_cast<DWORD>(shares.size());
    return NERR_Success;
}
template <class Function>
FARPROC Address(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

FARPROC WINAPI Find(HMODULE, LPCSTR name) {
    if (std::strcmp(name, "NetShareEnum") == 0) return Address(Shares);
    if (std::strcmp(name, "NetServerGetInfo") == 0) return Address(ServerInfo);
    return Address(Free);
}

Result Translation() {
    const ImportPatch find("GetProcAddress", Find);
    return Measure(
        Absolute{"KB_LocalToUNCW, 100 shares, server answering at once",
                 [](int count) {
                     wchar_t name[MAX_PATH];
                     for (int i = 0; i < count; ++i)
                         Keep(KB_LocalToUNCW(L"C:\\Media\\Folder 42\\a.mpg", name, MAX_PATH));
                 },
                 100e3});
}

}  // namespace

std::vector<Result> MeasureFiles() { return {Translation()}; }

}  // namespace kitbag::bench
