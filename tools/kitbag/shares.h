// This computer's disk shares, as the library sees them when it translates names.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "exit_code.h"

namespace kitbag::tool {

struct DiskShare {
    std::wstring name;
    std::wstring path;
};

struct DiskShares {
    std::vector<DiskShare> shares;
    /// Why there is no list, or not all of it.
    DWORD status = ERROR_SUCCESS;
};

/// Without those for administration, which the library leaves out.
DiskShares ListDiskShares();

/// Why the library found no translation of the path or name.
Failure WhyNoShareServes(const std::wstring& name);

}  // namespace kitbag::tool
