#include "settings_file.h"

#include <algorithm>

#include "exit_code.h"
#include "reg_file_writer.h"
#include "text_file.h"

namespace kitbag::tool {

namespace {

constexpr std::size_t kLongestKeyName = 255;
constexpr std::size_t kLongestValueName = 16383;

bool IsKeyPath(std::wstring_view path) {
    if (path.empty()) return true;
    const std::size_t end = std::min(path.find(L'\\'), path.size());
    if (end == 0 || end > kLongestKeyName || end + 1 == path.size()) return false;
    return IsKeyPath(path.substr(std::min(end + 1, path.size())));
}

void CheckNames(const RegFileKey& key, const std::wstring& section) {
    if (!IsKeyPath(section))
        throw Failure{ExitCode::WrongUse, L"[" + key.name + L"] is no path of a key"};
    for (const RegFileValue& value : key.values)
        if (value.name.size() > kLongestValueName)
            throw Failure{ExitCode::WrongUse, L"[" + key.name + L"]: a value's name is too long"};
}

SectionChange ChangeOf(RegFileKey& key) {
    const auto section = SectionOfKey(key.name);
    if (!section)
        throw Failure{ExitCode::WrongUse,
                      L"[" + key.name + L"] is not below " + KeyName({}) + L"; nothing was done"};
    CheckNames(key, *section);
    return {*section, key.isDeleted, std::move(key.values)};
}

void DeleteWithin(Sections& sections, const std::wstring& outer) {
    std::erase_if(sections, [&outer](const auto& entry) { return IsWithin(entry.first, outer); });
}

/// A section exists with all on the way to it.
Section& Create(Sections& sections, const std::wstring& section) {
    for (std::size_t end = section.find(L'\\'); end != std::wstring::npos;
         end = section.find(L'\\', end + 1))
        sections[section.substr(0, end)];
    return sections[section];
}

}  // namespace

std::vector<SectionChange> LoadSettingsFile(const std::wstring& path) {
    const std::wstring text = ReadTextFile(path);
    try {
        RegFile file = ParseRegFile(text);
        std::vector<SectionChange> changes;
        std::ranges::transform(file, std::back_inserter(changes), ChangeOf);
        return changes;
    } catch (Failure& failure) {
        failure.message.insert(0, path + L": ");
        throw;
    }
}

Sections SettingsOf(const std::vector<SectionChange>& changes) {
    Sections sections;
    for (const SectionChange& change : changes) {
        if (change.isDeleted) {
            DeleteWithin(sections, change.section);
            continue;
        }
        Values& values = Create(sections, change.section).values;
        for (const RegFileValue& value : change.values) {
            values.erase(value.name);
            if (value.content) values[value.name] = *value.content;
        }
    }
    return sections;
}

std::vector<std::wstring> TopSections(const std::vector<SectionChange>& changes) {
    std::vector<std::wstring> tops;
    for (const SectionChange& change : changes) {
        const auto covers = [&change](const std::wstring& top) {
            return IsWithin(change.section, top);
        };
        if (std::ranges::any_of(tops, covers)) continue;
        std::erase_if(tops, [&](const std::wstring& top) { return IsWithin(top, change.section); });
        tops.push_back(change.section);
    }
    return tops;
}

void SaveSettingsFile(const std::wstring& path, const Sections& sections, bool mayReplace) {
    WriteTextFile(path, RegFileText(sections), Encoding::Utf16, mayReplace);
}

}  // namespace kitbag::tool
