// Whether modules are new since they were last seen, and whether the application runs for the first
// time.
//
// A module's link time (the time stamp in its file's header, in seconds since 1 January 1970, UTC)
// is kept under a value name of the caller's choice in "Software\Tarnwick\Vidmoor\Version" below
// HKEY_LOCAL_MACHINE, beside the settings root. Texts are 8-bit ones in the ANSI code page. Nothing
// is cached or locked: any thread may call any of these at any time.
#pragma once

#include <kitbag/frame/export.h>
#include <windows.h>

/// Tells the link time stored under the value name, 0 where there is none; true where there is one.
///
/// With update, currentTime receives the module file's present link time, which is then stored; 0
/// where it cannot be read, and nothing is stored, though the key may have been created. Without
/// update, currentTime is left untouched and the registry too. False as well, with everything left
/// untouched, where an output cannot be written.
KITBAG_PLAIN bool KB_GetStoredLinkTime(const char* file, const char* valueName, DWORD* storedTime,
                                       DWORD* currentTime, bool update);

/// True where the module was linked later than when it was last seen, or was never seen; the
/// present link time is stored for the next question.
KITBAG_PLAIN bool KB_IsNewModule(const char* file, const char* valueName);

/// True where the module that was last seen was linked before the given time, or none was seen; the
/// present link time is stored for the next question.
KITBAG_PLAIN bool KB_IsNewerModule(const char* file, const char* valueName, DWORD time);

/// Forgets the module, so that it is new to the next question; true where it had been seen. The
/// file does not matter.
KITBAG_PLAIN bool KB_ForceNewModule(const char* file, const char* valueName);

/// True while the application's first run is not completed: as long as the key
/// "Software\Tarnwick\Vidmoor\RunOnce" below HKEY_LOCAL_MACHINE can be opened with full access.
/// Whoever completes the first run removes the key.
KITBAG_PLAIN bool KB_IsFirstRun();
