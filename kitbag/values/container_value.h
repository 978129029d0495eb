// What collections, lists and tables have in common.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/value.h>

namespace kitbag {

/// A value made of others, which it keeps in a PointerSequence or an OwnedSequence: how levels are
/// passed on to them and how they are asked. Null pointers among them are passed over. Adds no
/// virtual operation: the order of each class's own ones is part of the binary contract.
template <class Children>
class KITBAG_API ContainerValue : public Value {
 public:
    explicit ContainerValue(unsigned long actions);
    /// Neither copies the children.
    ContainerValue(const ContainerValue& other);
    ContainerValue& operator=(const ContainerValue& other);
    using Value::operator=;
    ~ContainerValue() override;

    using Value::LoadRegistry;
    using Value::SaveRegistry;
    /// Nothing: a container has no place of its own, its owner gives it a section every time.
    void SaveRegistry() const override;
    void LoadRegistry() override;
    /// The children take over the level alone; the flags stay with the container.
    void SetValueActions(unsigned long actions) override;
    void SetMinimumUserInterfaceLevel(ValueAction level) override;
    /// The container's own answer or flag, else whether one of the children needs it.
    bool RebootNeeded() const override;
    bool RestartNeeded() const override;

    int size() const { return children_.Size(); }

 protected:
    void UseDefaultValue() const override;

    mutable Children children_;
};

}  // namespace kitbag
