#include "differences.h"

#include <algorithm>

namespace kitbag::tool {

namespace {

template <class Map>
std::vector<typename Map::key_type> KeysOfBoth(const Map& a, const Map& b) {
    std::vector<typename Map::key_type> keys;
    keys.reserve(a.size() + b.size());
    for (const auto& [key, content] : a) keys.push_back(key);
    for (const auto& [key, content] : b)
        if (!a.contains(key)) keys.push_back(key);
    std::ranges::sort(keys, a.key_comp());
    return keys;
}

template <class Map>
std::optional<typename Map::mapped_type> Find(const Map& map, const std::wstring& key) {
    const auto found = map.find(key);
    if (found == map.end()) return std::nullopt;
    return found->second;
}

Values ValuesOf(const Sections& sections, const std::wstring& section) {
    return Find(sections, section).value_or(Section{}).values;
}

bool AreEqual(const std::optional<StoredValue>& a, const std::optional<StoredValue>& b) {
    return a && b ? AreSameToPrograms(*a, *b) : a.has_value() == b.has_value();
}

void AddValues(const std::wstring& section, const Values& before, const Values& after,
               std::vector<Difference>& differences) {
    for (const std::wstring& name : KeysOfBoth(before, after)) {
        const auto old = Find(before, name);
        const auto now = Find(after, name);
        if (!AreEqual(old, now))
            differences.push_back({section, name, old.has_value(), now.has_value(), old, now});
    }
}

}  // namespace

std::vector<Difference> DifferencesOf(const Sections& before, const Sections& after) {
    std::vector<Difference> differences;
    for (const std::wstring& section : KeysOfBoth(before, after)) {
        const bool wasThere = before.contains(section);
        const bool isThere = after.contains(section);
        const Difference itself = {section, {}, wasThere, isThere, {}, {}};
        if (!wasThere) differences.push_back(itself);
        AddValues(section, ValuesOf(before, section), ValuesOf(after, section), differences);
        if (!isThere) differences.push_back(itself);
    }
    return differences;
}

}  // namespace kitbag::tool
