// What a shell link (.lnk) points at.
#pragma once

#include <kitbag/frame/export.h>

/// Reads a link's target, in its short (8.3) form, and its description; both are buffers of
/// MAX_PATH characters, and description may be null. A target that was moved is searched for,
/// without showing anything to the user.
///
/// True where every step succeeded; otherwise the buffers hold empty texts, or what was read so
/// far. A null name, one of 260 characters or more and a null target give false. The caller has
/// initialised COM on its thread.
///
/// A link that leads to no file (to a printer or the control panel, say) is read, too: true, with
/// an empty target.
///
/// Beware: the W form, too, writes 8-bit text in the ANSI code page, into the 16-bit buffers. Its
/// callers read them as char.
KITBAG_PLAIN bool KB_GetLinkInfoA(const char* linkFile, char* target, char* description);
KITBAG_PLAIN bool KB_GetLinkInfoW(const wchar_t* linkFile, wchar_t* target, wchar_t* description);
