// BooleanValue: a truth value.
//
//     BooleanValue mute("Audio", "Mute", true);
//     mute.Type(2);          // shown as "Yes" or "No"
//     if (mute) Silence();   // read from the registry on first use
//     mute.SetValue(false);  // written at once
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/scalar_base.h>

class BooleanValue;

namespace kitbag {

template <>
struct KITBAG_API Stored<bool> {
    static bool Read(const char* section, const char* name, bool& datum);
    static void Write(const char* section, const char* name, bool datum);
};
extern template class KITBAG_API ScalarValue<BooleanValue, bool>;

}  // namespace kitbag

/// A truth value, stored as REG_DWORD.
class KITBAG_API BooleanValue : public kitbag::ScalarValue<BooleanValue, bool> {
 public:
    using ScalarValue::ScalarValue;
    using ScalarValue::operator=;

    virtual bool operator==(bool value) const;
    virtual bool operator==(const BooleanValue& other) const;
    virtual bool GetValue() const;
    virtual void SetValue(bool value);
    /// The second argument is ignored here; only UInt32Value writes.
    virtual void SetDefaultValue(bool value, bool writeIfMissing = false);
    bool ExistsRegistry() const override;

    operator bool() const { return GetValue(); }

    /// "On" or "Off" (style 1), "Yes" or "No" (style 2), "True" or "False" (any other style).
    TWinString<char> SaveStringDataOnly() const override;
    void Type(int style) { type_ = style; }
    int Type() const { return type_; }

 private:
    int type_ = 0;
};
