#include <kitbag/frame/class_factory.h>
#include <kitbag/frame/module_record.h>

namespace kitbag {

STDMETHODIMP ClassFactory::QueryInterface(REFIID interfaceId, void** object) {
    if (!object) return E_POINTER;
    const bool answers = interfaceId == IID_IClassFactory || interfaceId == IID_IUnknown;
    *object = answers ? this : nullptr;
    if (!answers) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() {
    const LONG references = ::InterlockedIncrement(&references_);
    if (references == 2) moduleRecord.Lock();
    return static_cast<ULONG>(references);
}

STDMETHODIMP_(ULONG) ClassFactory::Release() {
    const LONG left = ::InterlockedDecrement(&references_);
    if (left == 1) moduleRecord.Unlock();
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) {
    return createInstance_(outer, interfaceId, object);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) {
    lock ? moduleRecord.Lock() : moduleRecord.Unlock();
    return S_OK;
}

}  // namespace kitbag
