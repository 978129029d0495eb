// The directories where the application keeps its files.
//
//     TWinString<char> skins;
//     if (KB_GetSkinDirectoryA(skins)) Load(skins + "Default.skin");
//
// Each directory is looked for, in this order,
// 1. at the path remembered in the settings: section "Directories", value "Config Directory",
//    "Skin Directory", "Data Directory" or "Docs Directory". A path that is no directory (any more)
//    is forgotten;
// 2. in the folder of the process's executable and in every folder above it: a folder named Config,
//    Skin, Data or Docs there, or the target of a shell link there whose name holds that word twice
//    (ConfigConfig.lnk). What is found this way is not remembered.
//
// Every directory is handed out with exactly one backslash at its end. Where a getter answers false
// its output is not to be used; it may hold anything. The caller has initialised COM on its thread:
// links and the folder dialog need it.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>

#include <string>

/// Where configuration or documents cannot be found, the first call in a process (of each text
/// form) asks the user for a folder and remembers it; false where the user cancels. Later calls
/// never ask. Of first calls that race one asks.
KITBAG_PLAIN bool KB_GetConfigDirectoryA(TWinString<char>& directory);
KITBAG_PLAIN bool KB_GetConfigDirectoryW(std::wstring& directory);
KITBAG_PLAIN bool KB_GetDocDirectoryA(TWinString<char>& directory);
KITBAG_PLAIN bool KB_GetDocDirectoryW(std::wstring& directory);

/// The first call in a process (of each text form) creates what is missing: the remembered
/// directory or, without one, the folder Data beside Kitbag.dll, which it remembers. So does every
/// call that begins before the first one has ended; later calls never create.
KITBAG_PLAIN bool KB_GetDataDirectoryA(TWinString<char>& directory);
KITBAG_PLAIN bool KB_GetDataDirectoryW(std::wstring& directory);

/// Skins live in the configuration directory unless they have one of their own.
KITBAG_PLAIN bool KB_GetSkinDirectoryA(TWinString<char>& directory);
KITBAG_PLAIN bool KB_GetSkinDirectoryW(std::wstring& directory);

/// Remembers a directory, as it stands, for all processes; false where the settings cannot be
/// written.
KITBAG_PLAIN bool KB_SetConfigDirectoryA(const TWinString<char>& directory);
KITBAG_PLAIN bool KB_SetConfigDirectoryW(const std::wstring& directory);
KITBAG_PLAIN bool KB_SetSkinDirectoryA(const TWinString<char>& directory);
KITBAG_PLAIN bool KB_SetSkinDirectoryW(const std::wstring& directory);
KITBAG_PLAIN bool KB_SetDataDirectoryA(const TWinString<char>& directory);
KITBAG_PLAIN bool KB_SetDataDirectoryW(const std::wstring& directory);
KITBAG_PLAIN bool KB_SetDocDirectoryA(const TWinString<char>& directory);
KITBAG_PLAIN bool KB_SetDocDirectoryW(const std::wstring& directory);
