// What the system calls when a process loads, uses and unloads the library.

#include <kitbag/frame/class_object_map.h>
#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/export.h>
#include <kitbag/frame/module_record.h>
#include <windows.h>

namespace {

using kitbag::moduleRecord;

void AttachProcess(HINSTANCE library) {
    DebugTrace("Kitbag attaching to process\n");
    moduleRecord.Initialise(library, kitbag::classObjectMap);
    // The compiler's runtime gives the library thread-local storage, and the system refuses this
    // for libraries that have some: the entry is called for threads all the same, and ignores it.
    ::DisableThreadLibraryCalls(library);
}

void DetachProcess() {
    DebugTrace("Kitbag detaching from process, %d outstanding references\n",
               static_cast<int>(moduleRecord.lockCount));
    moduleRecord.Terminate();
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) AttachProcess(library);
    if (reason == DLL_PROCESS_DETACH) DetachProcess();
    return TRUE;
}

// Asked by COM for the class object of a class that is registered for this library.
KITBAG_PLAIN HRESULT WINAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
    return moduleRecord.GetClassObject(classId, interfaceId, object);
}

// Asked by COM before it unloads the library: busy while objects or server locks are alive.
KITBAG_PLAIN HRESULT WINAPI DllCanUnloadNow() {
    return moduleRecord.lockCount == 0 ? S_OK : S_FALSE;
}
