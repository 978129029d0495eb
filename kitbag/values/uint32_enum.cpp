#include <kitbag/values/uint32_enum.h>

#include <algorithm>

int UInt32Enum::size() const { return static_cast<int>(elements_.size()); }

void UInt32Enum::InitialiseElements() {}

void UInt32Enum::AddElement(unsigned long value, const TWinString<char>& name) {
    elements_.push_back({value, name});
}

TWinString<char> UInt32Enum::Lookup(unsigned long value) const {
    const auto found = std::ranges::find(elements_, value, &Element::value);
    return found == elements_.end() ? TWinString<char>() : found->name;
}

Value* UInt32Enum::Copy() const { return new UInt32Enum(*this); }
TWinString<char> UInt32Enum::ToString() const { return Lookup(GetValue()); }
void UInt32Enum::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }

unsigned long UInt32Enum::at(int index) const {
    const auto position = static_cast<std::size_t>(index);
    return position < elements_.size() ? elements_[position].value : 0;
}
