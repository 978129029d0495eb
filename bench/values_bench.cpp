// Configuration values: what a cached read costs, and whether tables grow linearly.

#include <bench/benches.h>
#include <kitbag/registry/tree.h>
#include <kitbag/values/number_values.h>
#include <kitbag/values/value_table.h>

#include <cmath>
#include <memory>
#include <string>

namespace kitbag::bench {

namespace {

struct Field {
    virtual ~Field() = default;
    virtual unsigned long GetValue() const { return field; }
    unsigned long field = 7;
};

Result CachedRead() {
    static UInt32Value value("Bench", "Cached", true);
    static Field field;
    static const Field* volatile reference = &field;
    static const UInt32Value* volatile library = &value;
    return Measure(Comparison{"UInt32Value::GetValue, cached",
                              [](int count) {
                                  for (int i = 0; i < count; ++i) Keep(library->GetValue());
                              },
                              "a virtual call that returns a field",
                              [](int count) {
                                  for (int i = 0; i < count; ++i) Keep(reference->GetValue());
                              },
                              3});
}

class Row : public ValueTableEntry {
 public:
    explicit Row(unsigned long number = 0) {
        Row::DeclareValues();
        Number.SetValue(number);
        Shuffled.SetValue(number * 2654435761u);
    }
    using ValueTableEntry::operator=;
    void DeclareValues() override {
        DeclareValue(Number, "Number", true);
        DeclareValue(Shuffled, "Shuffled", false);
    }
    UInt32Value Number, Shuffled;
};

class Table : public ValueTable {
 public:
    Table(int rows, bool unique) : name("Rows " + std::to_string(rows)), unique_(unique) {
        ValueTable::SetValueName(name);
        AddRows(rows);
    }
    using ValueTable::operator=;
    Value* Copy() const override { return nullptr; }
    ValueTableEntry* EntryFactory(const TWinString<char>&) const override { return new Row; }
    bool UsesUniqueIdents() const override { return unique_; }

    void AddRows(int rows) {
        for (int i = 0; i < rows; ++i) AddEntry(new Row(static_cast<unsigned long>(i)));
    }
    TWinString<char> name;

 private:
    const bool unique_;
};

constexpr int kLarge = 4000;
constexpr int kSmall = 250;

/// One call handles 4,000 rows, in tables of the given size.
Calls InTablesOf(int rows, bool unique, void (*handle)(Table& table, int rows)) {
    const auto table = std::make_shared<Table>(rows, unique);
    table->SaveRegistry("Bench");
    return [=](int count) {
        for (int i = 0; i < count * (kLarge / rows); ++i) handle(*table, rows);
    };
}

void Save(Table& table, int) { table.SaveRegistry("Bench"); }
void Load(Table& table, int) {
    table.RemoveAllEntries();
    table.LoadRegistry("Bench");
}
void Add(Table& table, int rows) {
    table.RemoveAllEntries();
    table.AddRows(rows);
}
void FindLast(Table& table, int rows) {
    Keep(table.FindEntry(IdentValue("Number=" + std::to_string(rows - 1))));
}
void Sort(Table& table, int) {
    table.Sort("Shuffled");
    table.Sort("Number");
}

struct Handling {
    const char* name;
    bool unique;
    void (*handle)(Table& table, int rows);
    double bound;
    /// As many rows take longer to sort in larger tables, by as much as the logarithm of their
    /// size.
    bool sorts = false;
};

void CompareSizes(std::vector<Result>& results, const Handling& handling) {
    for (const int rows : {1000, kLarge}) {
        const double growth = handling.sorts ? std::log(rows) / std::log(kSmall) : 1;
        results.push_back(Measure(Comparison{
            std::string(handling.name) + ", 4000 rows in tables of " + std::to_string(rows),
            InTablesOf(rows, handling.unique, handling.handle), "in tables of 250",
            InTablesOf(kSmall, handling.unique, handling.handle), handling.bound * growth, 5}));
    }
}

}  // namespace

std::vector<Result> MeasureValues() {
    std::vector<Result> results = {CachedRead()};
    for (const Handling& handling : {Handling{"ValueTable save", false, Save, 1.2},
                                     Handling{"ValueTable load", false, Load, 1.2},
                                     Handling{"ValueTable load, unique", true, Load, 1.3},
                                     Handling{"ValueTable add, unique", true, Add, 1.3},
                                     Handling{"FindEntry, unique", true, FindLast, 1.3},
                                     Handling{"Sort, unique", true, Sort, 1.3, true}})
        CompareSizes(results, handling);
    KB_DeleteSectionA("Bench");
    return results;
}

}  // namespace kitbag::bench
