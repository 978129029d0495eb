// How the application's COM classes are registered.
#pragma once

#include <string>

namespace kitbag::tool {

/// The page factory: whether its class is registered, for the library that this program runs with,
/// and whether its type library can be loaded. Creates no object.
std::wstring PageFactoryText();

/// The graphic factory, which the application registers.
std::wstring GraphicFactoryText();

}  // namespace kitbag::tool
