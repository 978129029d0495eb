#include "element_dialog.h"

#include <kitbag/values/value_collection.h>

#include <algorithm>
#include <utility>

#include "look.h"

namespace {

/// A section in a row has no page of its own: its members follow those of the row.
void AddFlat(Value& value, std::vector<Value*>& values) {
    const ValueCollection* members = KB_GetAsValueCollection(&value);
    if (!members) return values.push_back(&value);
    for (int i = 0; i < members->size(); ++i)
        if (Value* member = members->at(i)) AddFlat(*member, values);
}

}  // namespace

ElementDialog::ElementDialog(const std::wstring& title, const std::vector<Value*>& values,
                             int level, std::function<std::wstring()> objection)
    : PageDialog(title), level_(level), objection_(std::move(objection)) {
    for (Value* value : values) AddFlat(*value, values_);
}

void ElementDialog::OnInit() {
    page_ = std::make_unique<Page>(Window(), PageContent{{}, {}, values_, level_}, L"", [] {});
    ::ShowWindow(page_->Window(), SW_SHOW);
    AddNote();
    ok_ = AddButton(Window(), L"OK", IDOK);
    cancel_ = AddButton(Window(), L"Cancel", IDCANCEL);
    ::SendMessageW(Window(), DM_SETDEFID, IDOK, 0);
}

void ElementDialog::FocusFirst() { page_->FocusFirst(); }

SIZE ElementDialog::FirstSize() const {
    const Look& look = Look::OfTheSystem();
    const int width = look.Scaled(400);
    // With room for the note.
    const int bottom = BottomHeight() + look.ControlHeight() + look.Scaled(6);
    return {width, (page_ ? page_->HeightAt(width) : 0) + bottom};
}

void ElementDialog::OnSize(const SIZE& client) {
    PlaceControl(page_->Window(), {0, 0, client.cx, PlaceBottom(client, {ok_, cancel_})});
}

void ElementDialog::OnCommand(int id, UINT code) {
    // Buttons tell of the focus, too.
    if (code != BN_CLICKED) return;
    if (id == IDOK) Accept();
    if (id == IDCANCEL) End(IDCANCEL);
}

void ElementDialog::Accept() {
    if (!StorePage()) return;
    const std::wstring objection = objection_();
    if (objection.empty())
        End(IDOK);
    else
        ShowNote(objection);
}
