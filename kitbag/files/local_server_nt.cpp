// The file server of Windows NT, through "netapi32.dll".
#include <kitbag/files/local_server.h>
#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/os_dependent_function.h>
#include <windows.h>
// The network's headers need the system's.
#include <lm.h>

#include <span>

namespace kitbag::windows_nt {

namespace {

TOSDepFn<decltype(&::NetShareEnum)> netShareEnum("netapi32.dll", "NetShareEnum");
TOSDepFn<decltype(&::NetServerGetInfo)> netServerGetInfo("netapi32.dll", "NetServerGetInfo");
TOSDepFn<decltype(&::NetApiBufferFree)> netApiBufferFree("netapi32.dll", "NetApiBufferFree");

/// What a network function allocates for its caller.
class NetBuffer {
 public:
    NetBuffer() = default;
    NetBuffer(const NetBuffer&) = delete;
    NetBuffer& operator=(const NetBuffer&) = delete;
    ~NetBuffer() {
        if (data_) netApiBufferFree.Function()(data_);
    }

    BYTE** Receive() { return &data_; }
    template <class Record>
    const Record* As() const {
        return reinterpret_cast<const Record*>(data_);
    }

 private:
    BYTE* data_ = nullptr;
};

void AddDiskShares(std::span<const SHARE_INFO_502> entries, ShareList<wchar_t>& shares) {
    for (const SHARE_INFO_502& entry : entries) {
        // Compared as a whole: shares for administration carry a bit more.
        if (entry.shi502_type == STYPE_DISKTREE)
            shares.insert({entry.shi502_netname, entry.shi502_path});
    }
}

}  // namespace

ShareList<wchar_t> Shares() {
    ShareList<wchar_t> shares;
    if (!netApiBufferFree.Load() || !netShareEnum.Load() || !netServerGetInfo.Load()) {
        DebugTrace("GetShareListWNT: Cannot load functions from netapi32.dll\n");
        return shares;
    }
    DWORD resume = 0;
    NET_API_STATUS status = ERROR_MORE_DATA;
    while (status == ERROR_MORE_DATA) {
        NetBuffer buffer;
        DWORD read = 0;
        DWORD total = 0;
        status = netShareEnum.Function()(nullptr, 502, buffer.Receive(), MAX_PREFERRED_LENGTH,
                                         &read, &total, &resume);
        if (status == NERR_Success || status == ERROR_MORE_DATA)
            AddDiskShares({buffer.As<SHARE_INFO_502>(), read}, shares);
    }
    return shares;
}

std::optional<std::wstring> ServerName() {
    if (!netApiBufferFree.Load() || !netServerGetInfo.Load()) return std::nullopt;
    NetBuffer buffer;
    if (netServerGetInfo.Function()(nullptr, 100, buffer.Receive()) != NERR_Success)
        return std::nullopt;
    return buffer.As<SERVER_INFO_100>()->sv100_name;
}

}  // namespace kitbag::windows_nt
