// Setting: one scalar value, declared in one line.
//
//     kitbag::Setting<UInt32Value> volume{*this, "Volume", 70, {.range = {0, 100}}};
#pragma once

#include <kitbag/settings/datum.h>
#include <kitbag/settings/declaration.h>
#include <kitbag/values/value_collection.h>

#include <memory>
#include <type_traits>
#include <utility>

namespace kitbag {

/// What a declaration may say besides name and default, in this order; none of it must be said.
template <class V>
struct SettingOptions {
    /// Who sees it: everybody.
    Level level = 3;
    /// A change asks for a restart of the application, or of the computer.
    bool restart = false;
    bool reboot = false;
    /// Never shown, but to users of level 0.
    bool hidden = false;
    /// The display name, where it is not the setting's name; the description; the help file.
    Literal label = {};
    Literal text = {};
    Literal help = {};
};

/// A number's.
template <class V>
requires Number<DatumOf<V>>
struct SettingOptions<V> {
    Level level = 3;
    /// Both ends belong to it.
    Range<DatumOf<V>> range = {};
    bool restart = false;
    bool reboot = false;
    bool hidden = false;
    Literal label = {};
    Literal text = {};
    Literal help = {};
};

/// A truth value's.
template <std::derived_from<BooleanValue> V>
struct SettingOptions<V> {
    Level level = 3;
    Words words = Words::TrueFalse;
    bool restart = false;
    bool reboot = false;
    bool hidden = false;
    Literal label = {};
    Literal text = {};
    Literal help = {};
};

/// A file name's.
template <std::derived_from<FilenameValue> V>
struct SettingOptions<V> {
    Level level = 3;
    bool directory = false;
    bool mustExist = false;
    /// For file dialogs.
    Literal filter = {};
    bool restart = false;
    bool reboot = false;
    bool hidden = false;
    Literal label = {};
    Literal text = {};
    Literal help = {};
};

/// A value of class V that is declared in a section or a row. Reads as its datum and is assigned
/// one:
///
///     Play(player.volume);   // read from the registry on first use
///     player.volume = 55;    // written at once; a number out of range becomes the nearest end
///
/// A number that is stored out of range reads as the nearest end too. A copy is a value of its own,
/// read before it is copied, which has no place in the registry. Another setting is assigned as
/// every value is: datum, level, action flags and info source, and the need for a restart where the
/// datum differs; name, place, default, range and texts are this setting's own, and the datum is
/// written.
template <ScalarClass V>
class Setting : public Kept<V>, public Declared {
 public:
    using Options = SettingOptions<V>;

    Setting(Owner& owner, Name name, const DatumOf<V>& byDefault, const Options& options = {})
        : Setting(owner, name, byDefault, options, false) {}
    /// Part of a row's identifier.
    template <std::derived_from<Owner> O>
    Setting(O& row, Name name, const DatumOf<V>& byDefault, Identifies, const Options& options = {})
        : Setting(row, name, byDefault, options, true) {
        static_assert(std::derived_from<O, ValueTableEntry>,
                      "only rows have settings that identify");
    }
    template <class T>
    requires(!KindOf<T, DatumOf<V>>) Setting(Owner&, Name, const T&, auto&&...) {
        static_assert(KindOf<T, DatumOf<V>>,
                      "the default of a setting is of the setting's own type");
    }
    template <class T>
    requires(!std::convertible_to<const T&, Name>) Setting(Owner&, const T&, auto&&...) {
        static_assert(std::convertible_to<const T&, Name>,
                      "a setting has a name, before its default");
    }

    Setting(const Setting& other) : Kept<V>(Initialised(other)), Declared(other) {}
    ~Setting() override = default;

    /// The datum, valid until the next change.
    decltype(auto) Get() const { return this->Datum(); }
    using V::operator=;
    template <class T>
    requires KindOf<T, DatumOf<V>> Setting& operator=(const T& datum) {
        this->Put(this->Fitted(datum));
        return *this;
    }
    template <class T>
    requires(!KindOf<T, DatumOf<V>> && !std::derived_from<T, V> && !std::same_as<T, Value>) Setting&
    operator=(const T&) {
        static_assert(KindOf<T, DatumOf<V>>, "a setting is assigned what is of its own type");
        return *this;
    }
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the one that it hands on to asks
    Setting& operator=(const Setting& other) { return *this = static_cast<const V&>(other); }
    Setting& operator=(const V& other) {
        if (this == &other) return *this;
        const bool same = SameAs(other);
        this->TakeOver(other);
        if (same)
            ForgetNeeds();
        else if (this->HasAutoRegistrySource())
            this->SaveRegistry();
        return *this;
    }
    Setting& operator=(const Value& other) override {
        if (const auto* same = dynamic_cast<const V*>(&other)) return *this = *same;
        Value::operator=(other);
        return *this;
    }

    Value* Copy() const override { return new Setting(*this); }
    bool SameAs(const Value& other) const override {
        const auto* same = dynamic_cast<const V*>(&other);
        return same && this->Equals(*same);
    }
    bool IsDefault() const override { return Get() == this->ByDefault(); }
    void Reset() override {
        if (this->HasAutoRegistrySource()) this->DeleteStored();
        this->UseDefaultValue();
        this->MarkInitialised();
    }

 private:
    Setting(Owner& owner, Name name, const DatumOf<V>& byDefault, const Options& options,
            bool identifying) {
        Configure(options);
        this->PutDefault(byDefault);
        Describe(*this, options);
        owner.Declare(*this, name.Get(), identifying);
    }

    void Configure(const Options& options) {
        if constexpr (Number<DatumOf<V>>) this->range_ = options.range;
        if constexpr (std::derived_from<V, BooleanValue>)
            this->Type(static_cast<int>(options.words));
        if constexpr (std::derived_from<V, FilenameValue>) {
            this->SetIsDirectory(options.directory);
            this->SetMustExist(options.mustExist);
            this->SetFilterString(options.filter.Get() ? options.filter.Get() : "");
        }
    }

    /// Copied unread, a setting would show its default and not what is stored.
    static const Setting& Initialised(const Setting& other) {
        other.CheckInitialised();
        return other;
    }

    /// An assignment is what takes a need back, too: here of the same without its flags.
    void ForgetNeeds() {
        const unsigned long actions = this->GetValueActions();
        V calm(static_cast<const V&>(*this));
        calm.SetValueActions(0);
        Value::operator=(calm);
        Value::SetValueActions(actions);
    }
};

}  // namespace kitbag
