// Reference counting for the viewer's own COM objects.
#pragma once

#include <unknwn.h>
#include <windows.h>

/// An object that answers one interface; it starts with its creator's reference.
template <class Interface>
class ComObject : public Interface {
 public:
    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (!object) return E_POINTER;
        const bool answers = id == __uuidof(Interface) || id == IID_IUnknown;
        *object = answers ? this : nullptr;
        if (!answers) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override {
        return static_cast<ULONG>(::InterlockedIncrement(&references_));
    }
    STDMETHODIMP_(ULONG) Release() override {
        const LONG left = ::InterlockedDecrement(&references_);
        if (left == 0) delete this;
        return static_cast<ULONG>(left);
    }

 protected:
    virtual ~ComObject() = default;

 private:
    LONG references_ = 1;
};
