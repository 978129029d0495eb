#include "scalar_fields.h"

#include <commctrl.h>
#include <commdlg.h>
#include <kitbag/files/folder_dialog.h>
#include <objbase.h>

#include <algorithm>
#include <cwchar>
#include <utility>

#include "look.h"

namespace {

int Scaled(int pixels) { return Look::OfTheSystem().Scaled(pixels); }

}  // namespace

CheckField::CheckField(const FieldPlace& place, BooleanValue& value)
    : value_(value),
      box_(AddControl(place.page, WC_BUTTONW,
                      place.mnemonics.Mark(kitbag::Widened(value.GetDisplayName())),
                      WS_TABSTOP | BS_AUTOCHECKBOX | BS_NOTIFY)) {}

void CheckField::Show() {
    ::SendMessageW(box_, BM_SETCHECK, value_.GetValue() ? BST_CHECKED : BST_UNCHECKED, 0);
}

std::wstring CheckField::Store() {
    const bool isChecked = ::SendMessageW(box_, BM_GETCHECK, 0, 0) == BST_CHECKED;
    if (isChecked != value_.GetValue()) value_.SetValue(isChecked);
    return {};
}

bool CheckField::OnCommand(HWND control, UINT code) {
    return control == box_ && code == BN_CLICKED;
}

ChoiceField::ChoiceField(const FieldPlace& place, UInt32Enum& value)
    : value_(value),
      list_(AddControl(place.page, WC_COMBOBOXW, {}, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST)) {
    for (int i = 0; i < value.size(); ++i) {
        const std::wstring name = kitbag::Widened(value.Lookup(value.at(i)));
        ::SendMessageW(list_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    }
}

void ChoiceField::Show() {
    int current = value_.size();
    while (--current >= 0 && value_.at(current) != value_.GetValue()) continue;
    // A number without a name leaves nothing chosen.
    ::SendMessageW(list_, CB_SETCURSEL, static_cast<WPARAM>(current), 0);
}

std::wstring ChoiceField::Store() {
    const LRESULT chosen = ::SendMessageW(list_, CB_GETCURSEL, 0, 0);
    if (chosen == CB_ERR) return {};
    const unsigned long number = value_.at(static_cast<int>(chosen));
    if (number != value_.GetValue()) value_.SetValue(number);
    return {};
}

void ChoiceField::Place(const Area& area) {
    // The height is that of the list when it is open.
    constexpr int kShownItems = 10;
    PlaceControl(list_,
                 {area.x, area.y, std::min(area.width, Scaled(200)), area.height * kShownItems});
}

bool ChoiceField::OnCommand(HWND control, UINT code) {
    return control == list_ && code == CBN_SELCHANGE;
}

EditField::EditField(const FieldPlace& place)
    : edit_(AddControl(place.page, WC_EDITW, {}, WS_TABSTOP | ES_AUTOHSCROLL)) {}

void EditField::Show() { ::SetWindowTextW(edit_, Get().c_str()); }

std::wstring EditField::Store() {
    const std::wstring text = TextIn(edit_);
    return text == Get() ? std::wstring() : Put(text);
}

bool EditField::OnCommand(HWND control, UINT code) { return control == edit_ && code == EN_CHANGE; }

std::wstring TextField::Put(const std::wstring& text) {
    if (auto* wide = dynamic_cast<kitbag::WideTextValue*>(&value_)) {
        wide->SetValue(text);
        return {};
    }
    const std::string narrow = kitbag::Narrowed(text);
    if (kitbag::Widened(narrow) != text) return L"has characters that cannot be kept here";
    value_.SetValue(narrow.c_str());
    return {};
}

FilenameField::FilenameField(const FieldPlace& place, FilenameValue& value)
    : TextField(place, value), value_(value), browse_(AddButton(place.page, L"...")) {}

void FilenameField::Place(const Area& area) {
    const int buttonWidth = Scaled(30);
    const int textWidth = area.width - buttonWidth - Scaled(4);
    TextField::Place({area.x, area.y, textWidth, area.height});
    PlaceControl(browse_, {area.x + area.width - buttonWidth, area.y, buttonWidth, area.height});
}

bool FilenameField::OnCommand(HWND control, UINT code) {
    // What the user chooses is typed in for him, which tells the page of the change.
    if (control == browse_ && code == BN_CLICKED)
        value_.IsDirectory() ? BrowseFolder() : BrowseFile();
    return TextField::OnCommand(control, code);
}

std::wstring FilenameField::Put(const std::wstring& text) {
    if (value_.MustExist() && !text.empty()) {
        const DWORD attributes = ::GetFileAttributesW(text.c_str());
        const bool isFolder = attributes & FILE_ATTRIBUTE_DIRECTORY;
        if (attributes == INVALID_FILE_ATTRIBUTES || isFolder != value_.IsDirectory())
            return value_.IsDirectory() ? L"there is no such folder" : L"there is no such file";
    }
    return TextField::Put(text);
}

void FilenameField::BrowseFolder() {
    wchar_t path[MAX_PATH] = {};
    ::lstrcpynW(path, TextIn(FirstControl()).c_str(), MAX_PATH);
    const std::wstring title = kitbag::Widened(value_.GetDisplayName());
    // The library's dialog has no owner that it would keep the user from.
    const HWND window = ::GetAncestor(browse_, GA_ROOT);
    ::EnableWindow(window, FALSE);
    const bool isChosen = KB_BrowseForFolderW(path, title.c_str());
    ::EnableWindow(window, TRUE);
    ::SetForegroundWindow(window);
    if (isChosen) ::SetWindowTextW(FirstControl(), path);
}

void FilenameField::BrowseFile() {
    // Pairs of words and pattern, each part ended by a zero, where the value has bars.
    std::wstring filter = kitbag::Widened(value_.GetFilterString());
    std::ranges::replace(filter, L'|', L'\0');
    filter += L'\0';
    wchar_t path[MAX_PATH] = {};
    ::lstrcpynW(path, TextIn(FirstControl()).c_str(), MAX_PATH);

    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = ::GetAncestor(browse_, GA_ROOT);
    dialog.lpstrFilter = filter.size() > 1 ? filter.c_str() : nullptr;
    dialog.lpstrFile = path;
    dialog.nMaxFile = MAX_PATH;
    dialog.Flags =
        OFN_HIDEREADONLY | OFN_NOCHANGEDIR | (value_.MustExist() ? OFN_FILEMUSTEXIST : 0);
    if (::GetOpenFileNameW(&dialog)) ::SetWindowTextW(FirstControl(), path);
}

std::wstring BytesField::Put(const std::wstring& text) {
    constexpr int kHexadecimal = 16;
    std::wstring digits = text;
    std::erase(digits, L' ');
    if (digits.size() % 2 != 0 ||
        digits.find_first_not_of(L"0123456789ABCDEFabcdef") != std::wstring::npos)
        return L"takes bytes of two hexadecimal digits, such as 1F 2E";
    unsigned char* bytes = value_.SetValueSize(static_cast<unsigned long>(digits.size() / 2));
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes[i / 2] =
            static_cast<unsigned char>(std::stoi(digits.substr(i, 2), nullptr, kHexadecimal));
    value_.SetValue();
    return {};
}

std::wstring GuidField::Put(const std::wstring& text) {
    GUID guid{};
    if (::IIDFromString(text.c_str(), &guid) != S_OK)
        return L"takes an identifier such as " + kitbag::Widened(GuidValue::GUID2TString(GUID{}));
    value_.SetValue(guid);
    return {};
}

template <class V>
NumberField<V>::NumberField(const FieldPlace& place, V& value) : EditField(place), value_(value) {
    // A number that is not declared with the layer may be any.
    if (const auto* declared = dynamic_cast<const kitbag::WithinRange<V>*>(&value))
        range_ = declared->GetRange();
    if (!HasRange()) return;
    arrows_ = AddControl(place.page, UPDOWN_CLASSW, {},
                         UDS_SETBUDDYINT | UDS_NOTHOUSANDS | UDS_ARROWKEYS);
    ::SendMessageW(arrows_, UDM_SETBUDDY, reinterpret_cast<WPARAM>(FirstControl()), 0);
    ::SendMessageW(arrows_, UDM_SETRANGE32, static_cast<WPARAM>(range_.lowest),
                   static_cast<LPARAM>(range_.highest));
    rangeText_ = AddControl(place.page, WC_STATICW, RangeText(), SS_CENTERIMAGE);
}

/// True for one that the arrows can count through.
template <class V>
bool NumberField<V>::HasRange() const {
    const bool isWhole = range_.lowest == kitbag::lowest_number<Number> &&
                         range_.highest == kitbag::highest_number<Number>;
    return !isWhole && std::in_range<int>(range_.lowest) && std::in_range<int>(range_.highest);
}

template <class V>
std::wstring NumberField<V>::RangeText() const {
    return std::to_wstring(range_.lowest) + L" to " + std::to_wstring(range_.highest);
}

template <class V>
void NumberField<V>::Place(const Area& area) {
    const int arrowsWidth = arrows_ ? Scaled(18) : 0;
    const int editWidth = Scaled(90) - arrowsWidth;
    EditField::Place({area.x, area.y, editWidth, area.height});
    if (!arrows_) return;
    PlaceControl(arrows_, {area.x + editWidth, area.y, arrowsWidth, area.height});
    const int textX = editWidth + arrowsWidth + Scaled(8);
    PlaceControl(rangeText_, {area.x + textX, area.y, area.width - textX, area.height});
}

template <class V>
std::wstring NumberField<V>::Put(const std::wstring& text) {
    constexpr int kDecimal = 10;
    wchar_t* end = nullptr;
    const long long number = std::wcstoll(text.c_str(), &end, kDecimal);
    // One that is too large for the conversion becomes the largest, which no range holds.
    if (text.empty() || *end || std::cmp_less(number, range_.lowest) ||
        std::cmp_greater(number, range_.highest))
        return L"takes a number from " + RangeText();
    value_.SetValue(static_cast<Number>(number));
    return {};
}

template class NumberField<UInt32Value>;
template class NumberField<Int32Value>;
