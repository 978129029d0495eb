// Stands in for the network library of Windows NT.
#include <tests/files/stand_ins/stand_in_server.h>
#include <windows.h>
// Needs the system's header.
#include <lm.h>

StandInServer server;

/// One entry a call, so that every list takes several calls.
NET_API_STATUS WINAPI NetShareEnum(LMSTR, DWORD level, BYTE** buffer, DWORD, DWORD* read, DWORD*,
                                   DWORD* resume) {
    *read = level == 502 && *resume < server.shares.size() ? 1 : 0;
    if (*read == 0) return server.status;
    const StandInShare& share = server.shares[(*resume)++];
    static wchar_t name[80], path[80];
    ::MultiByteToWideChar(CP_ACP, 0, share.name.c_str(), -1, name, 80);
    ::MultiByteToWideChar(CP_ACP, 0, share.path.c_str(), -1, path, 80);
    static SHARE_INFO_502 info;
    info = {name, share.type, nullptr, 7, 0, 0, path, nullptr, 0, nullptr};
    *buffer = reinterpret_cast<BYTE*>(&info);
    ++server.buffersHeld;
    return ERROR_MORE_DATA;
}

NET_API_STATUS WINAPI NetServerGetInfo(LMSTR, DWORD, BYTE** buffer) {
    static wchar_t name[] = L"PC";
    static SERVER_INFO_100 info{0, name};
    *buffer = reinterpret_cast<BYTE*>(&info);
    ++server.buffersHeld;
    return NERR_Success;
}

NET_API_STATUS WINAPI NetApiBufferFree(void*) { return --server.buffersHeld, NERR_Success; }
