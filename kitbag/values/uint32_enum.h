// UInt32Enum: a number whose values have names.
//
//     class Quality : public UInt32Enum {
//      public:
//         using UInt32Enum::operator=;
//         Value* Copy() const override { return new Quality(*this); }
//         void InitialiseElements() override {
//             AddElement(0, "Low");
//             AddElement(1, "High");
//         }
//     };
//
//     Quality quality;
//     quality.InitialiseElements();
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/number_values.h>

#include <vector>

/// Stored as its number; the names are not stored.
class KITBAG_API UInt32Enum : public UInt32Value {
 public:
    using UInt32Value::UInt32Value;

    virtual UInt32Enum& operator=(const UInt32Enum& other) = default;
    using UInt32Value::operator=;
    virtual int size() const;
    /// Adds the elements, in derived enumerations. Their owner calls it; no constructor does.
    virtual void InitialiseElements();
    /// Appends an element; several may share a value or a name.
    virtual void AddElement(unsigned long value, const TWinString<char>& name);
    /// The name of the first element of the value; empty where there is none.
    virtual TWinString<char> Lookup(unsigned long value) const;

    Value* Copy() const override;
    /// The current value's name alone. SaveString keeps the number, so that a row's identifier does
    /// not change with the language of the names.
    TWinString<char> ToString() const override;
    void Accept(CValueVisitor& visitor) const override;

    /// The value of the element at an index; 0 where there is none.
    unsigned long at(int index) const;
    unsigned long operator[](int index) const { return at(index); }

 private:
    struct Element {
        unsigned long value;
        TWinString<char> name;
    };
    std::vector<Element> elements_;
};
