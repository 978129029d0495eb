// List: values of one scalar class in order.
//
//     kitbag::List<TStringValue> recent{*this, "Recent files"};
//     recent.push_front("C:\\Recordings\\news.mpg");   // written at once
#pragma once

#include <kitbag/settings/datum.h>
#include <kitbag/settings/sequence.h>
#include <kitbag/values/value_list.h>

#include <memory>

namespace kitbag {

/// What the declaration of a list may say besides its name.
struct ListOptions {
    Level level = 3;
    bool restart = false;
    bool reboot = false;
    bool hidden = false;
    Literal label = {};
    Literal text = {};
    Literal help = {};
};

/// A list that is declared in a section or a row. It is kept as every ValueList is, below the key
/// of its own name; stored values of other classes are passed over,
/// and gone once it is written.
template <ScalarClass V>
class List : public Sequence<ValueList, Value, V> {
    using Base = Sequence<ValueList, Value, V>;

 public:
    List(Owner& owner, Name name, const ListOptions& options = {}) {
        this->Describe(*this, options);
        owner.Declare(*this, name.Get(), false);
    }
    List(const List& other) = default;
    ~List() override = default;

    void push_back(const DatumOf<V>& datum) { this->Adopt(Made(datum)); }
    void push_front(const DatumOf<V>& datum) {
        if (auto value = Made(datum); this->InsertEntry(0, *value))
            static_cast<void>(value.release());
    }

    using Base::AddEntry;
    bool AddEntry(Value& entry) override {
        NameNameless(entry);
        return Base::AddEntry(entry);
    }
    bool InsertEntry(int index, Value& entry) override {
        NameNameless(entry);
        return Base::InsertEntry(index, entry);
    }

    using Base::operator=;
    List& operator=(const List& other) {
        Base::operator=(other);
        return *this;
    }
    Value* Copy() const override { return new List(*this); }

 private:
    /// An element without a name would not be written.
    static void NameNameless(Value& entry) {
        if (entry.GetValueName().empty()) entry.SetValueName("Value");
    }
    static std::unique_ptr<V> Made(const DatumOf<V>& datum) {
        auto value = std::make_unique<V>();
        PutDatum(*value, datum);
        return value;
    }
};

}  // namespace kitbag
