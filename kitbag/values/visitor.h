// CValueVisitor: reaches the concrete class of a value without run-time type checks.
//
//     class CountNumbers : public CValueVisitor {
//      public:
//         using CValueVisitor::Visit;
//         void Visit(const UInt32Value&) override { ++count; }
//         int count = 0;
//     };
//     CountNumbers numbers;
//     value.Accept(numbers);
//
// It has no virtual destructor, whose slots would be in the way: nothing is deleted through it.
#pragma once

#include <kitbag/frame/export.h>

class BooleanValue;
class ByteArrayValue;
class ExternalProgramValueTable;
class ExternalProgramValueTableEntry;
class FilenameValue;
class GuidValue;
class IdentValue;
class Int32Value;
class MediaLocationValueTable;
class MediaLocationValueTableEntry;
class TStringValue;
class UInt32Enum;
class UInt32Value;
class Value;
class ValueCollection;
class ValueList;
class ValueTable;
class ValueTableEntry;

/// One operation for each class of value; each does nothing here. A value's Accept calls exactly
/// one of them, the one for its own class.
///
/// Every value is a visitor itself, so these are the first virtual operations of every value class.
/// They are part of the binary contract, their order and their number: one more would move all
/// operations of all values.
class KITBAG_API CValueVisitor {
 public:
    CValueVisitor();
    CValueVisitor(const CValueVisitor&);
    CValueVisitor& operator=(const CValueVisitor&);

    virtual void Visit(const ExternalProgramValueTableEntry& value);
    virtual void Visit(const ExternalProgramValueTable& value);
    virtual void Visit(const MediaLocationValueTableEntry& value);
    virtual void Visit(const MediaLocationValueTable& value);
    virtual void Visit(const ValueTableEntry& value);
    virtual void Visit(const IdentValue& value);
    virtual void Visit(const FilenameValue& value);
    virtual void Visit(const UInt32Enum& value);
    virtual void Visit(const TStringValue& value);
    virtual void Visit(const UInt32Value& value);
    virtual void Visit(const Int32Value& value);
    virtual void Visit(const GuidValue& value);
    virtual void Visit(const ByteArrayValue& value);
    virtual void Visit(const BooleanValue& value);
    virtual void Visit(const ValueCollection& value);
    virtual void Visit(const ValueList& value);
    virtual void Visit(const ValueTable& value);
    virtual void Visit(const Value& value);
};
