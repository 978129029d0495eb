// Owners of the system's resources: what is acquired is released on every path.
#pragma once

#include <windows.h>

#include <utility>

namespace kitbag {

/// Owns one resource of a kind. The policy names the handle type, the value that stands for "none"
/// and how the resource is released; kinds with different "none" values are different types.
template <class Policy>
class Owned {
 public:
    using Handle = typename Policy::Handle;

    Owned() = default;
    explicit Owned(Handle handle) : handle_(handle) {}
    Owned(Owned&& other) noexcept : handle_(other.Release()) {}
    Owned& operator=(Owned&& other) noexcept {
        Reset(other.Release());
        return *this;
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned() { Reset(); }

    Handle Get() const { return handle_; }
    explicit operator bool() const { return handle_ != Policy::None(); }

    /// Hands the resource to the caller, who releases it.
    Handle Release() { return std::exchange(handle_, Policy::None()); }

    /// Releases what is held and takes over another resource.
    void Reset(Handle handle = Policy::None()) {
        Handle old = std::exchange(handle_, handle);
        if (old != Policy::None()) Policy::Close(old);
    }

 private:
    Handle handle_ = Policy::None();
};

struct RegistryKeyPolicy {
    using Handle = HKEY;
    static Handle None() { return nullptr; }
    static void Close(Handle key) { ::RegCloseKey(key); }
};
using RegistryKey = Owned<RegistryKeyPolicy>;

/// Threads, events and other objects whose functions answer null on failure.
struct KernelHandlePolicy {
    using Handle = HANDLE;
    static Handle None() { return nullptr; }
    static void Close(HANDLE handle) { ::CloseHandle(handle); }
};
using KernelHandle = Owned<KernelHandlePolicy>;

/// Files and devices, for which CreateFile answers INVALID_HANDLE_VALUE on failure.
struct FileHandlePolicy {
    using Handle = HANDLE;
    static Handle None() { return INVALID_HANDLE_VALUE; }
    static void Close(HANDLE file) { ::CloseHandle(file); }
};
using FileHandle = Owned<FileHandlePolicy>;

}  // namespace kitbag
