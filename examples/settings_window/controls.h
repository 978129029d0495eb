// The system's controls, as the window uses them.
#pragma once

#include <windows.h>

#include <exception>
#include <string>

/// Handles a message. No exception may pass through the system, so that the user sees it here.
LRESULT HandleSafely(HWND window, auto&& handle) {
    try {
        return handle();
    } catch (const std::exception& failure) {
        ::MessageBoxA(window, failure.what(), nullptr, MB_ICONERROR);
        return 0;
    }
}

/// A rectangle by its corner and its size.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// A visible child window in the look of the system, behind its parent's earlier children in the
/// tab order.
HWND AddControl(HWND parent, const wchar_t* kind, const std::wstring& text, DWORD style,
                int id = 0);
HWND AddButton(HWND parent, const std::wstring& text, int id = 0);
/// Wide enough for its text.
int ButtonWidth(HWND button);
void PlaceControl(HWND control, const Area& area);
std::wstring TextIn(HWND control);
/// The answer to WM_CTLCOLORSTATIC for what has to be noticed.
LRESULT ColourAsNote(HDC device);
/// The size of a window's inner area.
SIZE ClientSize(HWND window);
