// What the settings window and the dialog for a row have in common: a page, a note, buttons.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "dialog.h"
#include "page.h"

class PageDialog : public Dialog {
 public:
    /// The control that shows the note, which is empty and not seen as long as there is nothing to
    /// say. OK and Cancel are the system's IDOK and IDCANCEL.
    static constexpr int kNote = 100;

 protected:
    using Dialog::Dialog;

    void AddNote();
    void ShowNote(const std::wstring& text);
    /// False, and the note says why, where something typed in is refused.
    bool StorePage();
    /// Places the note over the buttons and these at the right end, and gives the height that is
    /// left above.
    int PlaceBottom(const SIZE& client, const std::vector<HWND>& buttons) const;
    /// The buttons' line with its margins.
    static int BottomHeight();
    bool IsNote(HWND control) const override { return control == note_; }

    std::unique_ptr<Page> page_;

 private:
    HWND note_ = nullptr;
};
