// Settings in regedit's format.
#pragma once

#include <string>

#include "sections.h"

namespace kitbag::tool {

/// The text of a file of version 5 from which every value comes back byte by byte.
std::wstring RegFileText(const Sections& sections);

}  // namespace kitbag::tool
