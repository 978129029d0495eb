#include "look.h"

namespace {

/// The screen's device context.
class Screen {
 public:
    Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen() { ::ReleaseDC(nullptr, device_); }
    HDC Device() const { return device_; }

 private:
    HDC device_ = ::GetDC(nullptr);
};

}  // namespace

const Look& Look::OfTheSystem() {
    static const Look look;
    return look;
}

Look::Look() : dpi_(::GetDeviceCaps(Screen().Device(), LOGPIXELSY)) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    plain_.reset(::CreateFontIndirectW(&metrics.lfMessageFont));
    metrics.lfMessageFont.lfWeight = FW_BOLD;
    bold_.reset(::CreateFontIndirectW(&metrics.lfMessageFont));
}

SIZE Look::SizeOf(const std::wstring& text, HFONT font) const {
    const RECT area = Measured(text, font ? font : Plain(), 0, DT_SINGLELINE | DT_NOPREFIX);
    return {area.right, area.bottom};
}

int Look::HeightOf(const std::wstring& text, int width) const {
    return Measured(text, Plain(), width, DT_WORDBREAK | DT_NOPREFIX).bottom;
}

RECT Look::Measured(const std::wstring& text, HFONT font, int width, UINT format) const {
    const Screen screen;
    RECT area = {0, 0, width, 0};
    const HGDIOBJ before = ::SelectObject(screen.Device(), font);
    ::DrawTextW(screen.Device(), text.c_str(), -1, &area, format | DT_CALCRECT);
    ::SelectObject(screen.Device(), before);
    return area;
}
