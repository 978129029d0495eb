// The registry tree of a list or table: section\name holds "Table Version" and one key for each
// element, 00000000, 00000001, ...
#pragma once

#include <kitbag/frame/win_string.h>
#include <kitbag/registry/tree.h>
#include <kitbag/registry/values.h>
#include <windows.h>

#include <memory>
#include <type_traits>

namespace kitbag {

inline constexpr char kTreeVersion[] = "Table Version";
/// In a row's key.
inline constexpr char kRowClass[] = "ValueTableEntry Class";
/// In the key of a list's element.
inline constexpr char kElementClass[] = "Value Class";
inline constexpr char kElementName[] = "Value Name";

inline TWinString<char> TreeKey(const TWinString<char>& section, const TWinString<char>& name) {
    return section + '\\' + name;
}

/// Writes the tree anew, so that no element of a longer one stays; save(element, key) writes one
/// element.
template <class Elements, class Save>
void SaveTree(const TWinString<char>& tree, unsigned long version, const Elements& elements,
              Save save) {
    KB_DeleteSectionA(tree.c_str());
    KB_SetDWORDA(tree.c_str(), kTreeVersion, version);
    unsigned index = 0;
    for (const auto* element : elements) {
        TWinString<char> key;
        key.Format("%s\\%08x", tree.c_str(), index++);
        if (element) save(*element, key);
    }
}

/// Hands take(element, key) a new element for each stored one of a class that the container's
/// factory knows, in the registry's order.
template <class Container, class Take>
void LoadTree(const TWinString<char>& tree, const char* classValue, const Container& container,
              Take take) {
    TWinString<char> key;
    for (DWORD i = 0; KB_EnumKeyTStringA(tree.c_str(), i, key); ++i) {
        TWinString<char> className;
        KB_GetTStringA(key.c_str(), classValue, className);
        auto* created = container.EntryFactory(className);
        if (created) take(std::unique_ptr<std::remove_pointer_t<decltype(created)>>(created), key);
    }
}

}  // namespace kitbag
