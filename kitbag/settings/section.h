// Section: settings that lie in one section of the registry, declared together.
#pragma once

#include <kitbag/settings/declaration.h>
#include <kitbag/settings/fields.h>
#include <kitbag/values/value_collection.h>

#include <concepts>
#include <memory>

namespace kitbag {

/// What the declaration of a section inside another may say.
struct SectionOptions {
    Level level = 3;
    Literal label = {};
    Literal text = {};
    Literal help = {};
};

/// To derive from, as struct Player : kitbag::Section<Player>, with the constructors that it
/// brings:
///
///     Player player("Player");           // in that section, to which changes are written at once
///     Player player;                     // in memory only, until it is loaded or saved
///     Player player{*this, "Player"};    // inside another section, below its key
///
/// Settings are read on first use, tables and lists when the section is made. Visitors and casts
/// see a ValueCollection. LoadRegistry() reads all again, for programs that were told of a change.
template <class D>
class Section : public Fields<ValueCollection> {
 public:
    Section() = default;
    explicit Section(const TWinString<char>& section) {
        // The settings are declared later, and find their section's place then.
        Value::SetRegistrySection(section);
        Value::SetAutoRegistrySource(true);
    }
    Section(Owner& owner, Name name, const SectionOptions& options = {}) {
        Describe(*this, options);
        owner.Declare(*this, name.Get(), false);
    }
    Section(const Section&) = delete;  // a section is not copied: Edit() gives a working copy
    ~Section() override = default;

    /// A working copy, which has no place: it is changed, thrown away or assigned. An assigned
    /// section writes what differs, and asks for a restart where a setting differs that needs one.
    std::unique_ptr<D> Edit() const {
        static_assert(std::default_initializable<D>,
                      "a section can be made without arguments: its working copy has no place");
        auto copy = std::make_unique<D>();
        *copy = static_cast<const D&>(*this);
        return copy;
    }
    Value* Copy() const override { return Edit().release(); }

#pragma GCC diagnostic push
// Each derived section has an assignment of its own, which hides these on purpose.
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
    Section& operator=(const Section& other) {
        Fields::operator=(other);
        return *this;
    }
    Section& operator=(const Value& other) override {
        if (const auto* same = dynamic_cast<const D*>(&other))
            static_cast<D&>(*this) = *same;
        else
            Value::operator=(other);
        return *this;
    }
    Section& operator=(const ValueCollection& other) override {
        return *this = static_cast<const Value&>(other);
    }
#pragma GCC diagnostic pop
};

}  // namespace kitbag
