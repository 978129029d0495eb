// TOSDepFn: a function of a system library that may be missing, loaded at run time.
//
//     TOSDepFn<DWORD(WINAPI*)(void*)> release("netapi32.dll", "NetApiBufferFree");
//     if (release.Load()) release.Function()(buffer);
#pragma once

#include <windows.h>

#include <atomic>

/// What every function loaded at run time has in common.
class TOSDepFnBase {
 public:
    /// Frees the loaded library.
    virtual ~TOSDepFnBase() = default;
    /// Makes sure that the function is loaded; true when it can be called.
    virtual bool Load() = 0;
};

/// Loads the library and the function on the first Load, once: a failed load is never retried.
///
/// F is the function's pointer type. The two names are kept as given, not copied: literals. Any
/// thread may call Load at any time. First calls that race each load the library; a function that
/// is there is found by all of them, and the library is kept once.
template <class F>
class TOSDepFn : public TOSDepFnBase {
 public:
    TOSDepFn(const char* library, const char* function) : library_(library), function_(function) {}
    TOSDepFn(const TOSDepFn&) = delete;
    TOSDepFn& operator=(const TOSDepFn&) = delete;
    ~TOSDepFn() override {
        if (HMODULE module = module_) ::FreeLibrary(module);
    }

    bool Load() override {
        // In this order: whoever sees that a load was tried sees also what it found.
        if (!tried_ && !pointer_) TryToLoad();
        return pointer_ != nullptr;
    }

    /// The function; to be called only after Load answered true.
    F Function() const { return pointer_; }

 private:
    void TryToLoad() {
        // Without this a missing library raises a system dialog. The previous mode is not put back:
        // callers count on the dialog staying off for the life of the process.
        ::SetErrorMode(SEM_NOOPENFILEERRORBOX);
        // Known to this thread alone until the function is found: another one may free its own.
        HMODULE module = ::LoadLibraryA(library_);
        if (module) Keep(module, Find(module));
        tried_ = TRUE;
    }

    F Find(HMODULE module) const {
        // By way of void*: function pointer types are not cast into one another directly.
        return reinterpret_cast<F>(reinterpret_cast<void*>(::GetProcAddress(module, function_)));
    }

    void Keep(HMODULE module, F found) {
        if (found) {
            pointer_ = found;
            module = module_.exchange(module);
        }
        // A library without the function, or what a racing first call has kept.
        if (module) ::FreeLibrary(module);
    }

    std::atomic<BOOL> tried_ = FALSE;
    std::atomic<HMODULE> module_ = nullptr;
    const char* library_;
    const char* function_;
    std::atomic<F> pointer_ = nullptr;

    // As large as the plain fields that programs were built with.
    static_assert(sizeof tried_ == sizeof(BOOL) && alignof(std::atomic<BOOL>) == alignof(BOOL));
    static_assert(sizeof module_ == sizeof(HMODULE) &&
                  alignof(std::atomic<HMODULE>) == alignof(HMODULE));
    static_assert(sizeof pointer_ == sizeof(F) && alignof(std::atomic<F>) == alignof(F));
};
