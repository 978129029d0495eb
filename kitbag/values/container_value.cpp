#include <kitbag/values/container_value.h>
#include <kitbag/values/pointer_sequence.h>
#include <kitbag/values/value_collection.h>

#include <algorithm>
#include <ranges>

namespace kitbag {

namespace {

/// The children that are there.
template <class Children>
auto Present(const Children& children) {
    return std::views::filter(children, [](const Value* child) { return child != nullptr; });
}

}  // namespace

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
    for (Value* child : Present(children_)) child->SetMinimumUserInterfaceLevel(level);
}

template <class Children>
void ContainerValue<Children>::SetMinimumUserInterfaceLevel(ValueAction level) {
    Value::SetMinimumUserInterfaceLevel(level);
    for (Value* child : Present(children_)) child->SetMinimumUserInterfaceLevel(level);
}

template <class Children>
bool ContainerValue<Children>::RebootNeeded() const {
    return OwnRebootNeeded() || std::ranges::any_of(Present(children_), &Value::RebootNeeded);
}

template <class Children>
bool ContainerValue<Children>::RestartNeeded() const {
    return OwnRestartNeeded() || std::ranges::any_of(Present(children_), &Value::RestartNeeded);
}

template <class Children>
void ContainerValue<Children>::UseDefaultValue() const {}

template class ContainerValue<PointerSequence<Value>>;
template class ContainerValue<OwnedSequence<Value>>;
template class ContainerValue<OwnedSequence<ValueTableEntry>>;

}  // namespace kitbag
