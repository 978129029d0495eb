#include "page_dialog.h"

#include <commctrl.h>

#include "look.h"

namespace {

constexpr int kMargin = 12;
int Scaled(int pixels) { return Look::OfTheSystem().Scaled(pixels); }

}  // namespace

void PageDialog::AddNote() {
    note_ = AddControl(Window(), WC_STATICW, {}, SS_CENTERIMAGE | SS_NOPREFIX | WS_BORDER, kNote);
    ::ShowWindow(note_, SW_HIDE);
}

void PageDialog::ShowNote(const std::wstring& text) {
    // A space on the left, for the control has no margin.
    ::SetWindowTextW(note_, text.empty() ? L"" : (L" " + text).c_str());
    ::ShowWindow(note_, text.empty() ? SW_HIDE : SW_SHOW);
    OnSize(ClientSize(Window()));
}

bool PageDialog::StorePage() {
    const std::wstring complaint = page_ ? page_->Store() : std::wstring();
    if (!complaint.empty()) ShowNote(complaint);
    return complaint.empty();
}

int PageDialog::BottomHeight() { return Look::OfTheSystem().ControlHeight() + 2 * Scaled(kMargin); }

int PageDialog::PlaceBottom(const SIZE& client, const std::vector<HWND>& buttons) const {
    const int height = Look::OfTheSystem().ControlHeight();
    int top = client.cy - height - Scaled(kMargin);
    int right = client.cx - Scaled(kMargin);
    for (auto button = buttons.rbegin(); button != buttons.rend(); ++button) {
        right -= ButtonWidth(*button);
        PlaceControl(*button, {right, top, ButtonWidth(*button), height});
        right -= Scaled(6);
    }
    top -= Scaled(kMargin);
    if (TextIn(note_).empty()) return top;
    top -= height;
    PlaceControl(note_, {Scaled(kMargin), top, client.cx - 2 * Scaled(kMargin), height});
    return top - Scaled(6);
}
