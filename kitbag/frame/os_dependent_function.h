// TOSDepFn: a function of a system library that may be missing, loaded at run time.
//
//     TOSDepFn<DWORD(WINAPI*)(void*)> release("netapi32.dll", "NetApiBufferFree");
//     if (release.Load()) release.Function()(buffer);
#pragma once

#include <windows.h>

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
/// F is the function's pointer type. The two names are kept as given, not copied: literals. Not
/// synchronised: callers that share one object serialise its first use.
template <class F>
class TOSDepFn : public TOSDepFnBase {
 public:
    TOSDepFn(const char* library, const char* function) : library_(library), function_(function) {}
    TOSDepFn(const TOSDepFn&) = delete;
    TOSDepFn& operator=(const TOSDepFn&) = delete;
    ~TOSDepFn() override {
        if (module_) ::FreeLibrary(module_);
    }

    bool Load() override {
        if (!pointer_ && !tried_) {
            // Without this a missing library raises a system dialog. The previous mode is not put
            // back: callers count on the dialog staying off for the life of the process.
            ::SetErrorMode(SEM_NOOPENFILEERRORBOX);
            module_ = ::LoadLibraryA(library_);
            pointer_ = module_ ? Find() : nullptr;
            tried_ = TRUE;
        }
        return pointer_ != nullptr;
    }

    /// The function; to be called only after Load answered true.
    F Function() const { return pointer_; }

 private:
    F Find() {
        // By way of void*: function pointer types are not cast into one another directly.
        const auto found =
            reinterpret_cast<F>(reinterpret_cast<void*>(::GetProcAddress(module_, function_)));
        if (!found) {
            ::FreeLibrary(module_);
            module_ = nullptr;
        }
        return found;
    }

    BOOL tried_ = FALSE;
    HMODULE module_ = nullptr;
    const char* library_;
    const char* function_;
    F pointer_ = nullptr;
};
