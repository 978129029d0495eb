// Configuration values: what a cached read costs, and whether tables grow linearly.

#include <bench/benches.h>
#include <kitbag/registry/tree.h>
#include <kitbag/values/scalar_values.h>
#include <kitbag/values/value_table.h>

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
    Row() { Row::DeclareValues(); }
    using ValueTableEntry::operator=;
    void DeclareValues() override { DeclareValue(Number, "Number", true); }
    UInt32Value Number;
};

class Table : public ValueTable {
 public:
    explicit Table(int rows) : name("Rows " + std::to_string(rows)) {
        ValueTable::SetValueName(name);
        for (int i = 0; i < rows; ++i) ValueTable::AddEntry(new Row);
    }
    using ValueTable::operator=;
    Value* Copy() const override { return nullptr; }
    ValueTableEntry* EntryFactory(const TWinString<char>&) const override { return new Row; }
    TWinString<char> name;
};

constexpr int kLarge = 4000;

/// One call handles 4,000 rows, in tables of the given size.
Calls SaveTables(int rows) {
    const auto table = std::make_shared<Table>(rows);
    return [=](int count) {
        for (int i = 0; i < count * (kLarge / rows); ++i) table->SaveRegistry("Bench");
    };
}
Calls LoadTables(int rows) {
    const auto table = std::make_shared<Table>(rows);
    table->SaveRegistry("Bench");
    return [=](int count) {
        for (int i = 0; i < count * (kLarge / rows); ++i) {
            table->RemoveAllEntries();
            table->LoadRegistry("Bench");
        }
    };
}

void CompareSizes(std::vector<Result>& results, const std::string& what, Calls (*work)(int rows)) {
    constexpr double kBound = 1.2;
    for (const int rows : {1000, kLarge})
        results.push_back(
            Measure(Comparison{what + ", 4000 rows in tables of " + std::to_string(rows),
                               work(rows), "in tables of 250", work(250), kBound, 5}));
}

}  // namespace

std::vector<Result> MeasureValues() {
    std::vector<Result> results = {CachedRead()};
    CompareSizes(results, "ValueTable save", SaveTables);
    CompareSizes(results, "ValueTable load", LoadTables);
    KB_DeleteSectionA("Bench");
    return results;
}

}  // namespace kitbag::bench
