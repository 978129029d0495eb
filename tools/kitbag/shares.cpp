#include "shares.h"

#include <kitbag/frame/os_dependent_function.h>
// Needs the system's header before it.
#include <lm.h>

#include "system_error.h"

namespace kitbag::tool {

namespace {

/// What tells the path as well; it takes an administrator, for the library too.
constexpr DWORD kLevel = 502;

}  // namespace

DiskShares ListDiskShares() {
    TOSDepFn<decltype(&::NetShareEnum)> enumerate("netapi32.dll", "NetShareEnum");
    TOSDepFn<decltype(&::NetApiBufferFree)> release("netapi32.dll", "NetApiBufferFree");
    DiskShares list;
    if (!enumerate.Load() || !release.Load()) return {{}, ERROR_PROC_NOT_FOUND};
    DWORD resume = 0;
    list.status = ERROR_MORE_DATA;
    while (list.status == ERROR_MORE_DATA) {
        BYTE* buffer = nullptr;
        DWORD read = 0;
        DWORD total = 0;
        list.status = enumerate.Function()(nullptr, kLevel, &buffer, MAX_PREFERRED_LENGTH, &read,
                                           &total, &resume);
        if (!buffer) continue;
        const auto* entries = reinterpret_cast<const SHARE_INFO_502*>(buffer);
        for (DWORD i = 0; i < read; ++i)
            if (entries[i].shi502_type == STYPE_DISKTREE)
                list.shares.push_back({entries[i].shi502_netname, entries[i].shi502_path});
        release.Function()(buffer);
    }
    return list;
}

Failure WhyNoShareServes(const std::wstring& name) {
    const DiskShares list = ListDiskShares();
    if (list.status != ERROR_SUCCESS)
        return {ExitCode::NoAccess, name + L": the shares of this computer cannot be listed: " +
                                        ErrorText(list.status)};
    if (list.shares.empty())
        return {ExitCode::NotFound, name + L": this computer shares no folder"};
    std::wstring message = name + L": none of this computer's shares serves; they are";
    for (const DiskShare& share : list.shares)
        message += L' ' + share.name + L" (" + share.path + L')';
    return {ExitCode::NotFound, message};
}

}  // namespace kitbag::tool
