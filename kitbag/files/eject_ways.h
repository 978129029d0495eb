// The two Windows families' ways of ejecting a medium; the letter is an ASCII letter of either
// case.
#pragma once

namespace kitbag {

/// Locks, dismounts and ejects the volume. True where its handle closed, whatever came before.
bool EjectOnNt(char driveLetter);

/// Asks MS-DOS by way of the vwin32 device. True where the medium was ejected.
bool EjectOn9x(char driveLetter);

}  // namespace kitbag
