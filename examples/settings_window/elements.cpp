#include "elements.h"

#include <utility>

namespace {

/// What tables and lists do alike. Any is the class of the elements that they ask for.
template <class Sequence, class Any>
class SequenceElements : public Elements {
 public:
    explicit SequenceElements(Sequence& sequence) : sequence_(sequence) {
        for (int i = sequence.size(); i-- > 0;)
            if (!sequence.at(i)) sequence.RemoveEntry(i);
    }

    int Size() const override { return sequence_.size(); }
    Value& At(int index) const override { return *sequence_.at(index); }
    std::unique_ptr<Value> Make() const override {
        if (const auto* maker = dynamic_cast<const kitbag::ElementMaker<Any>*>(&sequence_))
            return maker->MakeElement();
        // One that is there can be copied, where the class is not declared with the layer.
        return Size() > 0 ? std::unique_ptr<Value>(At(0).Copy()) : nullptr;
    }
    void Insert(int index, std::unique_ptr<Value> element) override {
        auto* typed = dynamic_cast<Any*>(element.get());
        if (typed && sequence_.InsertEntry(index, *typed)) static_cast<void>(element.release());
    }
    void Remove(int index) override { sequence_.RemoveEntry(index); }
    void Move(int from, int to) override { sequence_.MoveEntry(from, to); }

 protected:
    Sequence& sequence_;
};

class TableElements final : public SequenceElements<ValueTable, ValueTableEntry> {
 public:
    using SequenceElements::SequenceElements;
    std::wstring Objection(const Value& element, int index) const override {
        const auto* row = dynamic_cast<const ValueTableEntry*>(&element);
        if (!row || !sequence_.UsesUniqueIdents()) return {};
        const int same = sequence_.FindEntryIndex(row->GetIdent());
        return same < 0 || same == index ? L"" : L"There is one of that name already.";
    }
    int LevelInside(int level) const override { return level; }
    std::vector<Value*> Shown(Value& element) const override {
        std::vector<Value*> members;
        const auto* row = dynamic_cast<const ValueTableEntry*>(&element);
        for (int i = 0; row && i < row->size(); ++i)
            if (row->at(i)) members.push_back(row->at(i));
        return members;
    }
};

class ListElements final : public SequenceElements<ValueList, Value> {
 public:
    using SequenceElements::SequenceElements;
    std::unique_ptr<Value> Make() const override {
        std::unique_ptr<Value> made = SequenceElements::Make();
        // Lists know their entries by their places; the name is what a page calls this one.
        if (made && made->GetValueName().empty()) made->SetValueName("Entry");
        return made;
    }
    std::wstring Objection(const Value&, int) const override { return {}; }
    int LevelInside(int) const override { return 0; }
    std::vector<Value*> Shown(Value& element) const override { return {&element}; }
};

}  // namespace

std::unique_ptr<Elements> ElementsOf(ValueTable& table) {
    return std::make_unique<TableElements>(table);
}
std::unique_ptr<Elements> ElementsOf(ValueList& list) {
    return std::make_unique<ListElements>(list);
}
