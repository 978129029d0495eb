#include "settings_dialog.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "look.h"

namespace {

constexpr int kMargin = 12;
constexpr const wchar_t* kLevelNames[] = {L"All settings", L"Expert settings", L"More settings",
                                          L"Basic settings"};
constexpr int kLevels = static_cast<int>(std::size(kLevelNames));

int Scaled(int pixels) { return Look::OfTheSystem().Scaled(pixels); }

std::vector<Value*> MembersOf(const Value& section) {
    std::vector<Value*> members;
    const ValueCollection* collection = KB_GetAsValueCollection(&section);
    for (int i = 0; collection && i < collection->size(); ++i)
        if (Value* member = collection->at(i)) members.push_back(member);
    return members;
}

/// The longest wait first: a restart of the computer restarts the program, too.
std::wstring NoteOf(Applied applied) {
    switch (applied) {
        case Applied::NotSaved:
            return L"Not everything could be saved. Are you allowed to change these settings?";
        case Applied::AfterReboot:
            return L"Saved. Some changes take effect when the computer is restarted.";
        case Applied::AfterRestart:
            return L"Saved. Some changes take effect when the program is restarted.";
        case Applied::AtOnce:
            break;
    }
    return {};
}

}  // namespace

SettingsDialog::SettingsDialog(const std::wstring& title, const Value& edited,
                               std::function<Applied()> apply)
    : PageDialog(title),
      edited_(edited),
      apply_(std::move(apply)),
      level_(KB_GetUserInterfaceLevel()) {}

void SettingsDialog::OnInit() {
    // In the tab order; a page comes behind the sections.
    sections_ =
        AddControl(Window(), WC_TREEVIEWW, {},
                   WS_TABSTOP | TVS_HASLINES | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                   kSections);
    AddNote();
    levelLabel_ = AddControl(Window(), WC_STATICW, L"S&how:", 0);
    levels_ = AddControl(Window(), WC_COMBOBOXW, {}, WS_TABSTOP | CBS_DROPDOWNLIST, kLevel);
    defaults_ = AddButton(Window(), L"&Defaults", kDefaults);
    ok_ = AddButton(Window(), L"OK", IDOK);
    cancel_ = AddButton(Window(), L"Cancel", IDCANCEL);
    applyButton_ = AddButton(Window(), L"&Apply", kApply);
    ::SendMessageW(Window(), DM_SETDEFID, IDOK, 0);
    AddLevels();
    AddSections();
    ShowChanged(false);
}

void SettingsDialog::FocusFirst() { ::SetFocus(sections_); }

void SettingsDialog::AddLevels() {
    // The least detailed first.
    for (int level = kLevels; level-- > 0;)
        ::SendMessageW(levels_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(kLevelNames[level]));
    ::SendMessageW(levels_, CB_SETCURSEL, static_cast<WPARAM>(kLevels - 1 - level_), 0);
}

/// Keeps the chosen section, where users of the level see it.
void SettingsDialog::AddSections() {
    page_.reset();
    ::SendMessageW(sections_, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    LRESULT chosen = AddSection(edited_, TVI_ROOT, section_);
    if (!chosen) chosen = ::SendMessageW(sections_, TVM_GETNEXTITEM, TVGN_ROOT, 0);
    ::SendMessageW(sections_, TVM_SELECTITEM, TVGN_CARET, chosen);
}

LRESULT SettingsDialog::AddSection(const Value& section, HTREEITEM parent, const Value* wanted) {
    std::wstring name = kitbag::Widened(section.GetDisplayName());
    if (name.empty()) name = L"General";
    TVINSERTSTRUCTW insertion{};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_PARAM;
    insertion.item.pszText = name.data();
    insertion.item.lParam = reinterpret_cast<LPARAM>(&section);
    const LRESULT item =
        ::SendMessageW(sections_, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion));
    LRESULT found = &section == wanted ? item : 0;
    for (const Value* member : MembersOf(section)) {
        if (!KB_GetAsValueCollection(member) || !IsShown(*member, level_)) continue;
        const LRESULT below = AddSection(*member, reinterpret_cast<HTREEITEM>(item), wanted);
        if (below) found = below;
    }
    ::SendMessageW(sections_, TVM_EXPAND, TVE_EXPAND, item);
    return found;
}

void SettingsDialog::ShowSection(const Value& section) {
    section_ = &section;
    page_.reset();
    std::wstring heading = kitbag::Widened(section.GetDisplayName());
    if (heading.empty()) heading = L"General";
    const PageContent content{heading, kitbag::Widened(section.GetDescription()),
                              MembersOf(section), level_};
    page_ = std::make_unique<Page>(Window(), content, L"hda", [this] { ShowChanged(true); });
    // Behind the sections in the tab order.
    ::SetWindowPos(page_->Window(), sections_, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    OnSize(ClientSize(Window()));
}

SIZE SettingsDialog::FirstSize() const { return {Scaled(680), Scaled(440)}; }

void SettingsDialog::OnSize(const SIZE& client) {
    const int above = PlaceBottom(client, {defaults_, ok_, cancel_, applyButton_});
    const int margin = Scaled(kMargin);
    const int sectionsWidth = Scaled(160);
    PlaceControl(sections_, {margin, margin, sectionsWidth, above - margin});
    const int pageX = margin + sectionsWidth;
    if (page_) PlaceControl(page_->Window(), {pageX, 0, client.cx - pageX, above});

    const Look& look = Look::OfTheSystem();
    const int height = look.ControlHeight();
    const int y = client.cy - margin - height;
    const int line = look.SizeOf(L"Ag").cy;
    const int labelWidth = look.SizeOf(TextIn(levelLabel_)).cx;
    PlaceControl(levelLabel_, {margin, y + (height - line) / 2, labelWidth, line});
    PlaceControl(levels_, {margin + labelWidth + Scaled(4), y + Scaled(1), Scaled(130),
                           (kLevels + 1) * height});
}

void SettingsDialog::OnCommand(int id, UINT code) {
    if (id == kLevel && code == CBN_SELCHANGE) ChangeLevel();
    // Buttons tell of the focus, too.
    if (code != BN_CLICKED) return;
    if (id == IDCANCEL) End(IDCANCEL);
    if (id == IDOK && ApplyChanges() && applied_ != Applied::NotSaved) End(IDOK);
    if (id == kApply) ApplyChanges();
    if (id == kDefaults && page_) page_->Reset();
}

/// True keeps the sections from changing.
bool SettingsDialog::OnNotify(const NMHDR& notice) {
    if (notice.hwndFrom != sections_) return false;
    const auto& change = reinterpret_cast<const NMTREEVIEWW&>(notice);
    if (notice.code == TVN_SELCHANGINGW) return !StorePage();
    const auto* section = reinterpret_cast<const Value*>(change.itemNew.lParam);
    if (notice.code == TVN_SELCHANGEDW && section) {
        ShowNote(NoteOf(applied_));
        ShowSection(*section);
    }
    return false;
}

void SettingsDialog::ShowChanged(bool isChanged) { ::EnableWindow(applyButton_, isChanged); }

bool SettingsDialog::ApplyChanges() {
    if (!StorePage()) return false;
    // A restart that was asked for once is still to come.
    applied_ = std::max(applied_, apply_());
    ShowNote(NoteOf(applied_));
    if (::GetFocus() == applyButton_) ::SetFocus(ok_);
    ShowChanged(applied_ == Applied::NotSaved);
    return true;
}

void SettingsDialog::ChangeLevel() {
    if (StorePage()) {
        level_ = kLevels - 1 - static_cast<int>(::SendMessageW(levels_, CB_GETCURSEL, 0, 0));
        ShowNote(NoteOf(applied_));
        AddSections();
    }
    ::SendMessageW(levels_, CB_SETCURSEL, static_cast<WPARAM>(kLevels - 1 - level_), 0);
}
