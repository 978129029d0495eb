// Chooses the field for a value by its class.
#pragma once

#include <kitbag/values/visitor.h>

#include <memory>

#include "field.h"

/// A value's Accept calls the operation for its class, which makes the field. Sections and rows
/// have none: their members do.
class FieldBuilder final : public CValueVisitor {
 public:
    explicit FieldBuilder(const FieldPlace& place) : place_(place) {}

    std::unique_ptr<Field> Build(const Value& value);

    using CValueVisitor::Visit;
    void Visit(const BooleanValue& value) override;
    void Visit(const UInt32Enum& value) override;
    void Visit(const UInt32Value& value) override;
    void Visit(const Int32Value& value) override;
    void Visit(const TStringValue& value) override;
    void Visit(const IdentValue& value) override;
    void Visit(const FilenameValue& value) override;
    void Visit(const GuidValue& value) override;
    void Visit(const ByteArrayValue& value) override;
    void Visit(const ValueTable& value) override;
    void Visit(const ValueList& value) override;

 private:
    FieldPlace place_;
    std::unique_ptr<Field> field_;
};
