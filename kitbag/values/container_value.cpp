#include <kitbag/values/container_value.h>
#include <kitbag/values/pointer_sequence.h>
#include <kitbag/values/value_collection.h>

#include <algorithm>

namespace kitbag {

template <class Children>
ContainerValue<Children>::ContainerValue(unsigned long actions) {
    Value::SetValueActions(actions);
}

template <class Children>
ContainerValue<Children>::ContainerValue(const ContainerValue& other) : Value(other) {}

template <class Children>
ContainerValue<Children>& ContainerValue<Children>::operator=(const ContainerValue& other) {
    Value::operator=(other);
    return *this;
}

template <class Children>
ContainerValue<Children>::~ContainerValue() = default;

template <class Children>
void ContainerValue<Children>::SaveRegistry() const {}

template <class Children>
void ContainerValue<Children>::LoadRegistry() {}

template <class Children>
void ContainerValue<Children>::SetValueActions(unsigned long actions) {
    Value::SetValueActions(actions);
    const auto level = static_cast<ValueAction>(GetMinimumUserInterfaceLevel());
    for (Value* child : children_.ByIndex())
        if (child) child->SetMinimumUserInterfaceLevel(level);
}

template <class Children>
void ContainerValue<Children>::SetMinimumUserInterfaceLevel(ValueAction level) {
    Value::SetMinimumUserInterfaceLevel(level);
    for (Value* child : children_.ByIndex())
        if (child) child->SetMinimumUserInterfaceLevel(level);
}

template <class Children>
bool ContainerValue<Children>::RebootNeeded() const {
    const auto needed = [](const Value* child) { return child && child->RebootNeeded(); };
    return Value::RebootNeeded() || HasValueAction(RebootNeededAction) ||
           std::ranges::any_of(children_.ByIndex(), needed);
}

template <class Children>
bool ContainerValue<Children>::RestartNeeded() const {
    const auto needed = [](const Value* child) { return child && child->RestartNeeded(); };
    return Value::RestartNeeded() || HasValueAction(RestartNeededAction) ||
           std::ranges::any_of(children_.ByIndex(), needed);
}

template <class Children>
void ContainerValue<Children>::UseDefaultValue() const {}

template class ContainerValue<PointerSequence<Value>>;
template class ContainerValue<OwnedSequence<Value>>;
template class ContainerValue<OwnedSequence<ValueTableEntry>>;

}  // namespace kitbag
