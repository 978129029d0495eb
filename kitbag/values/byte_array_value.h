// ByteArrayValue: a block of bytes, edited in place.
//
//     ByteArrayValue key("Network", "Key", true);
//     std::memcpy(key.SetValueSize(16), bytes, 16);
//     key.SetValue();  // written now
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/scalar_base.h>

#include <vector>

class ByteArrayValue;

namespace kitbag {

template <>
struct KITBAG_API Stored<std::vector<unsigned char>> {
    static bool Read(const char* section, const char* name, std::vector<unsigned char>& datum);
    static void Write(const char* section, const char* name,
                      const std::vector<unsigned char>& datum);
};
extern template class KITBAG_API ScalarValue<ByteArrayValue, std::vector<unsigned char>>;

}  // namespace kitbag

/// A block of bytes, stored as REG_BINARY. Its default is empty. ExistsRegistry keeps the base's
/// answer, false, as that of Int32Value does.
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
