// How a setting holds its datum, for each scalar class.
#pragma once

#include <kitbag/registry/stored_values.h>
#include <kitbag/registry/tree.h>
#include <kitbag/settings/declaration.h>
#include <kitbag/settings/enumerator_value.h>
#include <kitbag/settings/wide_text_value.h>
#include <kitbag/values/boolean_value.h>
#include <kitbag/values/byte_array_value.h>
#include <kitbag/values/filename_value.h>
#include <kitbag/values/guid_value.h>
#include <kitbag/values/number_values.h>
#include <kitbag/values/text_values.h>

#include <algorithm>
#include <concepts>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace kitbag {

template <class Class, class Datum>
Datum DatumTypeOf(const ScalarValue<Class, Datum>*);
std::wstring DatumTypeOf(const WideTextValue*);
template <class E>
E DatumTypeOf(const EnumeratorValue<E>*);

/// A class that holds one datum, such as UInt32Value or FilenameValue.
template <class V>
concept ScalarClass = requires(const V* value) {
    DatumTypeOf(value);
};

template <ScalarClass V>
using DatumOf = decltype(DatumTypeOf(static_cast<const V*>(nullptr)));

template <class T>
inline constexpr bool is_truth_value_or_character = false;
template <>
inline constexpr bool is_truth_value_or_character<bool> = true;
template <>
inline constexpr bool is_truth_value_or_character<char> = true;
template <>
inline constexpr bool is_truth_value_or_character<wchar_t> = true;

template <class T>
concept Number = std::integral<T> && !is_truth_value_or_character<T>;

/// True where a T is what a setting of that datum is declared with and assigned: a number for a
/// number, a truth value for a truth value, a text for a text.
template <class T, class Datum>
concept KindOf = (Number<Datum> && Number<T>) || std::same_as<T, Datum> ||
                 (std::is_class_v<Datum> && std::convertible_to<const T&, Datum>);

// In parentheses, for programs in which min and max are macros of the system's headers. Variables,
// for the compiler stumbles over calls in the initialisers of Range.
template <class T>
inline constexpr T lowest_number = (std::numeric_limits<T>::min)();
template <class T>
inline constexpr T highest_number = (std::numeric_limits<T>::max)();

/// The numbers that a setting may hold; both ends belong to it.
template <class T>
struct Range {
    T lowest = lowest_number<T>;
    T highest = highest_number<T>;
};

/// The words for true and false; BooleanValue's types.
enum class Words { TrueFalse, OnOff, YesNo };

template <class V>
DatumOf<V> DatumIn(const V& value) {
    return value.GetValue();
}
template <class E>
E DatumIn(const EnumeratorValue<E>& value) {
    return value.GetEnumerator();
}
inline std::wstring DatumIn(const WideTextValue& value) { return value.GetWideValue(); }
inline std::vector<unsigned char> DatumIn(const ByteArrayValue& value) {
    unsigned long size = 0;
    const unsigned char* bytes = value.GetValue(&size);
    return {bytes, bytes + size};
}

void PutDatum(auto& value, const auto& datum) { value.SetValue(datum); }
void PutDatum(std::derived_from<ByteArrayValue> auto& value, const auto& bytes) {
    std::ranges::copy(bytes, value.SetValueSize(static_cast<unsigned long>(bytes.size())));
    value.SetValue();
}

/// One way to the datum of every class, which costs no more than the class's own.
template <class V>
class Held : public V {
 public:
    using V::operator=;
    using V::SetAutoRegistrySource;
    void SetAutoRegistrySource(bool cached) override {
        isReadAlways_ = !cached;
        V::SetAutoRegistrySource(cached);
    }

 protected:
    static constexpr bool kIsChoice = std::is_enum_v<DatumOf<V>>;
    static constexpr bool kIsWide = std::derived_from<V, WideTextValue>;

    /// Where it is held, but for an enumerator, which is held as its number.
    decltype(auto) Datum() const {
        // Asked here, for a virtual call into the library takes a detour.
        if (isReadAlways_ || this->IsEmpty()) this->CheckInitialised();
        if constexpr (kIsChoice)
            return static_cast<DatumOf<V>>(this->datum_);
        else if constexpr (kIsWide)
            return this->GetWideValue();
        else
            return std::as_const(this->datum_);
    }

 private:
    bool isReadAlways_ = false;
};

/// Texts and truth values convert to their datum by themselves; the others do it here.
template <class V>
class Convertible : public Held<V> {
 public:
    using Held<V>::operator=;
};
template <class V>
requires(!std::convertible_to<const V&, DatumOf<V>>) class Convertible<V> : public Held<V> {
 public:
    using Held<V>::operator=;
    operator DatumOf<V>() const { return this->Datum(); }
};

/// A number that stays in its range, whoever sets it and whatever is stored.
template <class V>
class WithinRange : public Convertible<V> {
 public:
    using V::operator=;
    /// For settings screens.
    const Range<DatumOf<V>>& GetRange() const { return range_; }
    void SetValue(DatumOf<V> value) override { V::SetValue(Fitted(value)); }
    using V::LoadRegistry;
    void LoadRegistry() override {
        V::LoadRegistry();
        this->datum_ = Fitted(this->datum_);
    }

 protected:
    /// The nearest number in the range.
    template <Number T>
    DatumOf<V> Fitted(T number) const {
        if (std::cmp_less(number, range_.lowest)) return range_.lowest;
        if (std::cmp_greater(number, range_.highest)) return range_.highest;
        return static_cast<DatumOf<V>>(number);
    }

    Range<DatumOf<V>> range_;
};

/// Any other datum is right as it is.
template <class V>
class AsItIs : public Convertible<V> {
 public:
    using V::operator=;
    using V::LoadRegistry;
    void LoadRegistry() override {
        // An array alone keeps what it has where nothing is stored.
        if constexpr (std::derived_from<V, ByteArrayValue>) this->datum_ = this->default_;
        V::LoadRegistry();
    }

 protected:
    static const DatumOf<V>& Fitted(const DatumOf<V>& datum) { return datum; }
};

/// What a setting does with its datum and its default.
template <class V>
class Kept : public std::conditional_t<Number<DatumOf<V>>, WithinRange<V>, AsItIs<V>> {
    using Base = std::conditional_t<Number<DatumOf<V>>, WithinRange<V>, AsItIs<V>>;

 public:
    using Base::operator=;

 protected:
    using Base::kIsChoice;
    using Base::kIsWide;
    static constexpr bool kIsFilename = std::derived_from<V, FilenameValue>;

    DatumOf<V> ByDefault() const {
        if constexpr (kIsChoice)
            return static_cast<DatumOf<V>>(this->default_);
        else if constexpr (kIsWide)
            return this->GetWideDefaultValue();
        else
            return this->default_;
    }
    void Put(const DatumOf<V>& datum) {
        if constexpr (kIsChoice)
            this->SetValue(static_cast<unsigned long>(datum));
        else
            PutDatum(static_cast<V&>(*this), datum);
    }
    void PutDefault(const DatumOf<V>& datum) {
        if constexpr (std::derived_from<V, ByteArrayValue>)
            this->default_ = datum;
        else if constexpr (kIsChoice)
            this->SetDefaultValue(static_cast<unsigned long>(datum));
        else
            this->SetDefaultValue(this->Fitted(datum));
    }

    bool Equals(const V& other) const {
        // First, for it reads what stands beside the datum, too.
        if (this->Datum() != DatumIn(other)) return false;
        if constexpr (kIsFilename)
            return this->IsDirectory() == other.IsDirectory() &&
                   this->MustExist() == other.MustExist() &&
                   this->GetFilterString() == other.GetFilterString();
        else
            return true;
    }

    /// Assigns the other, but for its default.
    void TakeOver(const V& other) {
        const DatumOf<V> byDefault = ByDefault();
        static_cast<V&>(*this).V::operator=(other);
        PutDefault(byDefault);
        if constexpr (Number<DatumOf<V>>) this->datum_ = this->Fitted(this->datum_);
    }

    void DeleteStored() const {
        const TWinString<char> name = this->GetValueName();
        DeleteStored(name);
        if constexpr (kIsFilename)
            for (const char* companion : {"/filter", "/Is directory", "/Must exist"})
                DeleteStored(name + companion);
    }

 private:
    void DeleteStored(const TWinString<char>& name) const {
        const char* section = this->GetRegistrySection().c_str();
        DWORD size = 0;
        // Not blindly: a deletion creates the section.
        if (KB_GetDataSizeA(section, name.c_str(), &size)) KB_DeleteValueA(section, name.c_str());
    }
};

}  // namespace kitbag
