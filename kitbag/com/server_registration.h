// What registering the library as a COM server does.
#pragma once

#include <windows.h>

namespace kitbag {

/// Writes the page factory's class into the registry, or takes it back.
HRESULT UpdatePageFactoryRegistration(bool install);

}  // namespace kitbag
