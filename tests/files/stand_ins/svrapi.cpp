// Stands in for the network library of Windows 95, 98 and ME.
#define _SVRAPI_
#include <tests/files/stand_ins/stand_in_server.h>
#include <windows.h>
// Needs the system's header.
#include <svrapi.h>

#include <cstring>

kitbag::test::StandInServer server;

API_RET_TYPE WINAPI NetShareEnum(const char*, short level, char* buffer, unsigned short size,
                                 unsigned short* read, unsigned short* total) {
    *read = *total = 0;
    for (const auto& share : server.shares) {
        ++*total;
        if (level != 50 || size < *total * sizeof(share_info_50)) continue;
        auto* entry = reinterpret_cast<share_info_50*>(buffer) + (*read)++;
        std::strcpy(entry->shi50_netname, share.name);
        entry->shi50_path = const_cast<char*>(share.path);
        entry->shi50_type = static_cast<unsigned char>(share.type);
        entry->shi50_flags = share.flags;
    }
    return server.status;
}

API_RET_TYPE WINAPI NetServerGetInfo(const char*, short level, char* buffer, unsigned short size,
                                     unsigned short* needed) {
    *needed = sizeof(server_info_1);
    if (level != 1 || !buffer || size < *needed) return NERR_BufTooSmall;
    std::strcpy(buffer, "PC");
    return server.nameStatus;
}
