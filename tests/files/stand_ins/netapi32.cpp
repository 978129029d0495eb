// Stands in for the network library of Windows NT.
#include <tests/files/stand_ins/stand_in_server.h>
#include <windows.h>
// Needs the system's header.
#include <lm.h>

kitbag::test::StandInServer server;

namespace {

/// The texts go with the buffer, as the system's do.
template <class Info>
struct Answer {
    Info info;
    wchar_t name[80];
    wchar_t path[80];
};

template <class Info>
Answer<Info>& HandOut(BYTE** buffer) {
    ++server.buffersHeld;
    auto* answer = new Answer<Info>{};
    *buffer = reinterpret_cast<BYTE*>(answer);
    return *answer;
}

wchar_t* Widen(const char* text, wchar_t (&wide)[80]) {
    ::MultiByteToWideChar(CP_ACP, 0, text, -1, wide, 80);
    return wide;
}

}  // namespace

/// One entry a call, so that every list takes several calls.
NET_API_STATUS WINAPI NetShareEnum(LMSTR, DWORD level, BYTE** buffer, DWORD, DWORD* read, DWORD*,
                                   DWORD* resume) {
    *read = level == 502 && *resume < server.shares.size() ? 1 : 0;
    if (*read == 0) return server.status;
    const auto& share = server.shares[(*resume)++];
    auto& answer = HandOut<SHARE_INFO_502>(buffer);
    answer.info.shi502_netname = Widen(share.name, answer.name);
    answer.info.shi502_path = Widen(share.path, answer.path);
    answer.info.shi502_type = share.type;
    return ERROR_MORE_DATA;
}

NET_API_STATUS WINAPI NetServerGetInfo(LMSTR, DWORD level, BYTE** buffer) {
    if (server.nameStatus != NERR_Success || level != 100) return server.nameStatus;
    auto& answer = HandOut<SERVER_INFO_100>(buffer);
    answer.info.sv100_name = Widen("PC", answer.name);
    return NERR_Success;
}

NET_API_STATUS WINAPI NetApiBufferFree(void* buffer) {
    --server.buffersHeld;
    ::operator delete(buffer);
    return NERR_Success;
}
