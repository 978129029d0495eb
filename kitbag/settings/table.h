// Table: rows of one class, found by their identifiers.
//
//     kitbag::Table<Channel> channels{*this, "Channels", {.unique = true}};
//     for (Channel& channel : channels) channel.frequency = 506000;   // written at once
#pragma once

#include <kitbag/settings/row.h>
#include <kitbag/settings/sequence.h>
#include <kitbag/values/value_table.h>

#include <concepts>
#include <memory>

namespace kitbag {

/// What the declaration of a table may say besides its name.
struct TableOptions {
    Level level = 3;
    /// A second row of one identifier is refused, also when it is stored.
    bool unique = false;
    bool restart = false;
    bool reboot = false;
    bool hidden = false;
    Literal label = {};
    Literal text = {};
    Literal help = {};
};

/// A table that is declared in a section or a row. It is kept as every ValueTable is, below the key
/// of its own name: stored rows of other classes are passed over, and gone once it is written.
template <class D>
class Table : public Sequence<ValueTable, ValueTableEntry, D> {
    using Base = Sequence<ValueTable, ValueTableEntry, D>;

 public:
    Table(Owner& owner, Name name, const TableOptions& options = {}) : unique_(options.unique) {
        static_assert(std::derived_from<D, Row<D>>,
                      "a row of a table is derived from kitbag::Row of itself");
        static_assert(std::default_initializable<D>,
                      "a row can be made without arguments: its table makes those that are stored");
        static_assert(std::copy_constructible<D>,
                      "a row can be copied: it holds settings, tables and lists, no sections");
        this->Describe(*this, options);
        owner.Declare(*this, name.Get(), false);
    }
    Table(const Table& other) = default;
    ~Table() override = default;

    /// False, and nothing is added, where the table has a row of that identifier and takes no two.
    bool push_back(const D& row) { return this->Adopt(std::make_unique<D>(row)); }

    void Sort(const TWinString<char>& memberName) override {
        ValueTable::Sort(memberName);
        this->Changed();
    }
    bool UsesUniqueIdents() const override { return unique_; }

    using Base::operator=;
    Table& operator=(const Table& other) {
        Base::operator=(other);
        return *this;
    }
    Value* Copy() const override { return new Table(*this); }

 private:
    bool unique_;
};

}  // namespace kitbag
