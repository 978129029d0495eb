// Where programs read something else than what is stored.
#pragma once

#include <string>

#include "stored_value.h"

namespace kitbag::tool {

/// Asks the library's getters for the value. Empty where they answer what is stored, else what they
/// answer: that they refuse it, or another text.
std::wstring GetterMark(const std::wstring& section, const std::wstring& name,
                        const StoredValue& value);

}  // namespace kitbag::tool
