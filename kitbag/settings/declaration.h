// What every declaration of the layer says: its name, who sees it, what a change asks for, its
// texts.
#pragma once

#include <kitbag/frame/win_string.h>
#include <kitbag/values/value.h>

#include <utility>

namespace kitbag {

/// Not defined: the compiler names them where a declaration is wrong.
void a_setting_has_a_name();
void a_level_is_0_to_3();

/// The name of a setting in the registry, as it stands in the source code.
class Name {
 public:
    consteval Name(const char* text) : text_(text) {
        if (!text || !*text) a_setting_has_a_name();
    }
    const char* Get() const { return text_; }

 private:
    const char* text_;
};

/// A text for people, as it stands in the source code: settings keep no copies of them.
class Literal {
 public:
    constexpr Literal() = default;
    consteval Literal(const char* text) : text_(text) {}
    const char* Get() const { return text_; }

 private:
    const char* text_ = nullptr;
};

/// The least detailed view that shows a setting: 3 is seen by everybody, 0 by the most experienced
/// users alone.
class Level {
 public:
    consteval Level(int level) : level_(level) {
        if (level < 0 || level > 3) a_level_is_0_to_3();
    }
    operator Value::ValueAction() const { return Value::ValueAction(level_); }

 private:
    int level_;
};

/// Marks the settings of a row that tell it from the others.
struct Identifies {};
inline constexpr Identifies identifies;

/// What a settings screen needs to know of a value that is declared with the layer, and what all of
/// them can do.
class Declared {
 public:
    /// True where both hold the same, whatever their names and places.
    virtual bool SameAs(const Value& other) const = 0;
    virtual bool IsDefault() const = 0;
    /// Back to the default, which is not written: what is stored is deleted, so that a later
    /// version's default takes effect.
    virtual void Reset() = 0;

 protected:
    Declared() = default;
    Declared(const Declared&) = default;
    /// A declaration is not assigned.
    Declared& operator=(const Declared&) { return *this; }
    ~Declared() = default;

    /// Gives the value what its declaration says.
    template <class Options>
    void Describe(Value& value, const Options& options);
    template <class Options>
    void DescribeActions(Value& value, const Options& options);

 private:
    friend class DeclaredTexts;
    Literal label_, text_, help_;
};

/// Tells a settings screen what the declarations say. It has no state, so that every value, and
/// every copy of one, can point at the same source.
class DeclaredTexts final : public ValueInfoSource {
 public:
    bool GetDisplayName(const Value& value, TWinString<char>& text) override {
        return Fill(value, &Declared::label_, text);
    }
    bool GetDescription(const Value& value, TWinString<char>& text) override {
        return Fill(value, &Declared::text_, text);
    }
    bool GetHelpFile(const Value& value, TWinString<char>& text) override {
        return Fill(value, &Declared::help_, text);
    }

 private:
    static bool Fill(const Value& value, Literal Declared::*which, TWinString<char>& text) {
        const auto* declared = dynamic_cast<const Declared*>(&value);
        const char* literal = declared ? (declared->*which).Get() : nullptr;
        if (literal) text = literal;
        return literal;
    }
};
inline constinit DeclaredTexts declared_texts;

template <class Options>
void Declared::Describe(Value& value, const Options& options) {
    label_ = options.label;
    text_ = options.text;
    help_ = options.help;
    value.SetValueInfoSource(&declared_texts);
    value.SetMinimumUserInterfaceLevel(options.level);
    // Of a section inside another its settings say it.
    if constexpr (requires { options.restart; }) DescribeActions(value, options);
}

template <class Options>
void Declared::DescribeActions(Value& value, const Options& options) {
    if (options.restart) value.SetValueAction(Value::RestartNeededAction);
    if (options.reboot) value.SetValueAction(Value::RebootNeededAction);
    if (options.hidden) value.SetValueAction(Value::HiddenAction);
}

/// A section or a row, which settings are declared in: as their first argument, *this.
class Owner {
 public:
    virtual void Declare(Value& member, const TWinString<char>& name, bool identifying) = 0;

 protected:
    Owner() = default;
    Owner(const Owner&) = default;
    Owner& operator=(const Owner&) = default;
    ~Owner() = default;
};

}  // namespace kitbag
