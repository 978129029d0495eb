#include "field_builder.h"

#include <kitbag/values/value_list.h>
#include <kitbag/values/value_table.h>

#include "elements_field.h"
#include "scalar_fields.h"

std::unique_ptr<Field> FieldBuilder::Build(const Value& value) {
    field_.reset();
    value.Accept(*this);
    return std::move(field_);
}

// Visitors are shown values as constant; the casts give back the same objects, to be changed.

void FieldBuilder::Visit(const BooleanValue& value) {
    field_ = std::make_unique<CheckField>(place_, *KB_GetAsBooleanValue(&value));
}
void FieldBuilder::Visit(const UInt32Enum& value) {
    field_ = std::make_unique<ChoiceField>(place_, *KB_GetAsUInt32Enum(&value));
}
void FieldBuilder::Visit(const UInt32Value& value) {
    field_ = std::make_unique<NumberField<UInt32Value>>(place_, *KB_GetAsUInt32Value(&value));
}
void FieldBuilder::Visit(const Int32Value& value) {
    field_ = std::make_unique<NumberField<Int32Value>>(place_, *KB_GetAsInt32Value(&value));
}
void FieldBuilder::Visit(const TStringValue& value) {
    field_ = std::make_unique<TextField>(place_, *KB_GetAsTStringValue(&value));
}
void FieldBuilder::Visit(const IdentValue& value) {
    field_ = std::make_unique<TextField>(place_, *KB_GetAsIdentValue(&value));
}
void FieldBuilder::Visit(const FilenameValue& value) {
    field_ = std::make_unique<FilenameField>(place_, *KB_GetAsFilenameValue(&value));
}
void FieldBuilder::Visit(const GuidValue& value) {
    field_ = std::make_unique<GuidField>(place_, *KB_GetAsGuidValue(&value));
}
void FieldBuilder::Visit(const ByteArrayValue& value) {
    field_ = std::make_unique<BytesField>(place_, *KB_GetAsByteArrayValue(&value));
}
void FieldBuilder::Visit(const ValueTable& value) {
    field_ =
        std::make_unique<ElementsField>(place_, value, ElementsOf(*KB_GetAsValueTable(&value)));
}
void FieldBuilder::Visit(const ValueList& value) {
    field_ = std::make_unique<ElementsField>(place_, value, ElementsOf(*KB_GetAsValueList(&value)));
}
