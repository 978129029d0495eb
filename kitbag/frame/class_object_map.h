// The table of the COM classes that the library can create.
#pragma once

#include <unknwn.h>
#include <windows.h>

namespace kitbag {

using CreateInstanceFunction = HRESULT(WINAPI*)(IUnknown* outer, REFIID interfaceId, void** object);

/// A class as module records of version 1 list it. An entry without a class identifier ends a map.
struct ClassObjectEntryV1 {
    const CLSID* classId;
    CreateInstanceFunction createInstance;
    /// The class object once it was asked for; the module record owns the reference.
    IUnknown* classObject;
    /// Called with true when the library is loaded and with false when it is unloaded; may be null.
    void (*onModule)(bool starting);
};

/// A class as the current version lists it: it also registers itself.
struct ClassObjectEntry : ClassObjectEntryV1 {
    HRESULT (*updateRegistry)(bool install);
};

/// The library's own classes; the room that implements them defines it.
extern ClassObjectEntry classObjectMap[];

}  // namespace kitbag
