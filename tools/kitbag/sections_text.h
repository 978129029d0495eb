// Settings for a person to read.
#pragma once

#include <string>

#include "sections.h"

namespace kitbag::tool {

/// The values of one section, a line each, with a second line where programs read something else.
std::wstring ValuesText(const std::wstring& section, const Values& values);

/// Each section under its name, moved to the right by its depth below the first one.
std::wstring TreeText(const Sections& sections);

/// The first section and, by name, those right below it.
std::wstring SectionText(const Sections& sections);

/// For messages: the first section's key and how much it holds with all below it.
std::wstring ContentsOf(const Sections& sections);

/// Why a section cannot be read, as a line; empty where it can.
std::wstring StatusText(const Section& section);

}  // namespace kitbag::tool
