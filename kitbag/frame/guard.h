// The only place where an exception is stopped: the doors of the library.
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
