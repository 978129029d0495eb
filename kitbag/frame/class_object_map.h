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

/// A class as the current version lists it: with what the registration script says of it.
struct ClassObjectEntry : ClassObjectEntryV1 {
    /// The name by which scripts create its objects, without a version.
    const wchar_t* progId;
    const wchar_t* description;
};

/// The library's own classes, and the identifier of the type library that describes them; the room
/// that implements the classes defines both.
extern ClassObjectEntry classObjectMap[];
extern const GUID* const typeLibraryId;

}  // namespace kitbag
