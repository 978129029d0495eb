// Choice: one of the enumerators of an enumeration, with their names.
//
//     kitbag::Choice<Deinterlace> deinterlace{*this, "Deinterlace", Deinterlace::Adaptive,
//                                             {{Deinterlace::Off, "Off"},
//                                              {Deinterlace::Adaptive, "Adaptive"}}};
#pragma once

#include <kitbag/settings/declaration.h>
#include <kitbag/settings/setting.h>

#include <concepts>
#include <cstddef>
#include <type_traits>

namespace kitbag {

template <class E>
struct NamedEnumerator {
    E value;
    Literal name;
};

/// Stored as its number; visitors and casts see a UInt32Enum, whose ToString is the name. Only the
/// enumerators named here are held: another number is refused when it is set, and read as the
/// default when it is stored. Else as every Setting.
template <class E>
requires std::is_enum_v<E>
class Choice : public Setting<EnumeratorValue<E>> {
    using Base = Setting<EnumeratorValue<E>>;

 public:
    using Options = typename Base::Options;

    template <std::size_t n>
    Choice(Owner& owner, Name name, E byDefault, const NamedEnumerator<E> (&names)[n],
           const Options& options = {})
        : Base(owner, name, byDefault, options) {
        AddNames(names);
    }
    /// Part of a row's identifier.
    template <std::derived_from<Owner> O, std::size_t n>
    Choice(O& row, Name name, E byDefault, const NamedEnumerator<E> (&names)[n], Identifies,
           const Options& options = {})
        : Base(row, name, byDefault, identifies, options) {
        AddNames(names);
    }
    Choice(const Choice& other) = default;
    ~Choice() override = default;

    using Base::operator=;
    Choice& operator=(const Choice& other) = default;
    /// A plain copy's number, as a dialog that knows no enumeration has edited it.
    Choice& operator=(const UInt32Enum& other) override {
        static_cast<void>(other.GetValue());
        EnumeratorValue<E> same;
        same.UInt32Enum::operator=(other);
        Base::operator=(same);
        return *this;
    }
    Value* Copy() const override { return new Choice(*this); }

 private:
    void AddNames(const auto& names) {
        for (const auto& [value, name] : names)
            this->AddElement(static_cast<unsigned long>(value), name.Get());
    }
};

}  // namespace kitbag
