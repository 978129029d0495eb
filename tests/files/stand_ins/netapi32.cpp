// Stands in for the network library of Windows NT.
#include <tests/files/stand_ins/stand_in_server.h>
#include <windows.h>
// Needs the system's header.
#include <lm.h>

StandInServer server;

namespace {

/// The texts go with the buffer, as the system's do.
struct Answer {
    union {
        SHARE_INFO_502 share;
        SERVER_INFO_100 server;
    };
    wchar_t name[80];
    wchar_t path[80];
};

Answer& HandOut(BYTE** buffer, const char* name, const char* path) {
    ++server.buffersHeld;
    auto* answer = new Answer{};
    *buffer = reinterpret_cast<BYTE*>(answer);
    ::MultiByteToWideChar(CP_ACP, 0, name, -1, answer->name, 80);
    ::MultiByteToWideChar(CP_ACP, 0, path, -1, answer->path, 80);
    return *answer;
}

}  // namespace

/// One entry a call, so that every list takes several calls.
NET_API_STATUS WINAPI NetShareEnum(LMSTR, DWORD level, BYTE** buffer, DWORD, DWORD* read, DWORD*,
                                   DWORD* resume) {
    *read = level == 502 && *resume < server.shares.size() ? 1 : 0;
    if (*read == 0) return server.status;
    const StandInShare& share = server.shares[(*resume)++];
    Answer& answer = HandOut(buffer, share.name, share.path);
    answer.share.shi502_netname = answer.name;
    answer.share.shi502_path = answer.path;
    answer.share.shi502_type = share.type;
    return ERROR_MORE_DATA;
}

NET_API_STATUS WINAPI NetServerGetInfo(LMSTR, DWORD, BYTE** buffer) {
    Answer& answer = HandOut(buffer, "PC", "");
    answer.server.sv100_name = answer.name;
    return NERR_Success;
}

NET_API_STATUS WINAPI NetApiBufferFree(void* buffer) {
    --server.buffersHeld;
    delete static_cast<Answer*>(buffer);
    return NERR_Success;
}
