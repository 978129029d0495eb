// WideTextValue: a text that may hold any character.
//
//     kitbag::WideTextValue title;
//     title.SetValueName("Title");
//     title.SetValue(L"日本語");
//     title.SaveRegistry("Player");
#pragma once

#include <kitbag/registry/stored_values.h>
#include <kitbag/settings/text.h>
#include <kitbag/values/text_values.h>

#include <string>

namespace kitbag {

/// A 16-bit text, stored as REG_SZ without loss. Visitors and casts see a TStringValue: its
/// GetValue is the text in the ANSI code page, with a question mark for what that lacks.
class WideTextValue : public TStringValue {
 public:
    using TStringValue::TStringValue;

    using TStringValue::operator=;
    WideTextValue(const WideTextValue& other) = default;
    WideTextValue& operator=(const WideTextValue& other) = default;
    /// Of a TStringValue, the text that it has.
    TStringValue& operator=(const TStringValue& other) override {
        if (const auto* wide = dynamic_cast<const WideTextValue*>(&other)) return *this = *wide;
        TStringValue::operator=(other);
        wide_ = Widened(datum_);
        wideDefault_ = Widened(default_);
        return *this;
    }

    using TStringValue::operator==;
    bool operator==(const std::wstring& value) const { return GetWideValue() == value; }
    bool operator==(const TStringValue& other) const override {
        const auto* wide = dynamic_cast<const WideTextValue*>(&other);
        return wide ? *this == wide->GetWideValue() : TStringValue::operator==(other);
    }
    using TStringValue::operator TWinString<char>;
    operator std::wstring() const { return GetWideValue(); }
    const std::wstring& GetWideValue() const {
        CheckInitialised();
        return wide_;
    }
    void SetValue(const std::wstring& value) {
        Take(value);
        Commit();
    }
    void SetValue(const TWinString<char>& value) override {
        wide_ = Widened(value);
        TStringValue::SetValue(value);
    }
    const std::wstring& GetWideDefaultValue() const { return wideDefault_; }
    void SetDefaultValue(const std::wstring& value) {
        wideDefault_ = value;
        default_ = Narrowed(value);
    }
    void SetDefaultValue(const TWinString<char>& value, bool writeIfMissing = false) override {
        wideDefault_ = Widened(value);
        TStringValue::SetDefaultValue(value, writeIfMissing);
    }

    Value* Copy() const override { return new WideTextValue(*this); }
    using TStringValue::LoadRegistry;
    using TStringValue::SaveRegistry;
    void SaveRegistry() const override {
        if (IsEmpty()) CheckInitialised();
        KB_SetTStringW(Widened(GetRegistrySection()).c_str(), Widened(GetValueName()).c_str(),
                       wide_);
    }
    void LoadRegistry() override {
        std::wstring stored;
        if (KB_GetTStringW(Widened(GetRegistrySection()).c_str(), Widened(GetValueName()).c_str(),
                           stored))
            Take(stored);
        else
            UseDefaultValue();
        MarkInitialised();
    }

    /// As of every text, but characters that the code page lacks are written \xNNNN: rows are told
    /// apart, found and ordered by it.
    TWinString<char> SaveStringDataOnly() const override {
        TWinString<char> text("'");
        for (const wchar_t unit : GetWideValue()) {
            TWinString<char> narrow = Narrowed({unit});
            if (Widened(narrow) != std::wstring{unit}) narrow.Format("\\x%04x", unsigned{unit});
            text += narrow;
        }
        return text += '\'', text;
    }

 protected:
    void UseDefaultValue() const override {
        TStringValue::UseDefaultValue();
        wide_ = wideDefault_;
    }

 private:
    void Take(const std::wstring& value) {
        wide_ = value;
        datum_ = Narrowed(value);
    }

    mutable std::wstring wide_;
    std::wstring wideDefault_;
};

}  // namespace kitbag
