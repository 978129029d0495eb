// The doors of the library, where exceptions are stopped: no plain function and no COM method lets
// one pass. The exported classes do; they share their program's runtime.
//
// Elsewhere an exception is caught only where it means something else than the end of the call: by
// WriteTrace (debug_trace.cpp), since a diagnostic must not end what it tells about, and where a
// mistake in the registration script becomes an HRESULT (com/server_registration.cpp).
#pragma once

#include <utility>

namespace kitbag {

/// Runs the body of an exported function; an exception (out of memory, in practice) becomes the
/// function's failure answer.
template <class Body, class Result = decltype(std::declval<Body&>()())>
Result Guarded(Body&& body, Result failure = {}) noexcept {
    try {
        return body();
    } catch (...) {
        return failure;
    }
}

}  // namespace kitbag
