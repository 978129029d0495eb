// The system's fonts and sizes, for the resolution that the user has chosen.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>

class Look {
 public:
    /// The resolution of a session does not change while a program runs.
    static const Look& OfTheSystem();

    /// The distance that is this many pixels at 96 dpi.
    int Scaled(int pixels) const { return ::MulDiv(pixels, dpi_, USER_DEFAULT_SCREEN_DPI); }
    HFONT Plain() const { return plain_.get(); }
    HFONT Bold() const { return bold_.get(); }
    /// The height of an edit control or a button.
    int ControlHeight() const { return SizeOf(L"Ag").cy + Scaled(9); }
    /// Of a text in one line.
    SIZE SizeOf(const std::wstring& text, HFONT font = nullptr) const;
    /// Of a text that is broken into lines of at most this width.
    int HeightOf(const std::wstring& text, int width) const;

 private:
    struct DeleteFont {
        void operator()(HFONT font) const { ::DeleteObject(font); }
    };
    using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteFont>;

    Look();
    RECT Measured(const std::wstring& text, HFONT font, int width, UINT format) const;

    int dpi_;
    Font plain_;
    Font bold_;
};
