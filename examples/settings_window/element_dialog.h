// Edits one row of a table, or one entry of a list.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "page_dialog.h"

/// Run gives IDOK where the values have what the user has typed in.
class ElementDialog final : public PageDialog {
 public:
    /// objection says why the values cannot stay as they are; empty where they can.
    ElementDialog(const std::wstring& title, const std::vector<Value*>& values, int level,
                  std::function<std::wstring()> objection);

 protected:
    void OnInit() override;
    void FocusFirst() override;
    SIZE FirstSize() const override;
    void OnSize(const SIZE& client) override;
    void OnCommand(int id, UINT code) override;

 private:
    void Accept();

    std::vector<Value*> values_;
    int level_;
    std::function<std::wstring()> objection_;
    HWND ok_ = nullptr;
    HWND cancel_ = nullptr;
};
