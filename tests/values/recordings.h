// Rows, a table and a list as an application has them. The names of these classes are stored, so
// they are in no namespace.
#pragma once

#include <kitbag/kitbag.h>

#include <initializer_list>
#include <string>

/// The channel identifies it; 30 minutes by default.
struct Recording : ValueTableEntry {
    explicit Recording(const char* channel = "", long minutes = 0) {
        Recording::DeclareValues();
        Channel.SetValue(channel);
        Minutes.SetValue(minutes);
        Minutes.SetDefaultValue(30);
    }
    Recording(const Recording& other)
        : ValueTableEntry(other), Channel(other.Channel), Minutes(other.Minutes) {
        Recording::DeclareValues();
    }
    Recording& operator=(const Recording&) = default;
    Recording& operator=(const ValueTableEntry& other) override {
        return *this = dynamic_cast<const Recording&>(other);
    }
    using ValueTableEntry::operator=;
    Value* Copy() const override { return new Recording(*this); }
    void DeclareValues() override {
        DeclareValue(Channel, "Channel", true);
        DeclareValue(Minutes, "Minutes", false);
    }
    TStringValue Channel;
    Int32Value Minutes;
};

struct Recordings : ValueTable {
    Recordings(std::initializer_list<long> minutes = {}) {
        ValueTable::SetValueName("Tree");
        for (const long each : minutes)
            ValueTable::AddEntry(new Recording(std::to_string(each).c_str(), each));
    }
    Recordings(const Recordings&) = default;
    Recordings& operator=(const Recordings&) = default;
    using ValueTable::operator=;
    Value* Copy() const override { return new Recordings(*this); }
    ValueTableEntry* EntryFactory(const TWinString<char>& name) const override {
        return name == "class Recording" ? new Recording : nullptr;
    }
    bool UsesUniqueIdents() const override { return unique; }
    unsigned long DeclareVersion() const override { return 3; }

    Recording& Row(int index) const { return dynamic_cast<Recording&>(*at(index)); }
    /// "1 2 3": the minutes of all rows.
    std::string Minutes() const {
        std::string all;
        for (int i = 0; i < size(); ++i)
            all += (i ? " " : "") + (at(i) ? Row(i).Minutes.SaveStringDataOnly() : "null");
        return all;
    }
    bool unique = false;
};

/// A list of numbers, and of lists of them.
struct Notes : ValueList {
    Notes(std::initializer_list<long> numbers = {}) {
        ValueList::SetValueName("Tree");
        for (const long number : numbers) Add(number);
    }
    Notes(const Notes&) = default;
    Notes& operator=(const Notes&) = default;
    using ValueList::operator=;
    Value* Copy() const override { return new Notes(*this); }
    Value* EntryFactory(const TWinString<char>& name) const override {
        if (name == "class Notes") return new Notes;
        return name == "class Int32Value" ? new Int32Value : nullptr;
    }

    void Add(long number) {
        auto* entry = new Int32Value;
        entry->SetValue(number);
        ValueList::AddEntry(entry);
    }
    /// "1 2 3": the texts of all entries.
    std::string Texts() const {
        std::string all;
        for (int i = 0; i < size(); ++i)
            all += (i ? " " : "") + (at(i) ? at(i)->SaveStringDataOnly() : "null");
        return all;
    }
};
