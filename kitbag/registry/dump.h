// A readable listing of the settings, for diagnostics.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>

#include <string>

/// Appends to output what a section holds, as simple markup: a heading, then for each key, depth
/// first, its path and its values, every line ending in "<p>" and a line feed.
///
///     ------- HKEY_LOCAL_MACHINE -------
///     Software\Tarnwick\Vidmoor\Configuration\Audio<p>
///     Device='Speakers'<p>
///     Volume=70 (0x46)<p>
///
/// A value of more than 256 bytes ends the listing of its key's values, though not of its keys.
/// Keys below the section that are named exactly "Video Compressor Cache" are left out. A missing
/// section gives the heading alone. True, unless memory runs out.
KITBAG_PLAIN bool KB_DumpRegistryA(const char* section, TWinString<char>& output);
KITBAG_PLAIN bool KB_DumpRegistryW(const wchar_t* section, std::wstring& output);
