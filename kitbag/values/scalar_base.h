// What the scalar values have in common: one datum and its default, kept as one registry value.
//
// A scalar is empty until its first GetValue, SetValue or LoadRegistry. What is missing in the
// registry, or of another type, gives the default. SetDefaultValue does not change the datum.
//
// A new scalar class, in the library or in a program, includes scalar_bodies.h too.
#pragma once

#include <kitbag/frame/win_string.h>
#include <kitbag/values/value.h>

namespace kitbag {

/// How a type of datum is stored; specialised beside the class that is made of it:
///
///     static bool Read(const char* section, const char* name, Datum& datum);
///     static void Write(const char* section, const char* name, Datum datum);
///
/// Read answers whether the registry has one; where it has none the datum stays as it was.
template <class Datum>
struct Stored;

/// A datum and its default; how they are copied, loaded and saved. Class is the scalar class
/// itself. Adds no virtual operation: the order of each class's own ones is part of the binary
/// contract.
template <class Class, class Datum>
class ScalarValue : public DefaultValue {
 public:
    Value* Copy() const override;
    using Value::LoadRegistry;
    using Value::SaveRegistry;
    /// Writes the datum; a value that was never initialised is initialised first.
    void SaveRegistry() const override;
    /// Reads the datum; takes the default where the registry has none of the right type.
    void LoadRegistry() override;
    void Accept(CValueVisitor& visitor) const override;
    Datum GetDefaultValue() const { return default_; }

    ScalarValue();
    ScalarValue(const TWinString<char>& section, const TWinString<char>& name, bool cached);
    ScalarValue(const ScalarValue& other);
    ScalarValue& operator=(const ScalarValue& other);
    using DefaultValue::operator=;

 protected:
    void UseDefaultValue() const override;
    /// What every getter reads.
    const Datum& Initialised() const;
    /// What every setter does: the value is initialised, and written where it has a source.
    void Commit();
    void Commit(const Datum& datum);
    /// Reads what the registry has for the value; false, and nothing changed, where it has none.
    bool ReadStored(Datum& datum) const;
    bool IsStored() const;

    mutable Datum datum_{};
    Datum default_{};
};

}  // namespace kitbag
