// What the library's COM objects have in common: reference counting, interface lookup, creation.
//
//     class PageOwner final : public ComObject<IKivPageOwner> {};
//     HRESULT result = CreateObject<PageOwner>(nullptr, IID_PPV_ARGS(&owner));
#pragma once

#include <kitbag/frame/module_record.h>
#include <unknwn.h>
#include <windows.h>

#include <memory>
#include <new>
#include <type_traits>

namespace kitbag {

/// Implements IUnknown for an object that answers these interfaces, and IDispatch where one of them
/// derives from it. The object starts without a reference and keeps the library from being unloaded
/// while it lives.
template <class Primary, class... Others>
class ComObject : public Primary, public Others... {
 public:
    ComObject() { moduleRecord.Lock(); }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        (Answer<Primary>(interfaceId, object) || ... || Answer<Others>(interfaceId, object));
        if (!*object && interfaceId == IID_IUnknown) *object = static_cast<Primary*>(this);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() override {
        return static_cast<ULONG>(::InterlockedIncrement(&references_));
    }

    STDMETHODIMP_(ULONG) Release() override {
        const LONG left = ::InterlockedDecrement(&references_);
        if (left == 0) {
            // What the object lets go at its end may take and release references to it once more.
            references_ = kEnding;
            delete this;
        }
        return static_cast<ULONG>(left);
    }

 protected:
    virtual ~ComObject() { moduleRecord.Unlock(); }

 private:
    static constexpr LONG kEnding = 0x40000000;

    template <class Interface>
    bool Answer(REFIID interfaceId, void** object) {
        constexpr bool automation = std::is_base_of_v<IDispatch, Interface>;
        if (interfaceId == __uuidof(Interface) || (automation && interfaceId == IID_IDispatch))
            *object = static_cast<Interface*>(this);
        return *object != nullptr;
    }

    LONG references_ = 0;
};

/// Creates an object for a caller that wants it by an interface. The object cannot be part of an
/// outer one.
template <class Object>
HRESULT WINAPI CreateObject(IUnknown* outer, REFIID interfaceId, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    std::unique_ptr<Object> created(new (std::nothrow) Object);
    if (!created) return E_OUTOFMEMORY;
    const HRESULT result = created->QueryInterface(interfaceId, object);
    // From its first reference on the object ends itself.
    if (SUCCEEDED(result)) static_cast<void>(created.release());
    return result;
}

}  // namespace kitbag
