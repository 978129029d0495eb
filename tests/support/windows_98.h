// A process that takes itself to run on Windows 98.
#pragma once

#include <tests/support/import_patch.h>

namespace kitbag::test {

/// While it lives, the library is told that the system is Windows 98. The library keeps the first
/// answer: only the test that is its process's first to ask sees any.
class Windows98 {
    ImportPatch version_{"GetVersionExA", +[](OSVERSIONINFOA* version) WINAPI -> BOOL {
                             version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
                             return version->dwOSVersionInfoSize == 148;
                         }};
};

}  // namespace kitbag::test
