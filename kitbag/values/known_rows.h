// What is remembered of the identifiers of a large table's rows, so that a row need not ask all
// others for theirs.
//
// Rows can be changed at any time and their classes may make identifiers in ways of their own.
// Therefore only rows are remembered whose identifier is the library's doing alone: made by
// ValueTableEntry from members that are scalar values of the library themselves. Those members tell
// when they change; from then on nothing that was remembered counts. Everything else is asked.
#pragma once

#include <kitbag/frame/win_string.h>
#include <kitbag/values/pointer_sequence.h>
#include <kitbag/values/value_collection.h>

#include <optional>

namespace kitbag {

/// One table at a time is remembered in a process. Nobody waits: who finds the memory in use asks
/// the rows.
class KnownRows {
 public:
    /// The index of the first row with the identifier, or -1; nothing where the rows must be asked.
    static std::optional<int> Find(const PointerSequence<ValueTableEntry>& rows,
                                   const TWinString<char>& ident);
    /// A value changes that a remembered identifier was made of.
    static void Forget();

 private:
    static bool IsLibrarysOwn(const ValueTableEntry& row);
    static void Watch(const ValueTableEntry& row);
    static bool Learn(const PointerSequence<ValueTableEntry>& rows);
    static std::optional<int> Look(const PointerSequence<ValueTableEntry>& rows,
                                   const TWinString<char>& ident);
};

}  // namespace kitbag
