#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/runtime/com_error.h>
#include <objbase.h>
#include <oleauto.h>
#include <wrl/client.h>

namespace {

using Microsoft::WRL::ComPtr;

/// Callers should have initialised COM themselves. For those that did not, it stays initialised:
/// the error object has to outlive this call.
void EnsureComIsInitialised() {
    if (::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) == S_FALSE)
        ::CoUninitialize();
    else
        DebugTrace("CKitbag::SetIErrorInfo - Thread 0x%08X should call CoInitialise\n",
                   static_cast<unsigned>(::GetCurrentThreadId()));
}

}  // namespace

bool KB_SetIErrorInfoW(const wchar_t* description) {
    EnsureComIsInitialised();

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
