// Stands in for the network library of Windows 95, 98 and ME.
#define _SVRAPI_
#include <tests/files/stand_ins/stand_in_server.h>
#include <windows.h>
// Needs the system's header.
#include <svrapi.h>

StandInServer server;

namespace {

/// In the code page that the test has the library work in.
std::string Narrow(const std::wstring& text) {
    std::string bytes(2 * text.size() + 1, '\0');
    ::WideCharToMultiByte(server.codePage, 0, text.c_str(), -1, bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr);
    return bytes.c_str();
}

}  // namespace

API_RET_TYPE WINAPI NetShareEnum(const char*, short, char* buffer, USHORT size, USHORT* read,
                                 USHORT* total) {
    static std::vector<std::string> paths;
    paths.clear();
    paths.reserve(server.shares.size());
    auto* entry = reinterpret_cast<share_info_50*>(buffer);
    *total = static_cast<USHORT>(server.shares.size());
    for (*read = 0; *read < *total && (*read + 1) * sizeof *entry <= size; ++*read, ++entry) {
        const StandInShare& share = server.shares[*read];
        auto* path = share.path.empty() ? reinterpret_cast<char*>(16)
                                        : paths.emplace_back(Narrow(share.path)).data();
        const WORD flags = share.type > 1 ? SHI50F_SYSTEM : 0;
        *entry = {"", static_cast<BYTE>(share.type), flags, nullptr, path, "", ""};
        Narrow(share.name).copy(entry->shi50_netname, sizeof entry->shi50_netname);
    }
    return static_cast<API_RET_TYPE>(server.sharesStatus);
}

API_RET_TYPE WINAPI NetServerGetInfo(const char*, short level, char* info, USHORT size,
                                     USHORT* needed) {
    *needed = sizeof(server_info_1);
    if (level != 1) return ERROR_INVALID_PARAMETER;
    if (!info || size < *needed) return NERR_BufTooSmall;
    ::lstrcpyA(info, "PC");
    return static_cast<API_RET_TYPE>(server.nameStatus);
}
