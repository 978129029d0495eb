#include <kitbag/frame/class_factory.h>
#include <kitbag/frame/module_record.h>

#include <memory>
#include <new>
#include <utility>

namespace kitbag {

ModuleRecord moduleRecord;

void ModuleRecord::Initialise(HINSTANCE library, ClassObjectEntry* map) {
    *this = {};
    size = sizeof *this;
    version = kCurrentVersion;
    classObjects = map;
    instance = resourceInstance = typeLibraryInstance = library;
    ::InitializeCriticalSection(&generalSection);
    ::InitializeCriticalSection(&classCreationSection);
    ::InitializeCriticalSection(&objectMapSection);

    for (auto* entry = classObjects; entry->classId; entry = Next(entry))
        if (entry->onModule) entry->onModule(true);
}

void ModuleRecord::Terminate() {
    ReleaseClassObjects();
    ::DeleteCriticalSection(&generalSection);
    ::DeleteCriticalSection(&classCreationSection);
    ::DeleteCriticalSection(&objectMapSection);
    RunTerminationCallbacks();
    DestroyHeaps();
}

void ModuleRecord::ReleaseClassObjects() {
    for (auto* entry = classObjects; entry->classId; entry = Next(entry)) {
        if (IUnknown* held = std::exchange(entry->classObject, nullptr)) held->Release();
        if (entry->onModule) entry->onModule(false);
    }
}

void ModuleRecord::RunTerminationCallbacks() {
    while (terminationCallbacks) {
        const std::unique_ptr<TerminationCallback> node(terminationCallbacks);
        terminationCallbacks = node->next;
        node->function(node->argument);
    }
}

void ModuleRecord::DestroyHeaps() {
    if (!mainHeap) return;
    for (DWORD i = 0; i < privateHeapCount; ++i) ::HeapDestroy(privateHeaps[i]);
    ::HeapDestroy(std::exchange(mainHeap, nullptr));
}

bool ModuleRecord::AddTerminationCallback(TerminationFunction function, void* argument) {
    auto* node = new (std::nothrow) TerminationCallback{function, argument, nullptr};
    if (!node) return false;
    const SectionLock lock(generalSection);
    node->next = std::exchange(terminationCallbacks, node);
    return true;
}

HRESULT ModuleRecord::GetClassObject(REFCLSID classId, REFIID interfaceId, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    ClassObjectEntryV1* entry = Find(classId);
    if (!entry) return CLASS_E_CLASSNOTAVAILABLE;

    const SectionLock lock(classCreationSection);
    if (!entry->classObject)
        entry->classObject = new (std::nothrow) ClassFactory(entry->createInstance);
    if (!entry->classObject) return E_OUTOFMEMORY;
    return entry->classObject->QueryInterface(interfaceId, object);
}

ClassObjectEntryV1* ModuleRecord::Find(REFCLSID classId) const {
    auto* entry = classObjects;
    while (entry->classId && *entry->classId != classId) entry = Next(entry);
    return entry->classId ? entry : nullptr;
}

ClassObjectEntryV1* ModuleRecord::Next(ClassObjectEntryV1* entry) const {
    // The library's own record is of the current version; the step follows the record all the same,
    // because a record and its map are read by their version wherever they come from.
    if (version == kFirstVersion) return entry + 1;
    return static_cast<ClassObjectEntry*>(entry) + 1;
}

}  // namespace kitbag
