#include <kitbag/com/com_initialisation.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/runtime/com_error.h>
#include <oleauto.h>
#include <wrl/client.h>

using Microsoft::WRL::ComPtr;

bool KB_SetIErrorInfoW(const wchar_t* description) {
    {
        // Balanced at once: the error object belongs to the thread either way.
        const kitbag::ComInitialisation com("CKitbag::SetIErrorInfo");
    }

    ComPtr<ICreateErrorInfo> error;
    if (FAILED(::CreateErrorInfo(&error))) return false;
    error->SetDescription(const_cast<wchar_t*>(description));

    ComPtr<IErrorInfo> information;
    if (FAILED(error.As(&information))) return false;
    return ::SetErrorInfo(0, information.Get()) == S_OK;
}

bool KB_SetIErrorInfoA(const char* description) {
    return kitbag::Guarded([=] {
        if (!description) return KB_SetIErrorInfoW(nullptr);
        return KB_SetIErrorInfoW(kitbag::ToWide(description).c_str());
    });
}
