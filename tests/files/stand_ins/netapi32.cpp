// Stands in for the network library of Windows NT.
#include <tests/files/stand_ins/stand_in_server.h>
#include <windows.h>
// Needs the system's header.
#include <lm.h>

StandInServer server;

namespace {

template <class Record>
BYTE* Block(const Record& record) {
    ++server.blocks;
    return reinterpret_cast<BYTE*>(new Record(record));
}

}  // namespace

/// One entry a call, so that every list takes several calls.
DWORD WINAPI NetShareEnum(LMSTR computer, DWORD level, BYTE** buffer, DWORD size, DWORD* read,
                          DWORD* total, DWORD* next) {
    if (computer || level != 502 || size != MAX_PREFERRED_LENGTH) return ERROR_INVALID_PARAMETER;
    *total = static_cast<DWORD>(server.shares.size());
    *read = *next < *total;
    if (*read == 0) return server.sharesStatus;
    StandInShare& share = server.shares[(*next)++];
    *buffer = Block(SHARE_INFO_502{share.name.data(), share.type, nullptr, 7, 0, 0,
                                   share.path.data(), nullptr, 0, nullptr});
    return ERROR_MORE_DATA;
}

DWORD WINAPI NetServerGetInfo(LMSTR computer, DWORD level, BYTE** buffer) {
    if (computer || level != 100) return ERROR_INVALID_PARAMETER;
    static wchar_t name[] = L"PC";
    if (server.nameStatus == NERR_Success) *buffer = Block(SERVER_INFO_100{0, name});
    return server.nameStatus;
}

DWORD WINAPI NetApiBufferFree(void* block) {
    --server.blocks;
    ::operator delete(block);
    return NERR_Success;
}
