#include "dialog.h"

#include <commctrl.h>

#include <algorithm>

namespace {

/// A dialog without controls, menu, class or title of its own.
struct EmptyTemplate {
    DLGTEMPLATE dialog{
        WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | DS_MODALFRAME, WS_EX_CONTROLPARENT, 0, 0, 0, 0, 0};
    WORD menuClassTitle[3] = {};
};

}  // namespace

INT_PTR Dialog::Run(HWND owner) {
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES |
                                                     ICC_TREEVIEW_CLASSES | ICC_UPDOWN_CLASS |
                                                     ICC_BAR_CLASSES};
    ::InitCommonControlsEx(&classes);
    alignas(DWORD) const EmptyTemplate empty;
    return ::DialogBoxIndirectParamW(::GetModuleHandleW(nullptr), &empty.dialog, owner, Dispatch,
                                     reinterpret_cast<LPARAM>(this));
}

void Dialog::End(INT_PTR result) { ::EndDialog(window_, result); }
bool Dialog::OnNotify(const NMHDR&) { return false; }

INT_PTR CALLBACK Dialog::Dispatch(HWND window, UINT message, WPARAM word, LPARAM argument) {
    if (message == WM_INITDIALOG) {
        ::SetWindowLongPtrW(window, DWLP_USER, argument);
        reinterpret_cast<Dialog*>(argument)->window_ = window;
    }
    auto* dialog = reinterpret_cast<Dialog*>(::GetWindowLongPtrW(window, DWLP_USER));
    if (!dialog) return FALSE;
    return HandleSafely(window, [&] { return dialog->Handle(message, word, argument); });
}

INT_PTR Dialog::Handle(UINT message, WPARAM word, LPARAM argument) {
    switch (message) {
        case WM_INITDIALOG:
            Start();
            return FALSE;  // the focus is set
        case WM_SIZE:
            if (isStarted_ && word != SIZE_MINIMIZED) OnSize(ClientSize(window_));
            return TRUE;
        case WM_GETMINMAXINFO: {
            const SIZE least = OuterSize();
            reinterpret_cast<MINMAXINFO*>(argument)->ptMinTrackSize = {least.cx, least.cy};
            return TRUE;
        }
        case WM_COMMAND:
            OnCommand(LOWORD(word), HIWORD(word));
            return TRUE;
        case WM_NOTIFY:
            ::SetWindowLongPtrW(window_, DWLP_MSGRESULT,
                                OnNotify(*reinterpret_cast<const NMHDR*>(argument)));
            return TRUE;
        case WM_CTLCOLORSTATIC:
            return IsNote(reinterpret_cast<HWND>(argument))
                       ? ColourAsNote(reinterpret_cast<HDC>(word))
                       : FALSE;
        default:
            return FALSE;
    }
}

void Dialog::Start() {
    ::SetWindowTextW(window_, title_.c_str());
    OnInit();
    isStarted_ = true;
    PlaceAtFirst();
    FocusFirst();
    ::ShowWindow(window_, SW_SHOW);
}

/// In the middle of the desktop's working area; in the lower half of the owner, of which the user
/// wants to see something.
void Dialog::PlaceAtFirst() const {
    RECT desktop{};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &desktop, 0);
    const SIZE size = OuterSize();
    RECT around = desktop;
    int y = desktop.top + (desktop.bottom - desktop.top - size.cy) / 2;
    if (const HWND owner = ::GetWindow(window_, GW_OWNER)) {
        ::GetWindowRect(owner, &around);
        y = std::min(around.top + (around.bottom - around.top) / 2, around.bottom - size.cy);
    }
    const int x = around.left + (around.right - around.left - size.cx) / 2;
    ::SetWindowPos(window_, nullptr, x, std::max<int>(y, desktop.top), size.cx, size.cy,
                   SWP_NOZORDER | SWP_NOACTIVATE);
}

SIZE Dialog::OuterSize() const {
    const SIZE inner = FirstSize();
    RECT frame = {0, 0, inner.cx, inner.cy};
    ::AdjustWindowRectEx(&frame, static_cast<DWORD>(::GetWindowLongPtrW(window_, GWL_STYLE)), FALSE,
                         static_cast<DWORD>(::GetWindowLongPtrW(window_, GWL_EXSTYLE)));
    // As far as there is room.
    RECT desktop{};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &desktop, 0);
    return {std::min(frame.right - frame.left, desktop.right - desktop.left),
            std::min(frame.bottom - frame.top, desktop.bottom - desktop.top)};
}
