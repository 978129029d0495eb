// What differs between two states of the settings.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sections.h"

namespace kitbag::tool {

struct Difference {
    std::wstring section;
    /// None: the section itself was created or deleted.
    std::optional<std::wstring> name;
    bool wasThere = false;
    bool isThere = false;
    /// None where it was not, or is not, there; both none for a section itself.
    std::optional<StoredValue> before;
    std::optional<StoredValue> after;
};

/// In the order of the sections and names: a section comes before the values that are created with
/// it and behind those that are deleted with it. Values that programs cannot tell apart are equal.
std::vector<Difference> DifferencesOf(const Sections& before, const Sections& after);

}  // namespace kitbag::tool
