// Stands in for the network library of Windows 95, 98 and ME.
#define _SVRAPI_
#include <tests/files/stand_ins/stand_in_shares.h>
#include <windows.h>
// Needs the system's header.
#include <svrapi.h>

std::vector<StandInShare> shares;

API_RET_TYPE WINAPI NetShareEnum(const char*, short, char* buffer, USHORT size, USHORT* read,
                                 USHORT* total) {
    auto* entry = reinterpret_cast<share_info_50*>(buffer);
    *total = static_cast<USHORT>(shares.size());
    for (*read = 0; *read < *total && (*read + 1) * sizeof *entry <= size; ++*read, ++entry) {
        StandInShare& share = shares[*read];
        auto* path = share.path.empty() ? reinterpret_cast<char*>(16) : share.path.data();
        const WORD flags = share.type > 1 ? SHI50F_SYSTEM : 0;
        *entry = {"", static_cast<BYTE>(share.type), flags, nullptr, path, "", ""};
        ::lstrcpyA(entry->shi50_netname, share.name.c_str());
    }
    return NERR_Success;
}

API_RET_TYPE WINAPI NetServerGetInfo(const char*, short, char* name, USHORT size, USHORT* needed) {
    *needed = sizeof(server_info_1);
    if (!name || size < *needed) return NERR_BufTooSmall;
    ::lstrcpyA(name, "PC");
    return NERR_Success;
}
