// TStringValue: a text. IdentValue: a text that identifies a row of a table.
//
//     TStringValue station("Radio", "Station", true);
//     station = "Radio One";  // written at once
//     Tune(station.GetValue());
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/scalar_base.h>

class TStringValue;

namespace kitbag {

template <>
struct KITBAG_API Stored<TWinString<char>> {
    static bool Read(const char* section, const char* name, TWinString<char>& datum);
    static void Write(const char* section, const char* name, const TWinString<char>& datum);
};
extern template class KITBAG_API ScalarValue<TStringValue, TWinString<char>>;

}  // namespace kitbag

/// A text, stored as REG_SZ.
class KITBAG_API TStringValue : public kitbag::ScalarValue<TStringValue, TWinString<char>> {
 public:
    using ScalarValue::ScalarValue;

    virtual TWinString<char> GetValue() const;
    virtual void SetValue(const TWinString<char>& value);
    /// SetValue.
    virtual TStringValue& operator=(const TWinString<char>& value);
    virtual TStringValue& operator=(const TStringValue& other) = default;
    using ScalarValue::operator=;
    virtual operator TWinString<char>() const;
    virtual bool operator==(const TWinString<char>& value) const;
    virtual bool operator==(const TStringValue& other) const;
    /// The second argument is ignored here; only UInt32Value writes.
    virtual void SetDefaultValue(const TWinString<char>& value, bool writeIfMissing = false);
    bool ExistsRegistry() const override;

    /// The text in single quotes, nothing escaped.
    TWinString<char> SaveStringDataOnly() const override;
};

/// A text that identifies a table row.
class KITBAG_API IdentValue : public TStringValue {
 public:
    using TStringValue::TStringValue;
    IdentValue() = default;
    IdentValue(const TWinString<char>& value);
    using TStringValue::operator=;

    Value* Copy() const override;
    void Accept(CValueVisitor& visitor) const override;

    /// What stands between the quotes of the first field='...' in the text; empty where there is no
    /// such field or no closing quote.
    TWinString<char> GetStringField(TWinString<char> field) const;
};
