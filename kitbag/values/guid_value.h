// GuidValue: a GUID.
//
//     GuidValue decoder("Video", "Decoder", true);
//     decoder.SetDefaultValue(CLSID_DefaultDecoder);
//     Show(GuidValue::GUID2DisplayString(decoder.GetValue()));
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/scalar_base.h>
#include <windows.h>

class GuidValue;

namespace kitbag {

template <>
struct KITBAG_API Stored<GUID> {
    static bool Read(const char* section, const char* name, GUID& datum);
    static void Write(const char* section, const char* name, const GUID& datum);
};
extern template class KITBAG_API ScalarValue<GuidValue, GUID>;

}  // namespace kitbag

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
