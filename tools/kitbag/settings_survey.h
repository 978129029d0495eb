// What stands in the registry beside the sections, or has a meaning of its own, for the report.
#pragma once

#include <string>

namespace kitbag::tool {

/// The switches of the performance loggers, and whether there is a report of theirs.
std::wstring LoggersText();

/// The link times that programs stored when they last looked at their modules.
std::wstring ModulesSeenText();

/// Says so where Windows keeps settings of this user apart from those of the machine; else empty.
std::wstring RedirectedSettingsText();

}  // namespace kitbag::tool
