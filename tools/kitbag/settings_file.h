// Files of regedit's format that hold settings of the application.
#pragma once

#include <string>
#include <vector>

#include "reg_file.h"
#include "sections.h"

namespace kitbag::tool {

/// What a file says about one section.
struct SectionChange {
    std::wstring section;
    bool isDeleted = false;
    std::vector<RegFileValue> values;
};

/// The file's keys in order. Throws, before anything could be done with it, for a file that is not
/// well formed or names a key that is not the settings' root nor below it, or a name that the
/// registry does not take.
std::vector<SectionChange> LoadSettingsFile(const std::wstring& path);

/// The settings as the file alone would leave them.
Sections SettingsOf(const std::vector<SectionChange>& changes);

/// The sections that the file is about: those it names, without those below them.
std::vector<std::wstring> TopSections(const std::vector<SectionChange>& changes);

/// Writes sections into a file. One that exists is replaced only if that is wanted.
void SaveSettingsFile(const std::wstring& path, const Sections& sections, bool mayReplace);

}  // namespace kitbag::tool
