// The class object through which COM creates the objects of one class.
#pragma once

#include <kitbag/frame/class_object_map.h>
#include <unknwn.h>
#include <windows.h>

namespace kitbag {

/// Made for the class object map, which holds the first reference until the library is unloaded.
/// The library is kept from being unloaded by anybody else's reference, not by the map's own.
class ClassFactory final : public IClassFactory {
 public:
    explicit ClassFactory(CreateInstanceFunction createInstance)
        : createInstance_(createInstance) {}
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override;
    STDMETHODIMP LockServer(BOOL lock) override;

 private:
    ~ClassFactory() = default;

    CreateInstanceFunction createInstance_;
    LONG references_ = 1;
};

}  // namespace kitbag
