// What differs from one compiler to the next; nothing else asks which compiler it is.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <typeinfo>

#if !defined(_MSC_VER)
#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <new>
#endif

namespace kitbag {

/// The name of a class as it stands in stored settings: "class ", then the class's own name.
#if defined(_MSC_VER)
inline std::string StoredClassName(const std::type_info& type) { return type.name(); }
#else
inline std::string StoredClassName(const std::type_info& type) {
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, nullptr), &std::free);
    // A name in any other spelling would be stored and never found again.
    if (!name) throw std::bad_alloc();
    return std::string("class ") + name.get();
}
#endif

#if defined(_MSC_VER)
template <class T, class Operation>
bool DoAlike(const T&, const T&, Operation) {
    return false;
}
#else
/// The code that an object's class has for a virtual operation, of which a pointer to it holds the
/// offset in the table plus one.
template <class T, class Operation>
const unsigned char* CodeOf(const T& object, Operation operation) {
    std::intptr_t offset = 0;
    std::memcpy(&offset, &operation, sizeof offset);
    const unsigned char* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    const unsigned char* code = nullptr;
    std::memcpy(&code, table + offset - 1, sizeof code);
    return code;
}

/// Where code goes that is nothing but a jump through an import table: so a class of another module
/// has an operation that it did not override.
inline const unsigned char* BehindImport(const unsigned char* code) {
    constexpr unsigned char kJumpThrough[] = {0xFF, 0x25};
    if (std::memcmp(code, kJumpThrough, sizeof kJumpThrough) != 0) return code;
    const unsigned char* slot = nullptr;
    std::memcpy(&slot, code + sizeof kJumpThrough, sizeof slot);
    std::memcpy(&code, slot, sizeof code);
    return code;
}

/// True only where the two objects certainly have one and the same function for a virtual
/// operation.
template <class T, class Operation>
bool DoAlike(const T& a, const T& b, Operation operation) {
    return BehindImport(CodeOf(a, operation)) == BehindImport(CodeOf(b, operation));
}
#endif

}  // namespace kitbag

/// KITBAG_SHARED_SECTION(".Name") before a variable's definition: the variable lies in a section of
/// that name, of which all processes that load the library have one copy between them.
#if defined(_MSC_VER)
#define KITBAG_SHARED_SECTION(name) \
    __pragma(section(name, read, write, shared)) __declspec(allocate(name))
#else
#define KITBAG_SHARED_SECTION(name) __attribute__((section(name), shared))
#endif

/// KITBAG_TARGET("name") before a function: it may use the instructions of that name, which not
/// every processor has; its callers have asked. What such a function keeps on the stack may have to
/// be aligned by more than the 4 bytes that Windows promises, so that it aligns the stack itself.
#if defined(_MSC_VER)
#define KITBAG_TARGET(instructions)
#else
#define KITBAG_TARGET(instructions) __attribute__((target(instructions), force_align_arg_pointer))
#endif
