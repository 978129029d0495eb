// What tables and lists do alike: typed elements, written at once.
#pragma once

#include <kitbag/frame/compiler.h>
#include <kitbag/registry/tree.h>
#include <kitbag/settings/datum.h>
#include <kitbag/settings/declaration.h>
#include <kitbag/values/value.h>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace kitbag {

/// Goes over the elements of a table or list, without the gaps that indexing past the end of the
/// base classes leaves there. Slot is an iterator over pointers to elements.
template <class Slot, class Element>
class ElementIterator {
 public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = std::remove_const_t<Element>;
    using difference_type = std::ptrdiff_t;
    using pointer = Element*;
    using reference = Element&;

    ElementIterator() = default;
    ElementIterator(Slot slot, Slot end) : slot_(slot), end_(end) { SkipGaps(); }

    Element& operator*() const { return static_cast<Element&>(**slot_); }
    Element* operator->() const { return &**this; }
    ElementIterator& operator++() {
        ++slot_;
        SkipGaps();
        return *this;
    }
    ElementIterator operator++(int) {
        const ElementIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const ElementIterator& other) const = default;

    /// For the sequence itself.
    Slot GetSlot() const { return slot_; }

 private:
    void SkipGaps() {
        while (slot_ != end_ && !*slot_) ++slot_;
    }

    Slot slot_ = {};
    Slot end_ = {};
};

/// What a settings screen, which knows no element's class, adds elements with.
template <class Any>
class ElementMaker {
 public:
    /// A new element that holds its defaults; null for a class that needs arguments.
    virtual std::unique_ptr<Any> MakeElement() const = 0;

 protected:
    ElementMaker() = default;
    ElementMaker(const ElementMaker&) = default;
    ElementMaker& operator=(const ElementMaker&) = default;
    ~ElementMaker() = default;
};

/// A ValueTable or ValueList whose elements are all of one class. Base asks for elements of class
/// Any, which Element is derived from.
///
/// In a section that has a place, every change of the sequence writes its whole tree; a change of
/// an element writes that alone. This holds for the operations of Base, too.
template <class Base, class Any, class Element>
class Sequence : public Base, public Declared, public ElementMaker<Any> {
    using Slot = typename std::vector<Any*>::iterator;

 public:
    using iterator = ElementIterator<Slot, Element>;
    using const_iterator = ElementIterator<Slot, const Element>;

    bool empty() const { return begin() == end(); }
    iterator begin() { return {this->children_.begin(), this->children_.end()}; }
    const_iterator begin() const { return {this->children_.begin(), this->children_.end()}; }
    iterator end() { return {this->children_.end(), this->children_.end()}; }
    const_iterator end() const { return {this->children_.end(), this->children_.end()}; }

    /// Throws std::out_of_range where there is none.
    Element& at(int index) { return Existing(index); }
    const Element& at(int index) const { return Existing(index); }
    Element& operator[](int index) { return Existing(index); }
    const Element& operator[](int index) const { return Existing(index); }

    /// Invalidates the iterators.
    void erase(iterator position) {
        RemoveEntry(static_cast<int>(position.GetSlot() - this->children_.begin()));
    }
    void clear() { RemoveAllEntries(); }

    using Base::AddEntry;
    /// Refuses an element of another class.
    bool AddEntry(Any& entry) override { return Accepts(entry) && Changed(Base::AddEntry(entry)); }
    bool InsertEntry(int index, Any& entry) override {
        return Accepts(entry) && Changed(Base::InsertEntry(index, entry));
    }
    using Base::RemoveEntry;
    void RemoveEntry(int index) override {
        Base::RemoveEntry(index);
        Changed();
    }
    void RemoveAllEntries() override {
        Base::RemoveAllEntries();
        Changed();
    }
    void MoveEntry(int from, int to) override {
        Base::MoveEntry(from, to);
        Changed();
    }
    Any* EntryFactory(const TWinString<char>& className) const override {
        if constexpr (std::default_initializable<Element>)
            if (className == StoredClassName(typeid(Element))) return new Element;
        return nullptr;
    }

    std::unique_ptr<Any> MakeElement() const override {
        if constexpr (std::default_initializable<Element>) return std::make_unique<Element>();
        return nullptr;
    }

    using Base::SetAutoRegistrySource;
    /// Reads what is stored, unless it holds or has read something already.
    void SetAutoRegistrySource(bool cached) override {
        Base::SetAutoRegistrySource(cached);
        if (Value::IsEmpty())
            LoadRegistry();
        else
            BindElements();
    }
    void SaveRegistry() const override { Base::SaveRegistry(this->GetRegistrySection()); }
    void SaveRegistry(const TWinString<char>& section) const override {
        Value::SaveRegistry(section);
    }
    using Base::LoadRegistry;
    /// What is stored replaces the elements.
    void LoadRegistry() override {
        const Pause pause(*this);
        Base::RemoveAllEntries();
        Base::LoadRegistry(this->GetRegistrySection());
        BindElements();
    }
    void LoadRegistry(const TWinString<char>& section) override { Value::LoadRegistry(section); }

    /// The sequence's own flags ask only where the last assignment changed it.
    bool RestartNeeded() const override {
        return Needs(Value::RestartNeededAction, &Value::RestartNeeded);
    }
    bool RebootNeeded() const override {
        return Needs(Value::RebootNeededAction, &Value::RebootNeeded);
    }

    bool SameAs(const Value& other) const override {
        const auto* same = dynamic_cast<const Sequence*>(&other);
        return same && std::equal(begin(), end(), same->begin(), same->end(), SameElement);
    }
    /// There are no elements.
    bool IsDefault() const override { return empty(); }
    void Reset() override {
        const Pause pause(*this);
        RemoveAllEntries();
        const TWinString<char> tree = this->GetRegistrySection() + '\\' + this->GetValueName();
        unsigned long version = 0;
        if (this->HasAutoRegistrySource() && this->ExistsRegistry(tree, version))
            KB_DeleteSectionA(tree.c_str());
    }

    using Base::operator=;
    /// Each element is assigned the one in its place, and the whole is written where it differs.
    Sequence& operator=(const Sequence& other) {
        if (this == &other) return *this;
        assignedOther_ = !SameAs(other);
        Value::operator=(other);
        AssignElements(other);
        return *this;
    }
    /// Of any other table or list, the elements of this one's class.
    Sequence& operator=(const Base& other) override {
        if (const auto* same = dynamic_cast<const Sequence*>(&other)) return *this = *same;
        {
            const Pause pause(*this);
            Base::operator=(other);
        }
        assignedOther_ = true;
        Changed();
        return *this;
    }
    Sequence& operator=(const Value& other) override {
        if (const auto* alike = dynamic_cast<const Base*>(&other)) return *this = *alike;
        Value::operator=(other);
        return *this;
    }

 protected:
    Sequence() = default;
    Sequence(const Sequence& other) : Base(other), Declared(other), ElementMaker<Any>(other) {}
    ~Sequence() override = default;

    /// False, and the element is gone, where it is refused.
    bool Adopt(std::unique_ptr<Element> element) {
        if (!this->AddEntry(*element)) return false;
        static_cast<void>(element.release());
        return true;
    }

    void Changed() {
        this->MarkInitialised();
        if (paused_ || !this->HasAutoRegistrySource()) return;
        SaveRegistry();
        BindElements();
    }
    bool Changed(bool changed) {
        if (changed) Changed();
        return changed;
    }

 private:
    /// While it lives, changes are not written.
    class Pause {
     public:
        explicit Pause(Sequence& sequence)
            : paused_(sequence.paused_), before_(std::exchange(paused_, true)) {}
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;
        ~Pause() { paused_ = before_; }

     private:
        bool& paused_;
        bool before_;
    };

    static bool Accepts(const Any& entry) { return dynamic_cast<const Element*>(&entry); }
    static bool SameElement(const Element& a, const Element& b) {
        if constexpr (std::derived_from<Element, Declared>)
            return a.SameAs(b);
        else
            return DatumIn(a) == DatumIn(b);
    }

    Element& Existing(int index) const {
        Any* const entry = index >= 0 && index < this->size() ? this->children_.At(index) : nullptr;
        if (!entry) throw std::out_of_range("no such element");
        return static_cast<Element&>(*entry);
    }

    bool Needs(Value::ValueAction action, bool (Value::*needed)() const) const {
        const auto asks = [=](const Element& element) { return (element.*needed)(); };
        return (assignedOther_ && this->HasValueAction(action)) ||
               std::any_of(begin(), end(), asks);
    }

    /// From now on a change of an element is written to the element's own key.
    void BindElements() {
        if (!this->HasAutoRegistrySource()) return;
        for (Element& element : *this) element.SetAutoRegistrySource(true);
    }

    void RemoveGaps() {
        for (int index = this->size(); index-- > 0;)
            if (!this->children_.At(index)) RemoveEntry(index);
    }

    void AssignElements(const Sequence& other) {
        {
            const Pause pause(*this);
            RemoveGaps();
            int index = 0;
            for (const Element& theirs : other) {
                if (index < this->size())
                    at(index) = theirs;
                else
                    Adopt(std::make_unique<Element>(theirs));
                ++index;
            }
            while (this->size() > index) RemoveEntry(index);
            this->auxiliaryText_ = other.auxiliaryText_;
        }
        if (assignedOther_) Changed();
    }

    bool assignedOther_ = false;
    bool paused_ = false;
};

}  // namespace kitbag
