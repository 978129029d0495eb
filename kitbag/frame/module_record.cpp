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

bool ModuleRecord::AddTerminationCallback(TerminationFunction function, DWORD_PTR argument) {
    auto* node = new (std::nothrow) TerminationCallback{function, argument, nullptr};
    if (!node) return false;
    ::EnterCriticalSection(&generalSection);
    node->next = std::exchange(terminationCallbacks, node);
    ::LeaveCriticalSection(&generalSection);
    return true;
}

ClassObjectEntryV1* ModuleRecord::Next(ClassObjectEntryV1* entry) const {
    if (version == kFirstVersion) return entry + 1;
    return static_cast<ClassObjectEntry*>(entry) + 1;
}

}  // namespace kitbag
