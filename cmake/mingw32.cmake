# Cross build for 32-bit Windows with the i686 mingw-w64 compilers (posix thread model).
#
# Use: cmake --preset mingw32                                                   in Kitbag's sources
#      cmake -D CMAKE_TOOLCHAIN_FILE=<package>/lib/cmake/Kitbag/mingw32.cmake ...    for a program
#
# Kitbag's own programs run under Wine through scripts/wine, in a private prefix below build/; those
# of others under the wine that is installed.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)

set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR wine)
if(EXISTS "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine")
    set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine")
endif()
