// Probing of the memory that callers name.
//
// Programs hand over null, read-only or freed memory where they want no result, or by mistake, and
// have always been answered false; a write there would end them. A probe is no protection while
// other threads free or protect memory, and it touches every page: it is made where the interface
// promises an answer for unusable memory, and nowhere else.
#pragma once

#include <windows.h>

#include <cstddef>

namespace kitbag {

/// True where the caller may be handed a result of this many bytes.
inline bool IsWritable(void* output, std::size_t bytes) { return !::IsBadWritePtr(output, bytes); }
template <class T>
bool IsWritable(T* output) {
    return IsWritable(output, sizeof(T));
}

/// True where this many bytes can be taken from the caller.
inline bool IsReadable(const void* input, std::size_t bytes) {
    return !::IsBadReadPtr(input, bytes);
}

}  // namespace kitbag
