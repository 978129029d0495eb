// Value: the root of the configuration values, one named setting each.
//
//     UInt32Value volume("Audio", "Volume", true);  // its place; read once
//     volume.SetDefaultValue(70);
//     Play(volume.GetValue());                      // read from the registry now, or 70
//     volume.SetValue(55);                          // written at once
//
// A value is used from one thread at a time. Reading a value may load it, so that the const
// operations change what is logically a cache; nothing is locked. No operation reports an error: a
// setting that cannot be read takes its default.
//
// A new value has level 0 and is shown to users of level 0 only. For everybody:
//
//     volume.SetMinimumUserInterfaceLevel(Value::ValueAction{3});
//
// The order of the virtual operations is part of the binary contract.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/visitor.h>

namespace kitbag {
class KnownRows;
}  // namespace kitbag

/// Tells a settings screen about values. Each operation fills the text and answers true where it
/// knows the value; otherwise the value falls back on what it has itself.
class ValueInfoSource {
 public:
    virtual bool GetDisplayName(const Value& value, TWinString<char>& text) = 0;
    virtual bool GetDescription(const Value& value, TWinString<char>& text) = 0;
    virtual bool GetHelpFile(const Value& value, TWinString<char>& text) = 0;

 protected:
    // Values do not own their source.
    ~ValueInfoSource() = default;
};

/// A setting's name, its place in the registry (a section below the settings root and a value
/// name), its action flags and its texts; the datum belongs to the derived classes.
class KITBAG_API Value : public CValueVisitor {
 public:
    /// The value actions word: the minimum user interface level in the low four bits, flags in bits
    /// 4 to 15. The flags without a name are preset by the constructors and mean nothing here.
    enum ValueAction : unsigned long {
        /// Never shown, except to users at level 0.
        HiddenAction = 0x0800,
        /// A change needs a restart of the application.
        RestartNeededAction = 0x1000,
        /// A change needs a reboot.
        RebootNeededAction = 0x2000,
    };

    Value();
    /// A value that loads itself on first use and writes every change at once.
    Value(const TWinString<char>& section, const TWinString<char>& name, bool cached);
    /// The copy has no place in the registry: callers edit copies and rely on their not being
    /// written until they are given a source again. Of a value that was never read, a copy or an
    /// assignment takes the default and not what is stored: read or load the value first.
    Value(const Value& other);

    virtual ~Value();
    /// A new object of the same class; the caller owns it.
    virtual Value* Copy() const = 0;
    /// The assigned value keeps its name and its own place in the registry, and nothing is written.
    /// Only here does the other's action flag become this value's need for a restart or a reboot:
    /// dialogs edit a copy, assign it and then ask. The flag alone counts: a copy that nobody
    /// changed asks for the restart too. Called through a Value, it leaves the datum as it is.
    virtual Value& operator=(const Value& other);
    virtual TWinString<char> GetValueName() const;
    virtual void SetValueName(const TWinString<char>& name);
    /// Negative, zero or positive. Numbers of one class are compared as numbers, other values of
    /// one class by their texts without regard to case, values of different classes by their texts
    /// with regard to case: stored orders depend on the difference. The texts begin with the names.
    virtual int Compare(const Value& other) const;
    virtual bool IsCollection() const;
    virtual bool IsTable() const;
    virtual bool IsTableEntry() const;
    virtual TWinString<char> ToString() const;
    /// "name=datum", nothing escaped.
    virtual TWinString<char> SaveString() const;
    /// The datum alone, as text.
    virtual TWinString<char> SaveStringDataOnly() const = 0;
    virtual void SetRegistrySection(const TWinString<char>& section);
    /// From now on the value loads itself on first use (cached) or on every use, and writes every
    /// change at once.
    virtual void SetAutoRegistrySource(bool cached);
    virtual void SetAutoRegistrySource(const TWinString<char>& section,
                                       const TWinString<char>& name, bool cached);
    virtual bool ExistsRegistry() const;
    /// Writes or reads the datum at the value's place.
    virtual void SaveRegistry() const = 0;
    /// Moves the value to a section first. A value without a name moves, but nothing is written or
    /// read. A value that was never read or set and has no source writes its default there.
    virtual void SaveRegistry(const TWinString<char>& section) const;
    virtual void LoadRegistry() = 0;
    virtual void LoadRegistry(const TWinString<char>& section);
    /// Hooks of derived classes; they do nothing.
    virtual void SaveFixar() const;
    virtual void LoadFixar();
    /// Calls the visitor's operation for the value's class.
    virtual void Accept(CValueVisitor& visitor) const;
    /// Replaces the whole word, level included.
    virtual void SetValueActions(unsigned long actions);
    /// The low four bits of level.
    virtual void SetMinimumUserInterfaceLevel(ValueAction level);
    /// What the last assignment left behind, not the value's own action flags.
    virtual bool RebootNeeded() const;
    virtual bool RestartNeeded() const;

    /// Sets or clears flags; the level and the bits above 15 stay.
    void SetValueAction(ValueAction action);
    void UnsetValueAction(ValueAction action);
    /// True when every bit of action is set, level bits included.
    bool HasValueAction(ValueAction action) const;
    unsigned long GetValueActions() const;
    int GetMinimumUserInterfaceLevel() const;

    /// True until the value has been read, set or loaded.
    bool IsEmpty() const;

    /// Installs the provider of texts and returns the previous one. The caller keeps ownership. The
    /// provider travels with copies and assignments, and must outlive them all.
    ValueInfoSource* SetValueInfoSource(ValueInfoSource* source);
    /// The source's text, else the fabricated one.
    TWinString<char> GetDisplayName() const;
    /// The first that is not empty of the member "DisplayName", the member "Name" and the value
    /// name. Members are looked up only where the value counts as a ValueCollection or a
    /// ValueTableEntry itself (value_casts.h), not as a class of its own.
    TWinString<char> FabricateDisplayName() const;
    /// Sets the member "DisplayName", failing that the member "Name", failing both the value name.
    void SetDisplayName(const TWinString<char>& text);
    /// The source's texts, else empty.
    TWinString<char> GetDescription() const;
    TWinString<char> GetHelpFile() const;

 protected:
    /// Every getter calls it before it reads the datum: loads the value where it is empty or has an
    /// uncached source; without a source an empty value takes its default.
    virtual void CheckInitialised() const;
    /// Makes the datum equal to the default.
    virtual void UseDefaultValue() const = 0;

    /// The text of a TStringValue among the members; false where there is none of that name.
    bool GetStringValue(const char* memberName, TWinString<char>& out) const;
    bool UpdateStringValue(const char* memberName, const TWinString<char>& text) const;

    /// For the registry access of derived classes.
    const TWinString<char>& GetRegistrySection() const { return registrySection_; }
    bool HasAutoRegistrySource() const { return autoRegistrySource_; }
    void MarkInitialised() const { empty_ = false; }
    /// What sets the datum calls it first: tables remember identifiers that are made of it.
    void DatumChanges() const;

 private:
    friend class kitbag::KnownRows;

    bool IsReadEveryTime() const { return autoRegistrySource_ && !cached_; }

    using SourceText = bool (ValueInfoSource::*)(const Value&, TWinString<char>&);
    bool AskSource(SourceText text, TWinString<char>& out) const;

    // A flag without a name that every value starts with: programs compare whole words.
    unsigned long valueActions_ = 0x100;
    bool rebootNeeded_ = false;
    bool restartNeeded_ = false;
    TWinString<char> valueName_;
    mutable bool empty_ = true;
    bool autoRegistrySource_ = false;
    bool cached_ = false;
    // Lies where the layout had a gap.
    mutable bool isRemembered_ = false;
    mutable TWinString<char> registrySection_;
    ValueInfoSource* valueInfoSource_ = nullptr;
};

/// A value with a default. A scalar class of a program's own, with what scalar_bodies.h gives it:
///
///     template <>
///     struct kitbag::Stored<double> {
///         static bool Read(const char* section, const char* name, double& datum) {
///             TWinString<char> text;
///             if (!KB_GetTStringA(section, name, text)) return false;
///             datum = std::atof(text.c_str());
///             return true;
///         }
///         static void Write(const char* section, const char* name, double datum) {
///             KB_SetTStringA(section, name, std::to_string(datum));
///         }
///     };
///
///     class DoubleValue : public kitbag::ScalarValue<DoubleValue, double> {
///      public:
///         using ScalarValue::ScalarValue;
///         using ScalarValue::operator=;
///         double GetValue() const { return Initialised(); }
///         void SetValue(double value) { Commit(value); }
///         TWinString<char> SaveStringDataOnly() const override {
///             return std::to_string(GetValue());
///         }
///     };
///
/// A class that saves itself in its own way must not read through GetValue in SaveRegistry: an
/// uncached value would read back what is stored and write that. Visitors and casts take the
/// objects for plain values.
class KITBAG_API DefaultValue : public Value {
 public:
    DefaultValue();
    DefaultValue(const TWinString<char>& section, const TWinString<char>& name, bool cached);
    /// The copy's datum does not count as taken from the default.
    DefaultValue(const DefaultValue& other);
    DefaultValue& operator=(const DefaultValue& other);
    using Value::operator=;

    /// True once the datum was taken from the default; neither a setter nor a later load that finds
    /// the value takes it back.
    bool HasDefaultValue() const;

 protected:
    /// What HasDefaultValue answers.
    void DefaultValueSet(bool set) const;

 private:
    mutable bool defaultValueSet_ = false;
};
