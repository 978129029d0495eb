// IDispatch for an object whose dual interface the type library describes.
//
//     class Tuner final : public DispatchObject<ITuner, ISupportErrorInfo> {
#pragma once

#include <kitbag/com/operation.h>
#include <kitbag/com/type_library.h>
#include <kitbag/frame/com_object.h>
#include <oaidl.h>
#include <wrl/client.h>

namespace kitbag {

/// A COM object that scripts can use: calls by name go through the description of its dual
/// interface, which comes first, to the interface's own operations.
template <class Dual, class... Others>
class DispatchObject : public ComObject<Dual, Others...> {
 public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        return Operation([=] {
            if (!count) return E_POINTER;
            *count = 1;
            return S_OK;
        });
    }

    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        return Operation([=] {
            if (!info) return E_POINTER;
            *info = nullptr;
            if (index != 0) return DISP_E_BADINDEX;
            return interfaceDescription<Dual>.Get(info);
        });
    }

    STDMETHODIMP GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                               DISPID* identifiers) override {
        return Operation([&] {
            if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
            if (!names || !identifiers) return E_POINTER;
            Microsoft::WRL::ComPtr<ITypeInfo> info;
            const HRESULT result = GetTypeInfo(0, locale, &info);
            return FAILED(result) ? result : info->GetIDsOfNames(names, count, identifiers);
        });
    }

    STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                        DISPPARAMS* arguments, VARIANT* returned, EXCEPINFO* exception,
                        UINT* wrongArgument) override {
        return Operation([&] {
            if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
            if (!arguments) return E_POINTER;
            Microsoft::WRL::ComPtr<ITypeInfo> info;
            const HRESULT result = GetTypeInfo(0, locale, &info);
            if (FAILED(result)) return result;
            return info->Invoke(static_cast<Dual*>(this), member, flags, arguments, returned,
                                exception, wrongArgument);
        });
    }
};

}  // namespace kitbag
