// Stands in for the network library of Windows NT.
#include <tests/files/stand_ins/stand_in_shares.h>
#include <windows.h>
// Needs the system's header.
#include <lm.h>

std::vector<StandInShare> shares;

/// One entry a call, so that every list takes several calls.
DWORD WINAPI NetShareEnum(LMSTR, DWORD level, BYTE** buffer, DWORD, DWORD* read, DWORD*,
                          DWORD* next) {
    *read = level == 502 && *next < shares.size();
    if (*read == 0) return NERR_Success;
    const StandInShare& share = shares[(*next)++];
    static wchar_t name[80], path[80];
    ::MultiByteToWideChar(CP_ACP, 0, share.name.c_str(), -1, name, 80);
    ::MultiByteToWideChar(CP_ACP, 0, share.path.c_str(), -1, path, 80);
    *buffer = reinterpret_cast<BYTE*>(
        new SHARE_INFO_502{name, share.type, nullptr, 7, 0, 0, path, nullptr, 0, nullptr});
    return ERROR_MORE_DATA;
}

DWORD WINAPI NetServerGetInfo(LMSTR, DWORD, BYTE** buffer) {
    static wchar_t name[] = L"PC";
    *buffer = reinterpret_cast<BYTE*>(new SERVER_INFO_100{0, name});
    return NERR_Success;
}

DWORD WINAPI NetApiBufferFree(void* buffer) { return ::operator delete(buffer), NERR_Success; }
