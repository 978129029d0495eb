// Int32Value and UInt32Value: a number, stored as REG_DWORD.
//
//     Int32Value balance("Audio", "Balance", true);
//     balance.SetDefaultValue(0);
//     balance.SetValue(balance.GetValue() - 5);
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/scalar_base.h>

class Int32Value;
class UInt32Value;

namespace kitbag {

template <>
struct KITBAG_API Stored<long> {
    static bool Read(const char* section, const char* name, long& datum);
    static void Write(const char* section, const char* name, long datum);
};
extern template class KITBAG_API ScalarValue<Int32Value, long>;

template <>
struct KITBAG_API Stored<unsigned long> {
    static bool Read(const char* section, const char* name, unsigned long& datum);
    static void Write(const char* section, const char* name, unsigned long datum);
};
extern template class KITBAG_API ScalarValue<UInt32Value, unsigned long>;

}  // namespace kitbag

/// A signed number, stored as REG_DWORD. ExistsRegistry keeps the base's answer, false: callers
/// that ask it before they write count on writing every time.
class KITBAG_API Int32Value : public kitbag::ScalarValue<Int32Value, long> {
 public:
    using ScalarValue::ScalarValue;
    using ScalarValue::operator=;

    virtual long GetValue() const;
    virtual void SetValue(long value);
    virtual void SetDefaultValue(long value);

    TWinString<char> SaveStringDataOnly() const override;
};

/// An unsigned number, stored as REG_DWORD.
class KITBAG_API UInt32Value : public kitbag::ScalarValue<UInt32Value, unsigned long> {
 public:
    using ScalarValue::ScalarValue;
    using ScalarValue::operator=;

    virtual unsigned long GetValue() const;
    virtual void SetValue(unsigned long value);
    /// With writeIfMissing, and with a registry source where nothing is stored, writes the default:
    /// components read such a value back from the registry themselves. No other class writes here.
    virtual void SetDefaultValue(unsigned long value, bool writeIfMissing = false);
    bool ExistsRegistry() const override;

    TWinString<char> SaveStringDataOnly() const override;
};
