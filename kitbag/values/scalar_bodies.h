// The bodies of ScalarValue: for whoever makes a scalar class, in the library or in a program.
// value.h shows one. In the library the class's source also has
//
//     template class kitbag::ScalarValue<DoubleValue, double>;
//
// and its header, before the class, the same with "extern" and KITBAG_API, so that programs link
// it.
#pragma once

#include <kitbag/values/scalar_base.h>

namespace kitbag {

template <class Class, class Datum>
ScalarValue<Class, Datum>::ScalarValue() = default;

template <class Class, class Datum>
ScalarValue<Class, Datum>::ScalarValue(const TWinString<char>& section,
                                       const TWinString<char>& name, bool cached)
    : DefaultValue(section, name, cached) {}

template <class Class, class Datum>
ScalarValue<Class, Datum>::ScalarValue(const ScalarValue&) = default;

template <class Class, class Datum>
ScalarValue<Class, Datum>& ScalarValue<Class, Datum>::operator=(const ScalarValue&) = default;

template <class Class, class Datum>
Value* ScalarValue<Class, Datum>::Copy() const {
    return new Class(static_cast<const Class&>(*this));
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::SaveRegistry() const {
    // Not where it holds a datum already: an uncached one would be read back before it is written.
    if (IsEmpty()) CheckInitialised();
    Stored<Datum>::Write(GetRegistrySection().c_str(), GetValueName().c_str(), datum_);
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::LoadRegistry() {
    DatumChanges();
    if (!ReadStored(datum_)) UseDefaultValue();
    MarkInitialised();
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::Accept(CValueVisitor& visitor) const {
    visitor.Visit(static_cast<const Class&>(*this));
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::UseDefaultValue() const {
    DatumChanges();
    DefaultValueSet(true);
    datum_ = default_;
}

template <class Class, class Datum>
const Datum& ScalarValue<Class, Datum>::Initialised() const {
    CheckInitialised();
    return datum_;
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::Commit() {
    MarkInitialised();
    if (HasAutoRegistrySource()) SaveRegistry();
}

template <class Class, class Datum>
void ScalarValue<Class, Datum>::Commit(const Datum& datum) {
    DatumChanges();
    datum_ = datum;
    Commit();
}

template <class Class, class Datum>
bool ScalarValue<Class, Datum>::ReadStored(Datum& datum) const {
    return Stored<Datum>::Read(GetRegistrySection().c_str(), GetValueName().c_str(), datum);
}

template <class Class, class Datum>
bool ScalarValue<Class, Datum>::IsStored() const {
    Datum ignored{};
    return ReadStored(ignored);
}

}  // namespace kitbag
