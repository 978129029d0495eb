// What sections and rows do alike with the settings that are declared in them.
#pragma once

#include <kitbag/settings/declaration.h>
#include <kitbag/values/value.h>

#include <algorithm>
#include <typeinfo>

namespace kitbag {

/// True where both hold the same. What is not declared with the layer is compared by its text.
inline bool HoldSame(const Value& a, const Value& b) {
    if (const auto* declared = dynamic_cast<const Declared*>(&a)) return declared->SameAs(b);
    return typeid(a) == typeid(b) && a.SaveStringDataOnly() == b.SaveStringDataOnly();
}

/// A collection or a row that knows its place. One with a name lies below its owner's key, under
/// that name.
template <class Base>
class Fields : public Base, public Owner, public Declared {
 public:
    void Declare(Value& member, const TWinString<char>& name, bool) override {
        Base::DeclareValue(member, name);
        if (this->HasAutoRegistrySource()) member.SetAutoRegistrySource(Place(), name, true);
    }

    using Base::SetAutoRegistrySource;
    /// Of all members.
    void SetAutoRegistrySource(bool cached) override {
        Base::SetAutoRegistrySource(cached);
        ForEach([&](Value& member) {
            member.SetAutoRegistrySource(Place(), member.GetValueName(), cached);
        });
    }

    void SaveRegistry() const override { Base::SaveRegistry(Place()); }
    void SaveRegistry(const TWinString<char>& section) const override {
        // Saves what has a name.
        Value::SaveRegistry(section);
        if (this->GetValueName().empty()) SaveRegistry();
    }
    void LoadRegistry() override { Base::LoadRegistry(Place()); }
    void LoadRegistry(const TWinString<char>& section) override {
        Value::LoadRegistry(section);
        if (this->GetValueName().empty()) LoadRegistry();
    }

    bool SameAs(const Value& other) const override {
        const auto* same = dynamic_cast<const Fields*>(&other);
        return same && std::ranges::equal(this->children_, same->children_,
                                          [](const Value* a, const Value* b) {
                                              return a == b || (a && b && HoldSame(*a, *b));
                                          });
    }
    bool IsDefault() const override {
        bool all = true;
        ForEach([&](const Value& member) {
            const auto* declared = dynamic_cast<const Declared*>(&member);
            all = all && (!declared || declared->IsDefault());
        });
        return all;
    }
    void Reset() override {
        ForEach([](Value& member) {
            if (auto* declared = dynamic_cast<Declared*>(&member)) declared->Reset();
        });
    }

 protected:
    Fields() {
        Value::SetMinimumUserInterfaceLevel(Level(3));
        Value::SetValueInfoSource(&declared_texts);
    }
    Fields(const Fields&) = default;
    using Base::operator=;
    Fields& operator=(const Fields&) = default;
    ~Fields() override = default;

    TWinString<char> Place() const {
        const TWinString<char> name = this->GetValueName();
        const TWinString<char>& section = this->GetRegistrySection();
        return name.empty() ? section : TWinString<char>(section + '\\' + name);
    }

 private:
    void ForEach(auto&& visit) const {
        for (Value* member : this->children_)
            if (member) visit(*member);
    }
};

}  // namespace kitbag
