// ValueCollection: named member values as one value. ValueTableEntry: a collection that is a row of
// a ValueTable.
//
//     class Recording : public ValueTableEntry {
//      public:
//         Recording() { Recording::DeclareValues(); }
//         Recording(const Recording& other)
//             : ValueTableEntry(other), Channel(other.Channel), Minutes(other.Minutes) {
//             Recording::DeclareValues();
//         }
//         Recording& operator=(const Recording& other) = default;
//         Recording& operator=(const ValueTableEntry& other) override {
//             return *this = dynamic_cast<const Recording&>(other);
//         }
//         using ValueTableEntry::operator=;
//         Value* Copy() const override { return new Recording(*this); }
//         void DeclareValues() override {
//             DeclareValue(Channel, "Channel", true);  // part of the row's identifier
//             DeclareValue(Minutes, "Minutes", false);
//         }
//         TStringValue Channel;
//         UInt32Value Minutes;
//     };
//
// Members are declared once, in the constructors. Their order is the order of saving, loading,
// printing and of the parts of the identifier. A row needs its own Copy: tables are copied with it.
//
// Lists and tables may be members: each has a key of its own name below the section. Everything
// else is written into the section itself, so that members of one name overwrite each other, those
// of a collection within the collection included.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/container_value.h>
#include <kitbag/values/pointer_sequence.h>
#include <kitbag/values/text_values.h>
#include <kitbag/values/value.h>

/// Points at its members, which are normally fields of the derived object, and owns none of them.
/// It is saved and loaded in a section that its owner gives, one registry value for each member.
class KITBAG_API ValueCollection : public kitbag::ContainerValue<kitbag::PointerSequence<Value>> {
 public:
    ValueCollection();
    /// The copy has no members: the derived class declares the copy's own.
    ValueCollection(const ValueCollection& other);

    /// Assigns no member; the derived class assigns its own fields.
    virtual ValueCollection& operator=(const ValueCollection& other);
    using ContainerValue::operator=;
    /// True when both point at the very same members. Collections of equal content are not equal:
    /// callers ask whether they hold the same settings, not like ones.
    virtual bool operator==(const ValueCollection& other) const;
    /// Declares all members, in derived classes.
    virtual void DeclareValues();
    /// The name becomes the member's value name, its name in the registry.
    virtual void DeclareValue(Value& value, const TWinString<char>& name);
    virtual void DeclareValue(Value& value);
    /// The first member of exactly this name, or null.
    virtual Value* GetValue(const TWinString<char>& name) const;

    Value* Copy() const override;
    bool IsCollection() const override;
    /// "{name=datum,name=datum}"
    TWinString<char> SaveStringDataOnly() const override;
    using ContainerValue::LoadRegistry;
    using ContainerValue::SaveRegistry;
    void SaveRegistry(const TWinString<char>& section) const override;
    void LoadRegistry(const TWinString<char>& section) override;
    void Accept(CValueVisitor& visitor) const override;

    /// The member at an index. An index past the end lengthens the members by null pointers and
    /// gives null.
    Value* at(int index) const { return children_.At(index); }
    Value* operator[](int index) const { return at(index); }
};

/// Records its class in the registry, so that a table can create it again.
class KITBAG_API ValueTableEntry : public ValueCollection {
 public:
    ValueTableEntry();
    ValueTableEntry(const ValueTableEntry& other);

    virtual ValueTableEntry& operator=(const ValueTableEntry& other);
    /// Another row is assigned as a row and must be of the same class; of any other collection only
    /// what a collection assigns is taken over.
    ValueTableEntry& operator=(const ValueCollection& other) override;
    using ValueCollection::operator=;
    using ValueCollection::DeclareValue;
    virtual void DeclareValue(Value& value, const TWinString<char>& name, bool isIdent);
    /// The row's identifier: the SaveString of its identifier members, joined by "|".
    virtual void GetIdent(IdentValue& ident) const;
    virtual IdentValue GetIdent() const;

    Value* Copy() const override;
    bool IsTableEntry() const override;
    using ValueCollection::SaveRegistry;
    void SaveRegistry(const TWinString<char>& section) const override;
    void Accept(CValueVisitor& visitor) const override;

 private:
    friend class kitbag::KnownRows;

    kitbag::PointerSequence<Value> identMembers_;
};
