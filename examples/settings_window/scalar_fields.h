// One field for each class of scalar value.
#pragma once

#include "field.h"

/// A truth value: a check box.
class CheckField final : public Field {
 public:
    CheckField(const FieldPlace& place, BooleanValue& value);
    void Show() override;
    std::wstring Store() override;
    HWND FirstControl() const override { return box_; }
    void Place(const Area& area) override { PlaceControl(box_, area); }
    bool IsItsOwnLabel() const override { return true; }
    bool OnCommand(HWND control, UINT code) override;

 private:
    BooleanValue& value_;
    HWND box_;
};

/// A number whose values have names: a drop-down list.
class ChoiceField final : public Field {
 public:
    ChoiceField(const FieldPlace& place, UInt32Enum& value);
    void Show() override;
    std::wstring Store() override;
    HWND FirstControl() const override { return list_; }
    void Place(const Area& area) override;
    bool OnCommand(HWND control, UINT code) override;

 private:
    UInt32Enum& value_;
    HWND list_;
};

/// Any value that is typed in.
class EditField : public Field {
 public:
    explicit EditField(const FieldPlace& place);
    void Show() override;
    /// Leaves a value alone whose text the user has left alone.
    std::wstring Store() override;
    HWND FirstControl() const override { return edit_; }
    void Place(const Area& area) override { PlaceControl(edit_, area); }
    bool OnCommand(HWND control, UINT code) override;

 protected:
    virtual std::wstring Get() const = 0;
    /// As Store.
    virtual std::wstring Put(const std::wstring& text) = 0;

 private:
    HWND edit_;
};

class TextField : public EditField {
 public:
    TextField(const FieldPlace& place, TStringValue& value) : EditField(place), value_(value) {}

 protected:
    std::wstring Get() const override { return WideTextOf(value_); }
    std::wstring Put(const std::wstring& text) override;

 private:
    TStringValue& value_;
};

/// A file or folder: a text with a button that browses.
class FilenameField final : public TextField {
 public:
    FilenameField(const FieldPlace& place, FilenameValue& value);
    void Place(const Area& area) override;
    bool OnCommand(HWND control, UINT code) override;

 protected:
    std::wstring Put(const std::wstring& text) override;

 private:
    void BrowseFolder();
    void BrowseFile();

    FilenameValue& value_;
    HWND browse_;
};

/// Bytes: two hexadecimal digits for each, with or without spaces between them.
class BytesField final : public EditField {
 public:
    BytesField(const FieldPlace& place, ByteArrayValue& value) : EditField(place), value_(value) {}

 protected:
    std::wstring Get() const override { return HexadecimalText(value_); }
    std::wstring Put(const std::wstring& text) override;

 private:
    ByteArrayValue& value_;
};

class GuidField final : public EditField {
 public:
    GuidField(const FieldPlace& place, GuidValue& value) : EditField(place), value_(value) {}

 protected:
    std::wstring Get() const override { return DisplayText(value_); }
    std::wstring Put(const std::wstring& text) override;

 private:
    GuidValue& value_;
};

/// A number with arrows beside it, and its range where it is declared with one.
template <class V>
class NumberField final : public EditField {
    using Number = kitbag::DatumOf<V>;

 public:
    NumberField(const FieldPlace& place, V& value);
    void Place(const Area& area) override;

 protected:
    std::wstring Get() const override { return std::to_wstring(value_.GetValue()); }
    std::wstring Put(const std::wstring& text) override;

 private:
    std::wstring RangeText() const;
    bool HasRange() const;

    V& value_;
    kitbag::Range<Number> range_;
    HWND arrows_ = nullptr;
    HWND rangeText_ = nullptr;
};
