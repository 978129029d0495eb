// Ejecting a medium.
#pragma once

#include <kitbag/frame/export.h>

/// Ejects the medium of a removable or CD drive; the letter may be of either case, anything but an
/// ASCII letter gives false.
///
/// On Windows NT the answer is whether the drive could be opened and its handle closed again: true
/// also where the medium is in use and stays in, which callers do not take for an error. A drive of
/// another kind is not even opened. A volume in use is waited for, up to about ten seconds.
///
/// On Windows 9x the answer is whether the medium was ejected; locks that other programs hold on it
/// are released.
KITBAG_PLAIN bool KB_EjectVolume(char driveLetter);
