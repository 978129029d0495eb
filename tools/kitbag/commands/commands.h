// The commands, each in the file of its name.
#pragma once

#include "tools/kitbag/command.h"

namespace kitbag::tool {

extern const Command kCompare;
extern const Command kCrc;
extern const Command kDelete;
extern const Command kExport;
extern const Command kGet;
extern const Command kImport;
extern const Command kList;
extern const Command kLocal;
extern const Command kModules;
extern const Command kPage;
extern const Command kReport;
extern const Command kReset;
extern const Command kSet;
extern const Command kUnc;
extern const Command kWatch;

}  // namespace kitbag::tool
