// IDispatch for an object whose dual interface the type library describes.
#pragma once

#include <kitbag/frame/com_object.h>
#include <kitbag/frame/guard.h>
#include <oaidl.h>
#include <oleauto.h>
#include <wrl/client.h>

namespace kitbag {

/// How a dual interface finds its description.
using TypeInfoSource = HRESULT (*)(ITypeInfo** info);

/// A COM object that scripts can use: calls by name go through the description of its dual
/// interface, which comes first, to the interface's own operations.
template <TypeInfoSource typeInfo, class Dual, class... Others>
class DispatchObject : public ComObject<Dual, Others...> {
 public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if (!info) return E_POINTER;
        *info = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        return Guarded([=] { return typeInfo(info); }, E_OUTOFMEMORY);
    }

    STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                               DISPID* identifiers) override {
        if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        if (!names || !identifiers) return E_POINTER;
        Microsoft::WRL::ComPtr<ITypeInfo> info;
        const HRESULT result = GetTypeInfo(0, locale, &info);
        return FAILED(result) ? result : info->GetIDsOfNames(names, count, identifiers);
    }

    STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                        DISPPARAMS* arguments, VARIANT* returned, EXCEPINFO* exception,
                        UINT* wrongArgument) override {
        if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        if (!arguments) return E_POINTER;
        Microsoft::WRL::ComPtr<ITypeInfo> info;
        const HRESULT result = GetTypeInfo(0, locale, &info);
        if (FAILED(result)) return result;
        // An error object that an earlier call left must not explain a failure of this one.
        ::SetErrorInfo(0, nullptr);
        return info->Invoke(static_cast<Dual*>(this), member, flags, arguments, returned, exception,
                            wrongArgument);
    }
};

}  // namespace kitbag
