#include "page.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

#include "field_builder.h"
#include "look.h"

namespace {

constexpr wchar_t kClassName[] = L"Settings page";
constexpr int kMargin = 12;
constexpr int kGap = 8;

int Scaled(int pixels) { return Look::OfTheSystem().Scaled(pixels); }

/// What a change of the value asks for, as the mark says it; empty where it asks for nothing.
std::wstring MarkOf(const Value& value) {
    if (value.HasValueAction(Value::RebootNeededAction)) return L"reboot";
    if (value.HasValueAction(Value::RestartNeededAction)) return L"restart";
    return {};
}

std::wstring TipOf(const Value& value) {
    std::wstring tip = kitbag::Widened(value.GetDescription());
    if (!MarkOf(value).empty() && !tip.empty()) tip += L"\n";
    if (MarkOf(value) == L"reboot") tip += L"A change takes effect when the computer is restarted.";
    if (MarkOf(value) == L"restart") tip += L"A change takes effect when the program is restarted.";
    return tip;
}

COLORREF Blend(int from, int to) {
    const COLORREF a = ::GetSysColor(from), b = ::GetSysColor(to);
    const auto mixed = [](int x, int y) { return (2 * x + y) / 3; };
    return RGB(mixed(GetRValue(a), GetRValue(b)), mixed(GetGValue(a), GetGValue(b)),
               mixed(GetBValue(a), GetBValue(b)));
}

void RegisterPages(WNDPROC procedure) {
    WNDCLASSEXW pages{};
    pages.cbSize = sizeof pages;
    pages.lpfnWndProc = procedure;
    pages.hInstance = ::GetModuleHandleW(nullptr);
    pages.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    pages.hbrBackground = ::GetSysColorBrush(COLOR_BTNFACE);
    pages.lpszClassName = kClassName;
    ::RegisterClassExW(&pages);
}

}  // namespace

Page::Page(HWND parent, const PageContent& content, const std::wstring& usedLetters,
           std::function<void()> changed) {
    RegisterPages(Dispatch);
    window_ = ::CreateWindowExW(WS_EX_CONTROLPARENT, kClassName, nullptr,
                                WS_CHILD | WS_CLIPCHILDREN | WS_VSCROLL, 0, 0, 0, 0, parent,
                                nullptr, ::GetModuleHandleW(nullptr), nullptr);
    tips_ = ::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0,
                              0, 0, 0, window_, nullptr, nullptr, nullptr);
    ::SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, Scaled(320));
    AddHeading(content);
    Mnemonics mnemonics(usedLetters);
    for (Value* value : content.values)
        if (IsShown(*value, content.level)) AddRow(*value, {window_, content.level, mnemonics});
    // Only now: what is shown at first is no change.
    ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    changed_ = std::move(changed);
}

Page::~Page() {
    ::SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    ::DestroyWindow(window_);
}

void Page::AddHeading(const PageContent& content) {
    if (content.heading.empty()) return;
    heading_ = AddControl(window_, WC_STATICW, content.heading, SS_NOPREFIX);
    ::SendMessageW(heading_, WM_SETFONT, reinterpret_cast<WPARAM>(Look::OfTheSystem().Bold()),
                   FALSE);
    if (!content.explanation.empty())
        explanation_ = AddControl(window_, WC_STATICW, content.explanation, SS_NOPREFIX);
}

void Page::AddRow(Value& value, FieldPlace place) {
    const std::wstring name = kitbag::Widened(value.GetDisplayName());
    Row row;
    row.value = &value;
    // In front of the field, for the label's letter leads to the control behind it.
    row.label = AddControl(window_, WC_STATICW, {}, SS_NOTIFY);
    row.field = FieldBuilder(place).Build(value);
    if (!row.field || row.field->IsItsOwnLabel())
        ::DestroyWindow(std::exchange(row.label, nullptr));
    if (!row.field) return;
    if (row.label) ::SetWindowTextW(row.label, place.mnemonics.Mark(name).c_str());
    const std::wstring description = kitbag::Widened(value.GetDescription());
    if (!description.empty())
        row.description = AddControl(window_, WC_STATICW, description, SS_NOPREFIX);
    if (!MarkOf(value).empty())
        row.mark =
            AddControl(window_, WC_STATICW, MarkOf(value), SS_CENTER | SS_CENTERIMAGE | SS_NOTIFY);
    for (const HWND control : {row.field->FirstControl(), row.label, row.mark})
        AddTip(control, TipOf(value));
    row.field->Show();
    rows_.push_back(std::move(row));
}

void Page::AddTip(HWND control, const std::wstring& text) const {
    if (!control || text.empty()) return;
    std::wstring shown = text;
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_SUBCLASS | TTF_IDISHWND;
    tool.hwnd = window_;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = shown.data();
    ::SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

std::wstring Page::Store() {
    for (const Row& row : rows_) {
        const std::wstring complaint = row.field->Store();
        if (complaint.empty()) continue;
        ::SetFocus(row.field->FirstControl());
        Reveal(row.field->FirstControl());
        return kitbag::Widened(row.value->GetDisplayName()) + L": " + complaint + L'.';
    }
    return {};
}

void Page::Reset() {
    for (const Row& row : rows_) {
        // Other values know no way back.
        if (auto* declared = dynamic_cast<kitbag::Declared*>(row.value)) declared->Reset();
        row.field->Show();
    }
    if (changed_) changed_();
}

void Page::FocusFirst() const {
    if (!rows_.empty()) ::SetFocus(rows_.front().field->FirstControl());
}

LRESULT CALLBACK Page::Dispatch(HWND window, UINT message, WPARAM word, LPARAM argument) {
    auto* page = reinterpret_cast<Page*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!page) return ::DefWindowProcW(window, message, word, argument);
    return HandleSafely(window, [&] { return page->Handle(message, word, argument); });
}

LRESULT Page::Handle(UINT message, WPARAM word, LPARAM argument) {
    switch (message) {
        case WM_SIZE:
            Layout();
            return 0;
        case WM_VSCROLL:
            OnScroll(LOWORD(word));
            return 0;
        case WM_MOUSEWHEEL:
            Scroll(scrolled_ - ::MulDiv(GET_WHEEL_DELTA_WPARAM(word), Scaled(60), WHEEL_DELTA));
            return 0;
        case WM_COMMAND:
            OnCommand(reinterpret_cast<HWND>(argument), HIWORD(word));
            return 0;
        case WM_NOTIFY:
            OnNotify(*reinterpret_cast<const NMHDR*>(argument));
            return 0;
        case WM_CTLCOLORSTATIC:
            return Coloured(reinterpret_cast<HDC>(word), reinterpret_cast<HWND>(argument),
                            ::DefWindowProcW(window_, message, word, argument));
        default:
            return ::DefWindowProcW(window_, message, word, argument);
    }
}

LRESULT Page::Coloured(HDC device, HWND control, LRESULT otherwise) const {
    const auto has = [&](HWND Row::*which) {
        return std::ranges::find(rows_, control, which) != rows_.end();
    };
    if (control == explanation_ || has(&Row::description))
        ::SetTextColor(device, Blend(COLOR_WINDOWTEXT, COLOR_BTNFACE));
    return has(&Row::mark) ? ColourAsNote(device) : otherwise;
}

void Page::OnCommand(HWND control, UINT code) {
    if (control && control == ::GetFocus()) Reveal(control);
    for (const Row& row : rows_)
        if (row.field->OnCommand(control, code) && changed_) changed_();
}

void Page::OnNotify(const NMHDR& notice) {
    if (notice.code == NM_SETFOCUS) Reveal(notice.hwndFrom);
    for (const Row& row : rows_)
        if (row.field->OnNotify(notice) && changed_) changed_();
}

void Page::Layout() {
    // The scroll bar comes and goes with a change of size of its own.
    if (std::exchange(isLayingOut_, true)) return;
    RECT outer{};
    ::GetWindowRect(window_, &outer);
    const int height = outer.bottom - outer.top;
    int width = outer.right - outer.left;
    contentHeight_ = HeightAt(width);
    const bool isScrolling = contentHeight_ > height;
    if (isScrolling) {
        width -= ::GetSystemMetrics(SM_CXVSCROLL);
        contentHeight_ = HeightAt(width);
    }
    ::ShowScrollBar(window_, SB_VERT, isScrolling);
    scrolled_ = std::clamp(scrolled_, 0, std::max(contentHeight_ - height, 0));
    SCROLLINFO bar{};
    bar.cbSize = sizeof bar;
    bar.fMask = SIF_ALL;
    bar.nMax = contentHeight_ - 1;
    bar.nPage = static_cast<UINT>(height);
    bar.nPos = scrolled_;
    if (isScrolling) ::SetScrollInfo(window_, SB_VERT, &bar, TRUE);

    const int top = -scrolled_;
    const int spare = std::max(height - contentHeight_, 0);
    Arrange(width, &top, LargeFields() ? spare / LargeFields() : 0);
    ::RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    isLayingOut_ = false;
}

int Page::HeightAt(int width) const { return Arrange(width, nullptr, 0); }

int Page::LargeFields() const {
    return static_cast<int>(
        std::ranges::count_if(rows_, [](const Row& row) { return row.field->IsLarge(); }));
}

Page::Columns Page::ColumnsAt(int width) const {
    const Look& look = Look::OfTheSystem();
    int labels = 0, marks = 0;
    for (const Row& row : rows_) {
        if (row.label && !row.field->IsLarge())
            labels = std::max(labels, static_cast<int>(look.SizeOf(TextIn(row.label)).cx));
        if (row.mark)
            marks =
                std::max(marks, static_cast<int>(look.SizeOf(TextIn(row.mark)).cx) + Scaled(12));
    }
    Columns columns;
    columns.control = Scaled(kMargin) + (labels ? labels + Scaled(kGap) : 0);
    columns.markWidth = marks;
    columns.mark = width - Scaled(kMargin) - marks;
    columns.controlWidth = columns.mark - (marks ? Scaled(kGap) : 0) - columns.control;
    return columns;
}

int Page::Arrange(int width, const int* top, int extra) const {
    const Look& look = Look::OfTheSystem();
    const Columns columns = ColumnsAt(width);
    const int margin = Scaled(kMargin);
    int y = (top ? *top : 0) + margin;
    const int start = y - margin;
    for (const HWND line : {heading_, explanation_}) {
        if (!line) continue;
        const int height = look.HeightOf(TextIn(line), width - 2 * margin);
        if (top) PlaceControl(line, {margin, y, width - 2 * margin, height});
        y += height + Scaled(3);
    }
    if (heading_) y += Scaled(kGap);
    for (const Row& row : rows_)
        y += ArrangeRow(row, columns, width, y, extra, top) + Scaled(kMargin);
    return y - start;
}

int Page::ArrangeRow(const Row& row, const Columns& columns, int width, int y, int extra,
                     bool isMoving) const {
    const Look& look = Look::OfTheSystem();
    const int line = look.SizeOf(L"Ag").cy;
    const int begin = y;
    const bool isLarge = row.field->IsLarge();
    const int x = isLarge ? Scaled(kMargin) : columns.control;
    const int wide = isLarge ? width - 2 * Scaled(kMargin) : columns.controlWidth;
    const int high = row.field->Height() + (isLarge ? extra : 0);
    if (isLarge && row.label) {
        if (isMoving) PlaceControl(row.label, {x, y, wide - columns.markWidth, line});
        y += line + Scaled(3);
    } else if (row.label && isMoving) {
        const int labelWidth = columns.control - Scaled(kGap) - Scaled(kMargin);
        PlaceControl(row.label, {Scaled(kMargin), y + (high - line) / 2, labelWidth, line});
    }
    if (isMoving) row.field->Place({x, y, wide, high});
    const int markHeight = line + Scaled(4);
    const int markY = isLarge ? begin - Scaled(3) : y + (high - markHeight) / 2;
    if (row.mark && isMoving)
        PlaceControl(row.mark, {columns.mark, markY, columns.markWidth, markHeight});
    y += high;
    if (row.description) {
        y += Scaled(2);
        const int height = look.HeightOf(TextIn(row.description), wide);
        if (isMoving) PlaceControl(row.description, {x, y, wide, height});
        y += height;
    }
    return y - begin;
}

void Page::Scroll(int position) {
    const int before = scrolled_;
    scrolled_ = std::clamp(position, 0,
                           std::max(contentHeight_ - static_cast<int>(ClientSize(window_).cy), 0));
    if (scrolled_ != before) Layout();
}

void Page::OnScroll(int request) {
    SCROLLINFO bar{};
    bar.cbSize = sizeof bar;
    bar.fMask = SIF_TRACKPOS;
    ::GetScrollInfo(window_, SB_VERT, &bar);
    const int page = ClientSize(window_).cy;
    switch (request) {
        case SB_LINEUP:
            return Scroll(scrolled_ - Scaled(20));
        case SB_LINEDOWN:
            return Scroll(scrolled_ + Scaled(20));
        case SB_PAGEUP:
            return Scroll(scrolled_ - page);
        case SB_PAGEDOWN:
            return Scroll(scrolled_ + page);
        case SB_THUMBTRACK:
            return Scroll(bar.nTrackPos);
        default:
            return;
    }
}

/// Scrolls so far that the control is seen, with the label above it.
void Page::Reveal(HWND control) {
    RECT area{};
    ::GetWindowRect(control, &area);
    ::MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&area), 2);
    const int above = Scaled(24);
    if (area.bottom > ClientSize(window_).cy)
        Scroll(scrolled_ + area.bottom - ClientSize(window_).cy + Scaled(kMargin));
    else if (area.top < above)
        Scroll(scrolled_ + area.top - above);
}
