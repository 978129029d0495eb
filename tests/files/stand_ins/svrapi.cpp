// Stands in for the network library of Windows 95, 98 and ME.
#define _SVRAPI_
#include <tests/files/stand_ins/stand_in_server.h>
#include <windows.h>
// Needs the system's header.
#include <svrapi.h>

StandInServer server;

API_RET_TYPE WINAPI NetShareEnum(const char*, short, char* buffer, USHORT size, USHORT* read,
                                 USHORT* total) {
    *read = *total = 0;
    auto* entry = reinterpret_cast<share_info_50*>(buffer);
    for (const StandInShare& share : server.shares) {
        if (++*total * sizeof *entry > size) continue;
        ::lstrcpyA(entry->shi50_netname, share.name.c_str());
        entry->shi50_path = share.path.empty() ? reinterpret_cast<char*>(16)
                                               : const_cast<char*>(share.path.c_str());
        entry->shi50_type = static_cast<BYTE>(share.type);
        entry->shi50_flags = share.type > 1 ? SHI50F_SYSTEM : 0;
        ++entry;
        ++*read;
    }
    return server.status;
}

API_RET_TYPE WINAPI NetServerGetInfo(const char*, short, char* buffer, USHORT size,
                                     USHORT* needed) {
    *needed = sizeof(server_info_1);
    if (!buffer || size < *needed) return NERR_BufTooSmall;
    ::lstrcpyA(buffer, "PC");
    return NERR_Success;
}
