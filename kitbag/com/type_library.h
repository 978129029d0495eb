// The library's type library: for automation, and for its entry in the registry.
//
// It is a resource of the library. Where a build keeps it in a separate file, that file lies beside
// the library, under the same name with the extension ".tlb".
#pragma once

#include <oaidl.h>
#include <windows.h>

#include <string>

namespace kitbag {

/// The full path of the library's own file; empty where the system cannot tell.
std::wstring LibraryFile();

/// Registers the type library for the file that holds it.
HRESULT RegisterOwnTypeLibrary();
/// S_OK, too, where it is not registered.
HRESULT UnregisterOwnTypeLibrary();

/// The description of one interface. It is looked up in the type library at the first request,
/// works without registration, and is kept until the library is unloaded.
class InterfaceDescription {
 public:
    explicit constexpr InterfaceDescription(const IID& interfaceId) : interfaceId_(interfaceId) {}
    InterfaceDescription(const InterfaceDescription&) = delete;
    InterfaceDescription& operator=(const InterfaceDescription&) = delete;

    /// Any thread may ask.
    HRESULT Get(ITypeInfo** info);

 private:
    HRESULT Load();
    static void WINAPI Release(void* description);

    const IID& interfaceId_;
    /// Under the general critical section.
    ITypeInfo* info_ = nullptr;
};

/// One for every interface of the process.
template <class Interface>
constinit inline InterfaceDescription interfaceDescription(__uuidof(Interface));

}  // namespace kitbag
