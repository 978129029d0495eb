// What every operation of a COM class that can fail is wrapped in.
//
//     STDMETHODIMP Tuner::GetChannel(LONG* channel) {
//         return Operation([&] {
//             if (!channel) return E_POINTER;
//             ...
#pragma once

#include <kitbag/frame/guard.h>
#include <objbase.h>
#include <oleauto.h>

namespace kitbag {

/// Runs an operation's body, which answers an HRESULT. An error object that an earlier call left on
/// the thread must not explain a failure of this one, so it goes first; what the body leaves, or
/// whatever it calls, reaches the caller. Running out of memory is E_OUTOFMEMORY.
template <class Body>
HRESULT Operation(Body&& body) {
    ::SetErrorInfo(0, nullptr);
    return Guarded([&]() -> HRESULT { return body(); }, E_OUTOFMEMORY);
}

}  // namespace kitbag
