// EnumeratorValue: a UInt32Enum that holds the enumerators of an enumeration and nothing else.
#pragma once

#include <kitbag/values/uint32_enum.h>

namespace kitbag {

/// Its elements say which enumerators there are.
template <class E>
class EnumeratorValue : public UInt32Enum {
 public:
    using UInt32Enum::UInt32Enum;
    using UInt32Enum::operator=;
    EnumeratorValue(const EnumeratorValue& other) = default;
    EnumeratorValue& operator=(const EnumeratorValue& other) = default;
    ~EnumeratorValue() override = default;

    E GetEnumerator() const { return static_cast<E>(GetValue()); }

    /// Refuses a number that is none of them.
    void SetValue(unsigned long value) override {
        if (HasElement(value)) UInt32Enum::SetValue(value);
    }
    using UInt32Enum::LoadRegistry;
    /// A stored number that is none of them gives the default.
    void LoadRegistry() override {
        UInt32Enum::LoadRegistry();
        if (!HasElement(datum_)) UseDefaultValue();
    }
    Value* Copy() const override { return new EnumeratorValue(*this); }

 private:
    bool HasElement(unsigned long value) const {
        for (int i = 0; i < size(); ++i)
            if (at(i) == value) return true;
        return false;
    }
};

}  // namespace kitbag
