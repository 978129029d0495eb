// Registering the library as a COM server: its classes, by the registration script, and its type
// library.
//
// The script is a resource of the library and says what is written for one class. It is read for
// every class of the class object map, with these replaced:
//
//   %CLSID%, %PROGID%, %DESCRIPTION%   of the class, from its entry in the map
//   %TYPELIB%                          the type library's identifier
//   %MODULE%                           the full path of the library's file
#pragma once

#include <windows.h>

namespace kitbag {

/// Registers everything. Where that fails everything is taken back, also what an earlier
/// registration left: half a registration would make programs fail later and less plainly.
HRESULT RegisterServer();

/// Takes back what is there and answers the first failure; S_OK, too, where nothing was registered.
HRESULT UnregisterServer();

}  // namespace kitbag
