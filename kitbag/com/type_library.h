// The library's type library: for automation, and for its entry in the registry.
//
// It is a resource of the library. Where a build keeps it in a separate file, that file lies beside
// the library, under the same name with the extension ".tlb".
#pragma once

#include <oaidl.h>
#include <windows.h>

#include <string>

namespace kitbag {

/// The full path of the library's own file.
std::wstring LibraryFile();

/// Registers the type library for the file that holds it.
HRESULT RegisterOwnTypeLibrary();
/// S_OK, too, where it is not registered.
HRESULT UnregisterOwnTypeLibrary();

/// The description of the page factory's interface; one for the process, kept until the library is
/// unloaded. Works without registration.
HRESULT PageFactoryTypeInfo(ITypeInfo** info);

}  // namespace kitbag
