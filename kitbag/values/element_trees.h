// What collections, lists and tables do alike with their elements, and how lists and tables copy,
// save and load those that they own.
//
// The registry tree of a list or table is the key section\name. It holds "Table Version" and one
// key for each element: 00000000, 00000001, ...
#pragma once

#include <kitbag/frame/win_string.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/registry/tree.h>
#include <kitbag/values/pointer_sequence.h>
#include <kitbag/values/value.h>
#include <windows.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace kitbag {

/// The preset flags of a list or table. Programs compare whole words, and know a container by them.
inline constexpr unsigned long kSequenceActions = 0xF0;

inline constexpr char kTreeVersion[] = "Table Version";
/// In a row's key.
inline constexpr char kRowClass[] = "ValueTableEntry Class";
/// In the key of a list's element.
inline constexpr char kElementClass[] = "Value Class";
inline constexpr char kElementName[] = "Value Name";

/// A text of each value, with separators between them.
template <class T>
TWinString<char> JoinTexts(const PointerSequence<T>& values, const char* separator,
                           TWinString<char> (Value::*text)() const) {
    TWinString<char> joined;
    const char* between = "";
    for (const Value* value : values.ByIndex()) {
        if (!value) continue;
        joined.append(between).append((value->*text)());
        between = separator;
    }
    return joined;
}

/// The index that lies delta further, at most at the ends of what an int can hold.
inline int Shifted(int index, int delta) {
    const long long shifted = static_cast<long long>(index) + delta;
    return static_cast<int>(std::clamp<long long>(shifted, INT_MIN, INT_MAX));
}

/// Adds the element; deletes it where the container refuses it.
template <class Container, class Element>
void Adopt(Container& container, std::unique_ptr<Element> element) {
    if (container.AddEntry(element.get())) static_cast<void>(element.release());
}

template <class Element>
using Copies = std::vector<std::unique_ptr<Element>>;

template <class Element>
Copies<Element> CopiesOf(const OwnedSequence<Element>& elements) {
    Copies<Element> copies;
    for (const Element* element : elements.ByIndex())
        if (element)
            copies.push_back(std::unique_ptr<Element>(static_cast<Element*>(element->Copy())));
    return copies;
}

/// Replaces the container's elements.
template <class Container, class Element>
void TakeOver(Container& container, Copies<Element> copies) {
    container.RemoveAllEntries();
    for (auto& copy : copies) Adopt(container, std::move(copy));
}

/// A row takes over the members of a row of its own class; of any other row what every row has.
template <class Row, class AnyRow>
Row& AssignRow(Row& row, const AnyRow& other) {
    if (const auto* same = dynamic_cast<const Row*>(&other)) return row = *same;
    row.AnyRow::operator=(other);
    return row;
}

inline TWinString<char> TreeKey(const TWinString<char>& section, const TWinString<char>& name) {
    return section + '\\' + name;
}

/// False, and a version of 0xFFFFFFFF, where there is no tree.
inline bool ReadTreeVersion(const TWinString<char>& tree, unsigned long& version) {
    version = 0xFFFFFFFF;
    return KB_GetDWORDA(tree.c_str(), kTreeVersion, &version);
}

/// Writes the tree anew, so that no element of a longer one stays; save(element, key) writes one
/// element.
template <class Element, class Save>
void SaveTree(const TWinString<char>& tree, unsigned long version,
              const OwnedSequence<Element>& elements, Save save) {
    KB_DeleteSectionA(tree.c_str());
    KB_SetDWORDA(tree.c_str(), kTreeVersion, version);
    unsigned index = 0;
    for (const Element* element : elements.ByIndex()) {
        TWinString<char> key;
        key.Format("%s\\%08x", tree.c_str(), index++);
        if (element) save(*element, key);
    }
}

/// Calls take(element, key) with a new element for each stored one of a class that the container's
/// factory knows, in the registry's order.
template <class Container, class Take>
void LoadTree(const TWinString<char>& tree, const char* classValue, const Container& container,
              Take take) {
    TWinString<char> key;
    for (DWORD i = 0;; ++i) {
        if (!KB_EnumKeyTStringA(tree.c_str(), i, key)) {
            // Something else may have put a key here whose name is too long to be told.
            if (i < static_cast<DWORD>(KB_GetKeyCountA(tree.c_str()))) continue;
            break;
        }
        TWinString<char> className;
        KB_GetTStringA(key.c_str(), classValue, className);
        auto* created = container.EntryFactory(className);
        if (created) take(std::unique_ptr<std::remove_pointer_t<decltype(created)>>(created), key);
    }
}

}  // namespace kitbag
