// ValueTable: rows in order, found by their identifiers, kept as a registry tree.
//
//     class Recordings : public ValueTable {
//      public:
//         Recordings() { SetValueName("Recordings"); }
//         using ValueTable::operator=;
//         Value* Copy() const override { return new Recordings(*this); }
//         ValueTableEntry* EntryFactory(const TWinString<char>& className) const override {
//             return className == "class Recording" ? new Recording : nullptr;
//         }
//         bool UsesUniqueIdents() const override { return true; }
//     };
//
//     Recordings recordings;
//     auto recording = std::make_unique<Recording>();
//     recording->Channel.SetValue("News");
//     if (recordings.AddEntry(recording.get())) static_cast<void>(recording.release());
//     recordings.SaveRegistry("Recorder");
//
// A table named N that is saved in section S is the key S\N:
//
//     S\N            "Table Version"           DeclareVersion()
//     S\N\00000000   "ValueTableEntry Class"   "class Recording"
//                    and one value for each member of the row
//     S\N\00000001   ...
//
// A table without a value name is the section itself, and a save deletes all that is in it; a
// member without one is not written. Class names are stored with their namespace: rows of a class
// that is renamed are lost. A whole key path, root and names of keys included, can have 260
// characters. A save that is interrupted leaves what it has written by then, and not what was there
// before.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/container_value.h>
#include <kitbag/values/pointer_sequence.h>
#include <kitbag/values/value_collection.h>

/// Owns its rows and deletes them when they are removed. IsTable, IsCollection and IsTableEntry are
/// false. What is not commented here is as in ValueList.
class KITBAG_API ValueTable
    : public kitbag::ContainerValue<kitbag::OwnedSequence<ValueTableEntry>> {
 public:
    ValueTable();
    ValueTable(const ValueTable& other);

    virtual ValueTable& operator=(const ValueTable& other);
    using ContainerValue::operator=;
    virtual ValueTableEntry* EntryFactory(const TWinString<char>& className) const = 0;
    virtual bool IsEmpty() const;
    /// Takes the row over, also where it is handed over as a reference. Refuses null and, in a
    /// table with unique identifiers, a row whose identifier is there already; a refused row stays
    /// the caller's. The table's level reaches the rows that are there when it is set, not later
    /// ones.
    virtual bool AddEntry(ValueTableEntry* entry);
    virtual bool AddEntry(ValueTableEntry& entry);
    /// Takes every row, whatever its identifier.
    virtual bool InsertEntry(int index, ValueTableEntry& entry);
    /// Where several rows have the identifier, the first one is meant; nothing happens where none
    /// has it.
    virtual void RemoveEntry(IdentValue& ident);
    virtual void RemoveEntry(int index);
    virtual void RemoveAllEntries();
    virtual void MoveEntry(int from, int to);
    virtual void MoveEntryRelative(IdentValue& ident, int delta);
    virtual void MoveEntryRelative(int index, int delta);
    /// The first row with a member of this name and of the same datum text as the value, or null.
    virtual ValueTableEntry* FindEntry(const TWinString<char>& memberName,
                                       const Value& value) const;
    /// The first row with the identifier, or null.
    virtual ValueTableEntry* FindEntry(const IdentValue& ident) const;
    /// Its index, or -1.
    virtual int FindEntryIndex(const IdentValue& ident) const;
    /// Orders the rows by a member, as its Compare says; the rows that lack it come last.
    virtual void Sort(const TWinString<char>& memberName);
    /// True in tables that refuse a second row of one identifier.
    virtual bool UsesUniqueIdents() const;
    using ContainerValue::ExistsRegistry;
    virtual bool ExistsRegistry(const TWinString<char>& key, unsigned long& version) const;
    /// Appends the rows stored in section\subsection. Unlike a list, a table keeps the rows it has:
    /// components merge several trees into one table, and empty it first where they want one alone.
    /// Rows of unknown classes are passed over, refused ones deleted.
    virtual void LoadRegistry(const TWinString<char>& section, const TWinString<char>& subsection);
    virtual unsigned long DeclareVersion() const;

    TWinString<char> SaveStringDataOnly() const override;
    using ContainerValue::SaveRegistry;
    void SaveRegistry(const TWinString<char>& section) const override;
    using ContainerValue::LoadRegistry;
    /// The same for the tree of the table's own name.
    void LoadRegistry(const TWinString<char>& section) override;
    void Accept(CValueVisitor& visitor) const override;

    /// The slot of a row. An index past the end lengthens the table by null pointers.
    ValueTableEntry*& at(int index) const { return children_.At(index); }
    ValueTableEntry*& operator[](int index) const { return at(index); }

 protected:
    TWinString<char> auxiliaryText_;
};
