#include <kitbag/registry/stored_values.h>
#include <kitbag/values/number_values.h>
#include <kitbag/values/scalar_bodies.h>

#include <string>

namespace kitbag {

bool Stored<long>::Read(const char* section, const char* name, long& datum) {
    int number = 0;
    if (!KB_GetIntA(section, name, &number)) return false;
    datum = number;
    return true;
}
void Stored<long>::Write(const char* section, const char* name, long datum) {
    KB_SetIntA(section, name, static_cast<int>(datum));
}

bool Stored<unsigned long>::Read(const char* section, const char* name, unsigned long& datum) {
    return KB_GetDWORDA(section, name, &datum);
}
void Stored<unsigned long>::Write(const char* section, const char* name, unsigned long datum) {
    KB_SetDWORDA(section, name, datum);
}

template class ScalarValue<Int32Value, long>;
template class ScalarValue<UInt32Value, unsigned long>;

}  // namespace kitbag

long Int32Value::GetValue() const { return Initialised(); }
void Int32Value::SetValue(long value) { Commit(value); }
void Int32Value::SetDefaultValue(long value) { default_ = value; }

TWinString<char> Int32Value::SaveStringDataOnly() const { return std::to_string(GetValue()); }

unsigned long UInt32Value::GetValue() const { return Initialised(); }
void UInt32Value::SetValue(unsigned long value) { Commit(value); }
bool UInt32Value::ExistsRegistry() const { return IsStored(); }

void UInt32Value::SetDefaultValue(unsigned long value, bool writeIfMissing) {
    default_ = value;
    if (HasAutoRegistrySource() && writeIfMissing && !ExistsRegistry())
        KB_SetDWORDA(GetRegistrySection().c_str(), GetValueName().c_str(), default_);
}

TWinString<char> UInt32Value::SaveStringDataOnly() const { return std::to_string(GetValue()); }
