// Translation between paths of this computer and the UNC names that other computers use for the
// same files, by way of this computer's own disk shares.
//
//     char name[MAX_PATH];
//     KB_LocalToUNCA("C:\\Media\\Clip.mpg", name, MAX_PATH);  // "\\PC\Media\Clip.mpg"
//
// The local server is asked for its name and its shares on every call; the network is not touched,
// and whether a file exists does not matter. Shares for administration (hidden ones such as C$) and
// printers never take part; on Windows 9x only the first 20 shares are seen. Names are compared
// without regard to case and returned as the system and the caller spell them.
//
// The size is that of the buffer in characters (W: 16-bit ones); callers pass MAX_PATH or more. The
// result is the number of characters written, without the terminator. Every failure returns 0 and
// leaves the buffer untouched: a null or empty text, a buffer that cannot be written or is too
// small, a server that does not run, a path that no share covers. Why is told by the diagnostic
// build's trace only.
//
// Nothing is kept between calls but the network functions, which the first call loads; any thread
// may call at any time.
#pragma once

#include <kitbag/frame/export.h>
#include <windows.h>

/// The UNC name of a local path, by the share with the longest path that the local path begins
/// with; by a shorter one where the buffer is too small for that.
///
/// By a share of a whole drive the name may fill a small buffer to its last character. It is then
/// not terminated, and the result equals the size. Nothing is ever written past the size.
KITBAG_PLAIN DWORD KB_LocalToUNCA(const char* localPath, char* buffer, DWORD size);
KITBAG_PLAIN DWORD KB_LocalToUNCW(const wchar_t* localPath, wchar_t* buffer, DWORD size);

/// The local path of a UNC name that begins with this computer's name; always terminated.
KITBAG_PLAIN DWORD KB_UNCToLocalA(const char* uncName, char* buffer, DWORD size);
KITBAG_PLAIN DWORD KB_UNCToLocalW(const wchar_t* uncName, wchar_t* buffer, DWORD size);
