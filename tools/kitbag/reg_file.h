// What a file of regedit's format says.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "stored_value.h"

namespace kitbag::tool {

struct RegFileValue {
    std::wstring name;
    /// None: the value is to be deleted.
    std::optional<StoredValue> content;
};

struct RegFileKey {
    /// With the name of its root: "HKEY_LOCAL_MACHINE\Software\...".
    std::wstring name;
    /// To be deleted with everything below it; has no values then.
    bool isDeleted = false;
    std::vector<RegFileValue> values;
};

/// In the order of the file, which is the order in which it takes effect.
using RegFile = std::vector<RegFileKey>;

/// Reads the text of a file of version 5, or of version 4 ("REGEDIT4"), whose texts in hexadecimal
/// form are in the ANSI code page. Throws for anything that is not well formed, with its line.
RegFile ParseRegFile(std::wstring_view text);

}  // namespace kitbag::tool
