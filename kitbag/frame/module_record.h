// The state that the library keeps for COM, from load to unload.
#pragma once

#include <kitbag/frame/class_object_map.h>
#include <windows.h>

namespace kitbag {

using TerminationFunction = void(WINAPI*)(DWORD_PTR argument);

/// One per process. Initialise and Terminate run under the system's loader lock; the lock count may
/// be changed from any thread, the list of callbacks under the general critical section.
struct ModuleRecord {
    static constexpr DWORD kFirstVersion = 1;
    static constexpr DWORD kCurrentVersion = 2;

    struct TerminationCallback {
        TerminationFunction function;
        DWORD_PTR argument;
        TerminationCallback* next;
    };

    DWORD size;
    DWORD version;
    HINSTANCE instance;
    HINSTANCE resourceInstance;
    HINSTANCE typeLibraryInstance;
    /// Live COM objects and server locks.
    LONG lockCount;
    ClassObjectEntryV1* classObjects;
    CRITICAL_SECTION generalSection;
    CRITICAL_SECTION classCreationSection;
    CRITICAL_SECTION objectMapSection;
    TerminationCallback* terminationCallbacks;
    HANDLE mainHeap;
    HANDLE* privateHeaps;
    DWORD privateHeapCount;

    /// Fills the record and tells every class that the library starts.
    void Initialise(HINSTANCE library, ClassObjectEntry* map);
    /// Releases the class objects, tells every class that the library ends, runs the termination
    /// callbacks in list order and destroys the private heaps.
    void Terminate();

    LONG Lock() { return ::InterlockedIncrement(&lockCount); }
    LONG Unlock() { return ::InterlockedDecrement(&lockCount); }

    /// Has the function called with the argument when the library is unloaded; the newest comes
    /// first. False when out of memory.
    bool AddTerminationCallback(TerminationFunction function, DWORD_PTR argument);

    /// The entry behind another one; the record's version says how large an entry is.
    ClassObjectEntryV1* Next(ClassObjectEntryV1* entry) const;

 private:
    void ReleaseClassObjects();
    void RunTerminationCallbacks();
    void DestroyHeaps();
};

/// The library's record.
extern ModuleRecord moduleRecord;

}  // namespace kitbag
