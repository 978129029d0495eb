// The rows of a table and the entries of a list, as the window edits both.
#pragma once

#include <kitbag/settings.h>

#include <memory>
#include <string>
#include <vector>

/// In the order of the table or list, without the gaps that it may have.
class Elements {
 public:
    Elements() = default;
    Elements(const Elements&) = delete;
    Elements& operator=(const Elements&) = delete;
    virtual ~Elements() = default;

    virtual int Size() const = 0;
    virtual Value& At(int index) const = 0;
    /// A new one with its defaults, which is not there yet; null where its class is not known.
    virtual std::unique_ptr<Value> Make() const = 0;
    virtual void Insert(int index, std::unique_ptr<Value> element) = 0;
    virtual void Remove(int index) = 0;
    virtual void Move(int from, int to) = 0;
    /// Why the element cannot stand at the index; empty where it can. One at the index now is
    /// replaced.
    virtual std::wstring Objection(const Value& element, int index) const = 0;
    /// For whom elements are shown to users of the level: a row's members have levels of their own,
    /// an entry is shown to whoever sees the list.
    virtual int LevelInside(int level) const = 0;
    /// What is shown of an element, in order: itself, or its members.
    virtual std::vector<Value*> Shown(Value& element) const = 0;
};

std::unique_ptr<Elements> ElementsOf(ValueTable& table);
std::unique_ptr<Elements> ElementsOf(ValueList& list);
