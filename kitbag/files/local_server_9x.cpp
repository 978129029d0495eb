// The file server of Windows 95, 98 and ME, through "svrapi.dll".
#include <kitbag/files/local_server.h>
#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/os_dependent_function.h>
#include <windows.h>
// The network's header needs the system's.
#include <svrapi.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <span>

namespace kitbag::windows_9x {

namespace {

TOSDepFn<decltype(&::NetShareEnum)> netShareEnum("svrapi.dll", "NetShareEnum");
TOSDepFn<decltype(&::NetServerGetInfo)> netServerGetInfo("svrapi.dll", "NetServerGetInfo");

constexpr USHORT kMostShares = 20;
static_assert(sizeof(share_info_50) == 42);

/// A text of a record's field, which is not terminated where it is full.
std::string TextIn(const char* field, std::size_t size) { return {field, ::strnlen(field, size)}; }

/// False at the first entry whose path cannot be read; those before it are added.
bool AddDiskShares(std::span<const share_info_50> entries, ShareList<char>& shares) {
    for (const share_info_50& entry : entries) {
        if (entry.shi50_type != STYPE_DISKTREE || (entry.shi50_flags & SHI50F_SYSTEM)) continue;
        // The system fills this pointer in. Its own probe survives one that leads nowhere, and,
        // unlike structured exceptions, every compiler has it.
        if (::IsBadStringPtrA(entry.shi50_path, MAX_PATH)) return false;
        shares.insert({TextIn(entry.shi50_netname, sizeof entry.shi50_netname),
                       TextIn(entry.shi50_path, MAX_PATH)});
    }
    return true;
}

}  // namespace

ShareList<char> Shares() {
    ShareList<char> shares;
    if (!netShareEnum.Load()) return shares;
    const std::unique_ptr<share_info_50[]> entries(new (std::nothrow) share_info_50[kMostShares]);
    if (!entries) {
        DebugTrace("GetShareListA98ME: Out of memory\n");
        return shares;
    }
    USHORT read = 0;
    USHORT total = 0;
    const auto status = netShareEnum.Function()(nullptr, 50, reinterpret_cast<char*>(entries.get()),
                                                kMostShares * sizeof(share_info_50), &read, &total);
    if (status != NERR_Success && status != ERROR_MORE_DATA)
        DebugTrace("GetShareListA98ME: A system error has occurred: %d\n",
                   static_cast<int>(status));
    else if (!AddDiskShares({entries.get(), std::min(read, kMostShares)}, shares))
        DebugTrace("GetShareListA98ME: An access violation has occurred\n");
    else if (read < total || status == ERROR_MORE_DATA)
        // There is no second call: the system offers none that goes on where this one ended.
        DebugTrace("GetShareListA98ME: Not all entries have been enumerated\n");
    return shares;
}

std::optional<std::string> ServerName() {
    if (!netServerGetInfo.Load()) return std::nullopt;
    USHORT size = 0;
    auto status = netServerGetInfo.Function()(nullptr, 1, nullptr, 0, &size);
    if (status == NERR_BufTooSmall) {
        const std::unique_ptr<char[]> info(new (std::nothrow) char[size]);
        if (!info) {
            DebugTrace("GetComputerName: Out of memory\n");
            return std::nullopt;
        }
        USHORT available = 0;
        status = netServerGetInfo.Function()(nullptr, 1, info.get(), size, &available);
        // The record begins with the name itself.
        if (status == NERR_Success) return TextIn(info.get(), size);
    }
    DebugTrace("GetComputerName: A system error has occurred: %d\n", static_cast<int>(status));
    return std::nullopt;
}

}  // namespace kitbag::windows_9x
