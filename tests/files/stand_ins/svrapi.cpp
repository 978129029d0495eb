// Stands in for the network library of Windows 95, 98 and ME.
#define _SVRAPI_
#include <tests/files/stand_ins/stand_in_server.h>
#include <windows.h>
// Needs the system's header.
#include <svrapi.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

kitbag::test::StandInServer server;

API_RET_TYPE WINAPI NetShareEnum(const char* computer, short level, char* buffer,
                                 unsigned short size, unsigned short* read, unsigned short* total) {
    if (computer || level != 50 || size != 840) std::abort();
    *total = static_cast<unsigned short>(server.shares.size());
    *read = std::min<unsigned short>(*total, 20);
    auto* entry = reinterpret_cast<share_info_50*>(buffer);
    for (int i = 0; i < *read; ++i, ++entry) {
        const auto& share = server.shares[static_cast<std::size_t>(i)];
        std::strncpy(entry->shi50_netname, share.name, sizeof entry->shi50_netname);
        entry->shi50_path = const_cast<char*>(share.path);
        entry->shi50_type = static_cast<unsigned char>(share.type);
        entry->shi50_flags = share.flags;
    }
    return server.shareStatus;
}

API_RET_TYPE WINAPI NetServerGetInfo(const char* computer, short level, char* buffer,
                                     unsigned short size, unsigned short* available) {
    if (computer || level != 1) std::abort();
    *available = sizeof(server_info_1);
    if (size < *available) return buffer ? ERROR_INVALID_PARAMETER : NERR_BufTooSmall;
    std::strcpy(buffer, server.name);
    return server.nameStatus;
}
