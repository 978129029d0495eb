// The sequences of pointers behind collections, lists and tables.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <utility>
#include <vector>

namespace kitbag {

/// Pointers in order, which it does not own.
template <class T>
class PointerSequence {
 public:
    int Size() const { return static_cast<int>(slots_.size()); }
    bool operator==(const PointerSequence& other) const = default;

    auto begin() { return slots_.begin(); }
    auto begin() const { return slots_.begin(); }
    auto end() { return slots_.end(); }
    auto end() const { return slots_.end(); }
    const std::vector<T*>& Slots() const { return slots_; }

    /// A range that is its own iterator.
    class IndexWalk {
     public:
        using value_type = T*;
        using difference_type = std::ptrdiff_t;

        IndexWalk() = default;
        explicit IndexWalk(const std::vector<T*>& slots) : slots_(&slots) {}
        IndexWalk begin() const { return *this; }
        std::default_sentinel_t end() const { return {}; }

        T* operator*() const { return (*slots_)[index_]; }
        IndexWalk& operator++() {
            ++index_;
            return *this;
        }
        void operator++(int) { ++index_; }
        bool operator==(std::default_sentinel_t) const { return index_ >= slots_->size(); }

     private:
        const std::vector<T*>* slots_ = nullptr;
        std::size_t index_ = 0;
    };
    /// For visits of objects that may append or remove others meanwhile: the walk stays whole.
    IndexWalk ByIndex() const { return IndexWalk(slots_); }

    void Append(T& object) { slots_.push_back(&object); }

    /// The slot at an index. An index past the end lengthens the sequence by null pointers: callers
    /// probe by index and take a null for the end. A negative one counts as unsigned and asks for
    /// more than there can be (std::length_error).
    T*& At(int index) {
        const auto position = static_cast<std::size_t>(index);
        if (position >= slots_.size()) slots_.resize(std::max(position, position + 1));
        return slots_[position];
    }

 protected:
    auto Position(std::size_t index) {
        return slots_.begin() + static_cast<std::ptrdiff_t>(std::min(index, slots_.size()));
    }

    std::vector<T*> slots_;
};

/// Heap objects in order, deleted with the sequence. T may be incomplete where no object is
/// removed.
template <class T>
class OwnedSequence : public PointerSequence<T> {
    using Base = PointerSequence<T>;
    using Base::slots_;

 public:
    OwnedSequence() = default;
    OwnedSequence(const OwnedSequence&) = delete;
    OwnedSequence& operator=(const OwnedSequence&) = delete;
    ~OwnedSequence() { Clear(); }

    /// Before the index; at the end for an index past the end.
    void Insert(int index, T& object) {
        slots_.insert(Base::Position(static_cast<std::size_t>(index)), &object);
    }

    void Remove(int index) {
        T* object = Base::At(index);
        slots_.erase(Base::Position(static_cast<std::size_t>(index)));
        delete object;
    }

    void Clear() {
        for (T* object : std::exchange(slots_, {})) delete object;
    }

    /// Takes the object at from out and puts it back so that it ends at index to, at most at the
    /// end. A negative to is the front.
    void Move(int from, int to) {
        to = std::max(to, 0);
        if (from == to) return;
        // Callers catch it and compare the message.
        if (static_cast<std::size_t>(from) >= slots_.size())
            throw std::out_of_range("invalid vector<T> subscript");
        const auto source = slots_.begin() + from;
        const auto target = slots_.begin() + std::min(to, Base::Size() - 1);
        if (source < target)
            std::rotate(source, source + 1, target + 1);
        else
            std::rotate(target, source, source + 1);
    }
};

}  // namespace kitbag
