// ValueList: values of any class in order, kept as a registry tree.
//
//     class Bookmarks : public ValueList {
//      public:
//         Bookmarks() { SetValueName("Bookmarks"); }
//         using ValueList::operator=;
//         Value* Copy() const override { return new Bookmarks(*this); }
//         Value* EntryFactory(const TWinString<char>& className) const override {
//             return className == "class TStringValue" ? new TStringValue : nullptr;
//         }
//     };
//
//     Bookmarks bookmarks;
//     auto bookmark = std::make_unique<TStringValue>();
//     bookmark->SetValueName("Film");
//     bookmark->SetValue("D:\\Films\\a.avi");
//     if (bookmarks.AddEntry(bookmark.get())) static_cast<void>(bookmark.release());
//     bookmarks.SaveRegistry("Player");
//
// A list named N that is saved in section S is the key S\N:
//
//     S\N            "Table Version"  DeclareVersion()
//     S\N\00000000   "Value Class"    "class TStringValue"
//                    "Value Name"     the element's display name
//                    and what the element itself saves
//     S\N\00000001   ...
//
// List and elements need value names. A list without one is the section itself, and a save deletes
// all that is in it; an element without one is not written and comes back with its default. Where
// an element has a source of texts, its display name is what is stored, and the element's name when
// it comes back.
//
// Class names are stored with their namespace: elements of a class that is renamed are lost. A
// whole key path, root and names of keys included, can have 260 characters. A save that is
// interrupted leaves what it has written by then, and not what was there before.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/container_value.h>
#include <kitbag/values/pointer_sequence.h>
#include <kitbag/values/value.h>

/// Owns its entries and deletes them when they are removed. IsTable, IsCollection and IsTableEntry
/// are false.
class KITBAG_API ValueList : public kitbag::ContainerValue<kitbag::OwnedSequence<Value>> {
 public:
    ValueList();
    /// Copies hold copies of the entries.
    ValueList(const ValueList& other);

    /// The other may be an entry, or lie in one. Where an entry cannot be copied, the list stays as
    /// it was.
    virtual ValueList& operator=(const ValueList& other);
    using ContainerValue::operator=;
    /// A new value of the class, or null for a class that the list does not take. The name is as
    /// stored, "class TStringValue". (The base's answer is null.)
    virtual Value* EntryFactory(const TWinString<char>& className) const = 0;
    /// True when there are no entries.
    virtual bool IsEmpty() const;
    /// Appends the object itself, which was made with new, and takes it over, also where it is
    /// handed over as a reference. False, and the object stays the caller's, for null. The list's
    /// level reaches the entries that are there when it is set, not those that are added later.
    virtual bool AddEntry(Value* entry);
    virtual bool AddEntry(Value& entry);
    /// Before the index, from 0 to size(); anything else is the end.
    virtual bool InsertEntry(int index, Value& entry);
    /// An index past the end lengthens the list first, as at does.
    virtual void RemoveEntry(int index);
    virtual void RemoveAllEntries();
    /// Moves an entry so that it ends at index to. A negative to is the front, one past the end the
    /// end. Throws std::out_of_range, "invalid vector<T> subscript", where there is no entry from.
    virtual void MoveEntry(int from, int to);
    virtual void MoveEntryRelative(int index, int delta);
    using ContainerValue::ExistsRegistry;
    /// The version of the tree at key, which is the list's own key, not its section. False, and
    /// 0xFFFFFFFF, where there is none. Loading does not look at it.
    virtual bool ExistsRegistry(const TWinString<char>& key, unsigned long& version) const;
    /// What a save writes as "Table Version".
    virtual unsigned long DeclareVersion() const;

    /// "[name=datum,\nname=datum]"
    TWinString<char> SaveStringDataOnly() const override;
    using ContainerValue::LoadRegistry;
    using ContainerValue::SaveRegistry;
    /// Deletes the list's key and writes it anew.
    void SaveRegistry(const TWinString<char>& section) const override;
    /// The stored elements replace the entries, but only where at least one of them can be created:
    /// an empty tree leaves a filled list filled. Elements of unknown classes are passed over.
    void LoadRegistry(const TWinString<char>& section) override;
    void Accept(CValueVisitor& visitor) const override;

    /// The slot of an entry. An index past the end lengthens the list by null pointers.
    Value*& at(int index) const { return children_.At(index); }
    Value*& operator[](int index) const { return at(index); }

 protected:
    /// For derived classes; it travels with copies, and nothing here reads it.
    TWinString<char> auxiliaryText_;
};
