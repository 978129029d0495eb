// Changes of the settings.
#pragma once

#include <string>

#include "exit_code.h"
#include "sections.h"
#include "settings_file.h"

namespace kitbag::tool {

/// Why the library could not write into the section; it does not say so itself. What the message
/// names is up to the caller.
Failure WhyNotWritten(const std::wstring& section, const std::wstring& what);

/// Deletes through the library; throws where that is refused.
void DeleteValue(const std::wstring& section, const std::wstring& name);
/// With everything below it. The root itself stays, emptied.
void DeleteSection(const std::wstring& section);

/// Creates the section where it is missing, and writes or deletes its values; or deletes it. What
/// is to be deleted and not there is no failure.
void Apply(const SectionChange& change);

/// Throws, with what would be deleted, unless --yes was given.
void RequireConsent(bool isGiven, const std::wstring& whatWouldHappen);

}  // namespace kitbag::tool
