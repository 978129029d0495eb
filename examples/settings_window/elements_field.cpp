#include "elements_field.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "element_dialog.h"
#include "look.h"

namespace {

int Scaled(int pixels) { return Look::OfTheSystem().Scaled(pixels); }

}  // namespace

ElementsField::ElementsField(const FieldPlace& place, const Value& value,
                             std::unique_ptr<Elements> elements)
    : elements_(std::move(elements)),
      name_(kitbag::Widened(value.GetDisplayName())),
      level_(elements_->LevelInside(place.level)),
      view_(AddControl(
          place.page, WC_LISTVIEWW, {},
          WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER)),
      add_(AddButton(place.page, place.mnemonics.Mark(L"New..."))),
      edit_(AddButton(place.page, place.mnemonics.Mark(L"Edit..."))),
      remove_(AddButton(place.page, place.mnemonics.Mark(L"Remove"))),
      up_(AddButton(place.page, place.mnemonics.Mark(L"Up"))),
      down_(AddButton(place.page, place.mnemonics.Mark(L"Down"))) {
    ::SendMessageW(view_, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
    AddColumns();
}

void ElementsField::AddColumns() {
    const std::unique_ptr<Value> pattern = elements_->Make();
    if (!pattern) return;
    const std::vector<Value*> cells = Cells(*pattern);
    for (const Value* cell : cells) {
        std::wstring title = kitbag::Widened(cell->GetDisplayName());
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = title.data();
        column.cx = Look::OfTheSystem().SizeOf(title).cx + Scaled(30);
        ::SendMessageW(view_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(columns_++),
                       reinterpret_cast<LPARAM>(&column));
    }
    // One column needs no title.
    if (columns_ == 1)
        ::SetWindowLongPtrW(view_, GWL_STYLE,
                            ::GetWindowLongPtrW(view_, GWL_STYLE) | LVS_NOCOLUMNHEADER);
}

std::vector<Value*> ElementsField::Cells(Value& element) const {
    std::vector<Value*> cells = elements_->Shown(element);
    std::erase_if(cells,
                  [&](const Value* cell) { return IsContainer(*cell) || !IsShown(*cell, level_); });
    return cells;
}

void ElementsField::Show() { ShowElements(std::max(Selected(), 0)); }

void ElementsField::ShowElements(int selected) {
    ::SendMessageW(view_, WM_SETREDRAW, FALSE, 0);
    ::SendMessageW(view_, LVM_DELETEALLITEMS, 0, 0);
    for (int row = 0; row < elements_->Size(); ++row) {
        LVITEMW item{};
        item.iItem = row;
        ::SendMessageW(view_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        for (const Value* cell : Cells(elements_->At(row))) {
            std::wstring text = DisplayText(*cell);
            item.pszText = text.data();
            ::SendMessageW(view_, LVM_SETITEMTEXTW, static_cast<WPARAM>(row),
                           reinterpret_cast<LPARAM>(&item));
            ++item.iSubItem;
        }
    }
    LVITEMW state{};
    state.stateMask = state.state = LVIS_SELECTED | LVIS_FOCUSED;
    selected = std::min(selected, elements_->Size() - 1);
    if (selected >= 0) {
        ::SendMessageW(view_, LVM_SETITEMSTATE, static_cast<WPARAM>(selected),
                       reinterpret_cast<LPARAM>(&state));
        ::SendMessageW(view_, LVM_ENSUREVISIBLE, static_cast<WPARAM>(selected), FALSE);
    }
    ::SendMessageW(view_, WM_SETREDRAW, TRUE, 0);
    EnableButtons();
}

int ElementsField::Height() const {
    constexpr int kButtons = 5;
    return kButtons * (Field::Height() + Scaled(4)) - Scaled(4);
}

void ElementsField::Place(const Area& area) {
    const HWND buttons[] = {add_, edit_, remove_, up_, down_};
    int width = 0;
    for (const HWND button : buttons) width = std::max(width, ButtonWidth(button));
    PlaceControl(view_, {area.x, area.y, area.width - width - Scaled(8), area.height});
    int y = area.y;
    for (const HWND button : buttons) {
        PlaceControl(button, {area.x + area.width - width, y, width, Field::Height()});
        y += Field::Height() + Scaled(4);
    }
    FitColumns();
}

/// The first column has what the others leave.
void ElementsField::FitColumns() {
    LRESULT left = ClientSize(view_).cx;
    for (int column = 1; column < columns_; ++column)
        left -= ::SendMessageW(view_, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0);
    ::SendMessageW(view_, LVM_SETCOLUMNWIDTH, 0, std::max<LRESULT>(left, Scaled(120)));
}

int ElementsField::Selected() const {
    return static_cast<int>(
        ::SendMessageW(view_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void ElementsField::EnableButtons() {
    const int selected = Selected();
    const bool isAny = selected >= 0;
    // A button that is disabled under the focus would keep the keyboard to itself.
    const HWND focused = ::GetFocus();
    ::EnableWindow(add_, columns_ > 0);
    ::EnableWindow(edit_, isAny);
    ::EnableWindow(remove_, isAny);
    ::EnableWindow(up_, selected > 0);
    ::EnableWindow(down_, isAny && selected + 1 < elements_->Size());
    if (focused && ::GetParent(focused) == ::GetParent(view_) && !::IsWindowEnabled(focused))
        ::SetFocus(view_);
}

bool ElementsField::OnCommand(HWND control, UINT code) {
    if (code != BN_CLICKED) return false;
    if (control == add_) return Add();
    if (control == edit_) return Edit();
    if (control == remove_) return Remove();
    if (control == up_) return Move(-1);
    if (control == down_) return Move(1);
    return false;
}

bool ElementsField::OnNotify(const NMHDR& notice) {
    if (notice.hwndFrom != view_) return false;
    if (notice.code == LVN_ITEMCHANGED) EnableButtons();
    return notice.code == NM_DBLCLK && Edit();
}

bool ElementsField::Add() {
    std::unique_ptr<Value> element = elements_->Make();
    const int end = elements_->Size();
    if (!element || !EditElement(*element, end, L"new")) return false;
    elements_->Insert(end, std::move(element));
    ShowElements(end);
    return true;
}

bool ElementsField::Edit() {
    const int selected = Selected();
    if (selected < 0) return false;
    // A copy takes its place: a value is not assigned through its base class.
    std::unique_ptr<Value> copy(elements_->At(selected).Copy());
    if (!EditElement(*copy, selected, L"edit")) return false;
    elements_->Remove(selected);
    elements_->Insert(selected, std::move(copy));
    ShowElements(selected);
    return true;
}

bool ElementsField::EditElement(Value& element, int index, const std::wstring& what) {
    ElementDialog dialog(name_ + L" - " + what, elements_->Shown(element), level_,
                         [&] { return elements_->Objection(element, index); });
    const bool isAccepted = dialog.Run(::GetAncestor(view_, GA_ROOT)) == IDOK;
    ::SetFocus(view_);
    return isAccepted;
}

bool ElementsField::Remove() {
    const int selected = Selected();
    if (selected < 0) return false;
    elements_->Remove(selected);
    ShowElements(selected);
    return true;
}

bool ElementsField::Move(int by) {
    const int selected = Selected();
    const int target = selected + by;
    if (selected < 0 || target < 0 || target >= elements_->Size()) return false;
    elements_->Move(selected, target);
    ShowElements(target);
    return true;
}
