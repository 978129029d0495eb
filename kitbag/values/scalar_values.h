// The scalar values: one datum each, kept as one registry value.
//
//     BooleanValue mute("Audio", "Mute", true);
//     mute.Type(2);                // shown as "Yes" or "No"
//     if (mute) ...                // read from the registry on first use
//     mute.SetValue(false);        // written at once
//
// A scalar is empty until its first GetValue, SetValue or LoadRegistry. What is missing in the
// registry, or of another type, gives the default. SetDefaultValue does not change the datum.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/scalar_base.h>
#include <windows.h>

#include <vector>

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

/// A GUID, stored as text in braces.
class KITBAG_API GuidValue : public kitbag::ScalarValue<GuidValue, GUID> {
 public:
    using ScalarValue::ScalarValue;
    GuidValue() = default;
    GuidValue(const GUID& value);
    using ScalarValue::operator=;

    virtual GUID GetValue() const;
    virtual void SetValue(const GUID& value);
    /// The second argument is ignored here; only UInt32Value writes.
    virtual void SetDefaultValue(const GUID& value, bool writeIfMissing = false);
    bool ExistsRegistry() const override;

    using ScalarValue::LoadRegistry;
    /// Takes the default first, so that a stored text that is no GUID leaves the default, and so
    /// that HasDefaultValue is true after every load.
    void LoadRegistry() override;
    TWinString<char> SaveStringDataOnly() const override;

    /// "{00000000-0000-0000-0000-000000000000}", in upper case.
    static TWinString<char> GUID2TString(const GUID& value);
    /// The name of the COM class registered under the GUID, else GUID2TString.
    static TWinString<char> GUID2DisplayString(const GUID& value);
};

/// A block of bytes, stored as REG_BINARY and edited in place:
///
///     std::memcpy(key.SetValueSize(16), bytes, 16);
///     key.SetValue();
///
/// Its default is empty. ExistsRegistry keeps the base's answer, as that of Int32Value does.
class KITBAG_API ByteArrayValue
    : public kitbag::ScalarValue<ByteArrayValue, std::vector<unsigned char>> {
 public:
    using ScalarValue::ScalarValue;
    using ScalarValue::operator=;

    virtual bool operator==(const ByteArrayValue& other) const;
    virtual bool operator!=(const ByteArrayValue& other) const;
    /// The bytes themselves, valid until the next change; null where there are none.
    virtual unsigned char* GetValue() const;
    virtual unsigned char* GetValue(unsigned long* size) const;
    /// Copies the bytes. On entry size is the buffer's size, on return the number of bytes of the
    /// value; a buffer that is too small is left as it was, and the answer is false.
    virtual bool GetValue(unsigned char* buffer, unsigned long* size) const;
    virtual unsigned long GetValueSize() const;
    /// Resizes the bytes and returns them to be filled, valid until the next change or load.
    /// SetValue commits them; until then a value that was never initialised takes what is stored,
    /// or its default, instead of them when it is read or saved.
    virtual unsigned char* SetValueSize(unsigned long size);
    virtual void SetValue();
    /// The default bytes and their number; null where there are none.
    unsigned char* GetDefaultValue(unsigned long& size) const;

    using ScalarValue::LoadRegistry;
    /// Where nothing is stored, the bytes stay as they are: no default is taken. Components load
    /// over bytes that they have prepared.
    void LoadRegistry() override;
    /// One character of code 7 for each byte, whatever the bytes: rows are found and ordered by
    /// this text, so that another one would change what callers find.
    TWinString<char> SaveStringDataOnly() const override;
};

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
