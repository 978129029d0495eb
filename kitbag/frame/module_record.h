// The state that the library keeps for COM, from load to unload.
#pragma once

#include <kitbag/frame/class_object_map.h>
#include <windows.h>

namespace kitbag {

/// Holds a critical section for a scope.
class SectionLock {
 public:
    explicit SectionLock(CRITICAL_SECTION& section) : section_(section) {
        ::EnterCriticalSection(&section_);
    }
    ~SectionLock() { ::LeaveCriticalSection(&section_); }
    SectionLock(const SectionLock&) = delete;
    SectionLock& operator=(const SectionLock&) = delete;

 private:
    CRITICAL_SECTION& section_;
};

using TerminationFunction = void(WINAPI*)(void* argument);

/// One per process. Initialise and Terminate run under the system's loader lock; everything else
/// may be called from any thread: the lock count is changed with interlocked operations, the list
/// of callbacks under the general critical section, the class objects under theirs, and whoever
/// registers or unregisters the classes of the map holds the map's.
struct ModuleRecord {
    static constexpr DWORD kFirstVersion = 1;
    static constexpr DWORD kCurrentVersion = 2;

    struct TerminationCallback {
        TerminationFunction function;
        void* argument;
        TerminationCallback* next;
    };

    DWORD size;
    DWORD version;
    HINSTANCE instance;
    HINSTANCE resourceInstance;
    HINSTANCE typeLibraryInstance;
    /// Live COM objects and server locks.
    volatile LONG lockCount;
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

    /// Asks the class object of one of the map's classes for an interface; it is created at the
    /// first request and kept until the library is unloaded.
    HRESULT GetClassObject(REFCLSID classId, REFIID interfaceId, void** object);

    /// Has the function called with the argument when the library is unloaded; the newest comes
    /// first. False when out of memory.
    bool AddTerminationCallback(TerminationFunction function, void* argument);

    /// The entry behind another one; the record's version says how large an entry is.
    ClassObjectEntryV1* Next(ClassObjectEntryV1* entry) const;

 private:
    ClassObjectEntryV1* Find(REFCLSID classId) const;
    void ReleaseClassObjects();
    void RunTerminationCallbacks();
    void DestroyHeaps();
};

/// The library's record.
extern ModuleRecord moduleRecord;

}  // namespace kitbag
