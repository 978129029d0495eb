// Checked casts from a value to its concrete class.
//
//     if (BooleanValue* flag = KB_GetAsBooleanValue(value)) flag->SetValue(true);
//
// Each answers the same object where its own Accept names the class, and null for anything else, a
// null value included. It is a test of the exact class, not of inheritance: an IdentValue or a
// FilenameValue is no TStringValue here, a UInt32Enum no UInt32Value, a concrete row neither a
// ValueTableEntry nor a ValueCollection. A class derived outside the library counts as the base
// whose Accept it keeps.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/values/visitor.h>

KITBAG_PLAIN ValueTable* KB_GetAsValueTable(const Value* value);
KITBAG_PLAIN ValueList* KB_GetAsValueList(const Value* value);
KITBAG_PLAIN ValueCollection* KB_GetAsValueCollection(const Value* value);
KITBAG_PLAIN BooleanValue* KB_GetAsBooleanValue(const Value* value);
KITBAG_PLAIN ByteArrayValue* KB_GetAsByteArrayValue(const Value* value);
KITBAG_PLAIN GuidValue* KB_GetAsGuidValue(const Value* value);
KITBAG_PLAIN Int32Value* KB_GetAsInt32Value(const Value* value);
KITBAG_PLAIN UInt32Value* KB_GetAsUInt32Value(const Value* value);
KITBAG_PLAIN TStringValue* KB_GetAsTStringValue(const Value* value);
KITBAG_PLAIN UInt32Enum* KB_GetAsUInt32Enum(const Value* value);
KITBAG_PLAIN FilenameValue* KB_GetAsFilenameValue(const Value* value);
KITBAG_PLAIN IdentValue* KB_GetAsIdentValue(const Value* value);
KITBAG_PLAIN ValueTableEntry* KB_GetAsValueTableEntry(const Value* value);
KITBAG_PLAIN MediaLocationValueTableEntry* KB_GetAsMediaLocationValueTableEntry(const Value* value);
KITBAG_PLAIN ExternalProgramValueTableEntry* KB_GetAsExternalProgramValueTableEntry(
    const Value* value);

/// The two concrete tables count as ValueTable, so these two answer null for every table of the
/// library. Components link to them and branch on the null.
KITBAG_PLAIN MediaLocationValueTable* KB_GetAsMediaLocationValueTable(const Value* value);
KITBAG_PLAIN ExternalProgramValueTable* KB_GetAsExternalProgramValueTable(const Value* value);
