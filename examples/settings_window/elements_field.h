// A table or list: its elements in a list view, with buttons that add, edit, remove and move them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "elements.h"
#include "field.h"

/// Changes the table or list at once: what it is given is the edited copy.
class ElementsField final : public Field {
 public:
    ElementsField(const FieldPlace& place, const Value& value, std::unique_ptr<Elements> elements);
    void Show() override;
    std::wstring Store() override { return {}; }
    HWND FirstControl() const override { return view_; }
    void Place(const Area& area) override;
    int Height() const override;
    bool IsLarge() const override { return true; }
    bool OnCommand(HWND control, UINT code) override;
    bool OnNotify(const NMHDR& notice) override;

 private:
    void AddColumns();
    /// The members that are columns.
    std::vector<Value*> Cells(Value& element) const;
    void ShowElements(int selected);
    void FitColumns();
    int Selected() const;
    void EnableButtons();

    // Each answers whether something has changed.
    bool Add();
    bool Edit();
    bool Remove();
    bool Move(int by);
    bool EditElement(Value& element, int index, const std::wstring& what);

    std::unique_ptr<Elements> elements_;
    std::wstring name_;
    int level_;
    int columns_ = 0;
    HWND view_, add_, edit_, remove_, up_, down_;
};
