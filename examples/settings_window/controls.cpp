#include "controls.h"

#include <commctrl.h>

#include <algorithm>

#include "look.h"

HWND AddControl(HWND parent, const wchar_t* kind, const std::wstring& text, DWORD style, int id) {
    const std::wstring_view name = kind;
    const bool isFramed = name == WC_EDITW || name == WC_LISTVIEWW || name == WC_TREEVIEWW;
    const HWND control = ::CreateWindowExW(
        isFramed ? WS_EX_CLIENTEDGE : 0, kind, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0,
        0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(Look::OfTheSystem().Plain()),
                   FALSE);
    return control;
}

HWND AddButton(HWND parent, const std::wstring& text, int id) {
    return AddControl(parent, WC_BUTTONW, text, WS_TABSTOP | BS_PUSHBUTTON | BS_NOTIFY, id);
}

int ButtonWidth(HWND button) {
    const Look& look = Look::OfTheSystem();
    const int forText = look.SizeOf(TextIn(button)).cx + look.Scaled(20);
    return std::max(forText, look.Scaled(80));
}

void PlaceControl(HWND control, const Area& area) {
    ::SetWindowPos(control, nullptr, area.x, area.y, std::max(area.width, 0),
                   std::max(area.height, 0), SWP_NOZORDER | SWP_NOACTIVATE);
}

std::wstring TextIn(HWND control) {
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        ::GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
    return text;
}

SIZE ClientSize(HWND window) {
    RECT area{};
    ::GetClientRect(window, &area);
    return {area.right, area.bottom};
}

LRESULT ColourAsNote(HDC device) {
    // Both are given, so that they suit each other in every colour scheme. The brush lives as long
    // as the program.
    constexpr COLORREF kPaper = RGB(255, 236, 179);
    constexpr COLORREF kInk = RGB(66, 46, 0);
    static const HBRUSH brush = ::CreateSolidBrush(kPaper);
    ::SetTextColor(device, kInk);
    ::SetBkColor(device, kPaper);
    return reinterpret_cast<LRESULT>(brush);
}
