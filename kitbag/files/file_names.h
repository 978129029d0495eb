// Whether a text is acceptable as a file, path or computer name.
//
//     char name[] = "what?.mpg";
//     KB_ValidateFilenameA(name, true, false);  // true; name is "what_.mpg"
//
// Nothing of the file system or the network is looked at. Any thread may call these functions.
#pragma once

#include <kitbag/frame/export.h>

/// True where the name is acceptable, after repair if that is asked for.
///
/// The last component is checked of a path, which a name is where isPath says so, where its second
/// character is a colon or where it begins with two backslashes. It follows the last backslash or,
/// in a name without any, the last slash; an empty one is acceptable. Otherwise the whole name is
/// checked, and separators are invalid characters.
///
/// A component may not begin or end with a blank or a dot, nor contain control characters or any of
/// ?"/\<>*|: . With repair each of these is overwritten by '_' in the caller's buffer, whose length
/// stays. The names of devices (CON, COM1 to COM9, LPT1 to LPT9, ...), in any case and with any
/// extension, are neither accepted nor repaired. A null or empty name is not acceptable.
KITBAG_PLAIN bool KB_ValidateFilenameA(char* name, bool repair, bool isPath);
KITBAG_PLAIN bool KB_ValidateFilenameW(wchar_t* name, bool repair, bool isPath);

/// The same rules under the name that callers with paths use.
KITBAG_PLAIN bool KB_ValidatePathA(char* name, bool repair, bool isPath);
KITBAG_PLAIN bool KB_ValidatePathW(wchar_t* name, bool repair, bool isPath);

/// True for 1 to 14 ASCII letters, digits or characters of !#$%&'()-.@^_{}~ . Two leading
/// backslashes are skipped, and a later backslash ends the name: "\\host\share" checks "host".
KITBAG_PLAIN bool KB_ValidateComputerNameA(const char* name);
KITBAG_PLAIN bool KB_ValidateComputerNameW(const wchar_t* name);
