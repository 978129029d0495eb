// Rows, a table and a list as an application has them. The names of these classes are stored, so
// they are in no namespace.
#pragma once

#include <kitbag/kitbag.h>

#include <initializer_list>
#include <string>

/// "1 2 null": the numbers of all entries, or the minutes of all rows.
std::string Shown(const auto& container) {
    std::string all;
    for (int i = 0; i < container.size(); ++i) {
        const auto* row = dynamic_cast<const ValueCollection*>(container[i]);
        const Value* number = row ? row->GetValue("Minutes") : container[i];
        all += (i ? " " : "") + (number ? number->SaveStringDataOnly() : "null");
    }
    return all;
}

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
    using Entry = Recording;
    Recordings(std::initializer_list<long> minutes = {}) {
        ValueTable::SetValueName("Tree");
        for (const long each : minutes) ValueTable::AddEntry(Made(each));
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

    static Entry* Made(long minutes) {
        return new Recording(std::to_string(minutes).c_str(), minutes);
    }
    Recording& Row(int index) const { return dynamic_cast<Recording&>(*at(index)); }
    bool unique = false;
};

/// A list of numbers.
struct Notes : ValueList {
    using Entry = Int32Value;
    Notes(std::initializer_list<long> numbers = {}) {
        ValueList::SetValueName("Tree");
        for (const long number : numbers) ValueList::AddEntry(Made(number));
    }
    Notes(const Notes&) = default;
    Notes& operator=(const Notes&) = default;
    using ValueList::operator=;
    Value* Copy() const override { return new Notes(*this); }
    Value* EntryFactory(const TWinString<char>& name) const override {
        return name == "class Int32Value" ? new Int32Value : nullptr;
    }

    static Entry* Made(long number) {
        auto* entry = new Int32Value;
        entry->SetValue(number);
        return entry;
    }
};
