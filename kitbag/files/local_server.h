// What this computer's own file server says of itself, asked anew on every call.
//
// The network functions are loaded at run time, once per process. They are not synchronised:
// callers serialise their first use.
#pragma once

#include <kitbag/files/share_list.h>

#include <optional>
#include <string>

namespace kitbag {

/// The disk shares, in either text form on either family of systems; empty where there are none or
/// the server cannot be asked. The other form of the text passes through the ANSI code page.
template <class Ch>
ShareList<Ch> LocalShares();

/// The computer's name in the network; nothing where the server cannot be asked.
template <class Ch>
std::optional<std::basic_string<Ch>> LocalServerName();

// The two families, each in the text form that its server speaks.
namespace windows_nt {
ShareList<wchar_t> Shares();
std::optional<std::wstring> ServerName();
}  // namespace windows_nt

namespace windows_9x {
ShareList<char> Shares();
std::optional<std::string> ServerName();
}  // namespace windows_9x

}  // namespace kitbag
