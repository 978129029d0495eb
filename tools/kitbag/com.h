// COM for the time of a command.
#pragma once

#include <objbase.h>

namespace kitbag::tool {

class Com {
 public:
    Com() : isInitialised_(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~Com() {
        if (isInitialised_) ::CoUninitialize();
    }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;

 private:
    bool isInitialised_;
};

}  // namespace kitbag::tool
