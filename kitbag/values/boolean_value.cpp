#include <kitbag/frame/module_base.h>
#include <kitbag/frame/resource_ids.h>
#include <kitbag/frame/string_table.h>
#include <kitbag/registry/stored_values.h>
#include <kitbag/values/boolean_value.h>
#include <kitbag/values/scalar_bodies.h>

namespace kitbag {

bool Stored<bool>::Read(const char* section, const char* name, bool& datum) {
    return KB_GetBoolA(section, name, &datum);
}
void Stored<bool>::Write(const char* section, const char* name, bool datum) {
    KB_SetBoolA(section, name, datum);
}

template class ScalarValue<BooleanValue, bool>;

}  // namespace kitbag

bool BooleanValue::operator==(bool value) const { return GetValue() == value; }
bool BooleanValue::operator==(const BooleanValue& other) const {
    return GetValue() == other.GetValue();
}
bool BooleanValue::GetValue() const { return Initialised(); }
void BooleanValue::SetValue(bool value) { Commit(value); }
void BooleanValue::SetDefaultValue(bool value, bool) { default_ = value; }
bool BooleanValue::ExistsRegistry() const { return IsStored(); }

TWinString<char> BooleanValue::SaveStringDataOnly() const {
    const UINT whenTrue = type_ == 1   ? KITBAG_STRING_ON
                          : type_ == 2 ? KITBAG_STRING_YES
                                       : KITBAG_STRING_TRUE;
    return kitbag::LoadText<char>(kitbag::ModuleBase(), GetValue() ? whenTrue : whenTrue + 1);
}
