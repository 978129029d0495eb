// Row: settings that are a row of a table, declared together.
#pragma once

#include <kitbag/settings/fields.h>
#include <kitbag/values/pointer_sequence.h>
#include <kitbag/values/value_collection.h>

#include <cstddef>

namespace kitbag {

/// To derive from, as struct Channel : kitbag::Row<Channel>. Rows are copied and assigned whole.
/// Visitors and casts see a ValueTableEntry.
template <class D>
class Row : public Fields<ValueTableEntry> {
 public:
    Row() = default;
    Row(const Row& other) : Fields(other) { DeclareAlike(other); }
    ~Row() override = default;

    void Declare(Value& member, const TWinString<char>& name, bool identifying) override {
        Fields::Declare(member, name, identifying);
        if (identifying) identifying_.Append(member);
    }

    using Fields::GetIdent;
    void GetIdent(IdentValue& ident) const override {
        TWinString<char> text;
        for (const Value* member : identifying_)
            text.append(text.empty() ? "" : "|").append(member->SaveString());
        ident.SetValue(text);
    }

    Value* Copy() const override { return new D(static_cast<const D&>(*this)); }

#pragma GCC diagnostic push
// Each derived row has an assignment of its own, which hides these on purpose.
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
    Row& operator=(const Row& other) {
        Fields::operator=(other);
        return *this;
    }
    Row& operator=(const Value& other) override {
        if (const auto* same = dynamic_cast<const D*>(&other))
            static_cast<D&>(*this) = *same;
        else
            Value::operator=(other);
        return *this;
    }
    Row& operator=(const ValueCollection& other) override {
        return *this = static_cast<const Value&>(other);
    }
    Row& operator=(const ValueTableEntry& other) override {
        return *this = static_cast<const Value&>(other);
    }
#pragma GCC diagnostic pop

 private:
    /// The members of a copy are not there yet, but they will lie where those of the other lie in
    /// it. Thus a row needs no copy constructor of its own that declares them again.
    void DeclareAlike(const Row& other) {
        for (Value* member : other.children_)
            if (Value* mine = Counterpart(other, member)) Fields::DeclareValue(*mine);
        for (Value* member : other.identifying_)
            if (Value* mine = Counterpart(other, member)) identifying_.Append(*mine);
    }
    /// None for what is no member of the row itself.
    Value* Counterpart(const Row& other, Value* member) {
        const auto* const begin = reinterpret_cast<const std::byte*>(static_cast<const D*>(&other));
        const std::ptrdiff_t offset = reinterpret_cast<const std::byte*>(member) - begin;
        const bool within = member && offset >= 0 && offset < std::ptrdiff_t{sizeof(D)};
        auto* const mine = reinterpret_cast<std::byte*>(static_cast<D*>(this));
        return within ? reinterpret_cast<Value*>(mine + offset) : nullptr;
    }

    PointerSequence<Value> identifying_;
};

}  // namespace kitbag
