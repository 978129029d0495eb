// CRC-32 checksums, those of IEEE 802.3, zlib and PNG: "123456789" gives 0xCBF43926, nothing gives
// 0.
#pragma once

#include <kitbag/frame/export.h>
#include <objidl.h>
#include <windows.h>

/// Of a block of memory. A length of 0 or less is an empty block.
KITBAG_PLAIN DWORD KB_MemCRC(const void* data, long length);

/// Of a file, which no one else may have open meanwhile. 0 where it cannot be opened, as for an
/// empty file, and at once for what is no file (a device, a pipe); a file that can be read only in
/// part gives the checksum of that part.
KITBAG_PLAIN DWORD KB_FileCRC(const char* path);

/// Of a stream from its current position to its end; the position is put back. 0 for a null stream.
KITBAG_PLAIN DWORD KB_IStreamCRC(IStream* stream);
