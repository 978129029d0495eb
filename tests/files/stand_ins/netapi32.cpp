// Stands in for the network library of Windows NT.
#include <tests/files/stand_ins/stand_in_server.h>
#include <windows.h>
// Needs the system's header.
#include <lm.h>

#include <cstdlib>
#include <deque>

kitbag::test::StandInServer server;

namespace {

wchar_t* Kept(const char* text) {
    static std::deque<std::wstring> texts;
    return texts.emplace_back(kitbag::test::Wide(text)).data();
}

template <class Record>
void HandOut(const Record& record, BYTE** buffer) {
    *buffer = reinterpret_cast<BYTE*>(new Record(record));
    ++server.buffersHeld;
}

}  // namespace

/// One entry a call, so that every list takes several calls.
NET_API_STATUS WINAPI NetShareEnum(LMSTR computer, DWORD level, LPBYTE* buffer, DWORD preferred,
                                   LPDWORD read, LPDWORD total, LPDWORD resume) {
    if (computer || level != 502 || preferred != MAX_PREFERRED_LENGTH) std::abort();
    *total = static_cast<DWORD>(server.shares.size());
    *read = *resume < *total ? 1 : 0;
    if (*read == 0) return server.shareStatus;
    const auto& share = server.shares[(*resume)++];
    SHARE_INFO_502 entry{};
    entry.shi502_netname = Kept(share.name);
    entry.shi502_type = share.type;
    entry.shi502_path = Kept(share.path);
    HandOut(entry, buffer);
    return ERROR_MORE_DATA;
}

NET_API_STATUS WINAPI NetServerGetInfo(LMSTR computer, DWORD level, LPBYTE* buffer) {
    if (computer || level != 100) std::abort();
    if (server.nameStatus == NERR_Success) HandOut(SERVER_INFO_100{0, Kept(server.name)}, buffer);
    return server.nameStatus;
}

NET_API_STATUS WINAPI NetApiBufferFree(LPVOID buffer) {
    ::operator delete(buffer);
    --server.buffersHeld;
    return NERR_Success;
}
