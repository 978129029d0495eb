// Shows the settings window as a user would have left it, for pictures: with demonstration data
// that is held in memory only. Use: settings_window_scenes SCENE      basic, all, row, restart or
// list; ended from outside

#include <windows.h>

// Behind windows.h, which it needs.
#include <commctrl.h>
#include <objbase.h>

#include <iterator>
#include <string>
#include <utility>

#include "settings_window/player.h"
#include "settings_window/settings_dialog.h"

namespace {

constexpr wchar_t kTitle[] = L"Player settings";

/// What the user does once the window is open.
std::wstring scene;

void Fill(Player& player) {
    struct {
        const char* name;
        unsigned long frequency;
        bool isLocked;
    } const channels[] = {{"Das Erste", 506000, false}, {"ZDF", 522000, false},
                          {"arte", 586000, false},      {"KiKA", 602000, false},
                          {"Kino Nacht", 658000, true}, {"BBC World", 682000, false}};
    for (const auto& [name, frequency, isLocked] : channels) {
        Channel channel;
        channel.name = name;
        channel.frequency = frequency;
        channel.locked = isLocked;
        player.television.channels.push_back(channel);
    }
    for (const char* file : {"D:\\Recordings\\News of the week.mpg",
                             "D:\\Recordings\\A trip to the moon.mpg", "E:\\Music\\Radio play.mp3"})
        player.recent.push_back(file);
}

/// The control behind the label, or the button of that text.
HWND Labelled(HWND parent, const std::wstring& text) {
    for (HWND child = nullptr; (child = ::FindWindowExW(parent, child, nullptr, nullptr));) {
        std::wstring label = TextIn(child);
        std::erase(label, L'&');
        if (const HWND below = Labelled(child, text)) return below;
        if (label != text) continue;
        return ::GetWindowLongPtrW(child, GWL_STYLE) & WS_TABSTOP ? child
                                                                  : ::GetWindow(child, GW_HWNDNEXT);
    }
    return nullptr;
}

void Click(HWND button) { ::PostMessageW(button, BM_CLICK, 0, 0); }

void ChooseSection(HWND dialog, int down) {
    const HWND sections = ::GetDlgItem(dialog, SettingsDialog::kSections);
    ::SetFocus(sections);
    for (int i = 0; i < down; ++i) ::SendMessageW(sections, WM_KEYDOWN, VK_DOWN, 0);
}

void ChooseLevel(HWND dialog, int level) {
    const HWND levels = ::GetDlgItem(dialog, SettingsDialog::kLevel);
    ::SendMessageW(levels, CB_SETCURSEL, static_cast<WPARAM>(3 - level), 0);
    ::SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(SettingsDialog::kLevel, CBN_SELCHANGE),
                   reinterpret_cast<LPARAM>(levels));
}

void Play(HWND dialog) {
    constexpr int kSound = 1, kTelevision = 3;
    if (scene == L"basic") ChooseSection(dialog, kSound);
    if (scene == L"all" || scene == L"restart") {
        ChooseSection(dialog, kSound);
        ChooseLevel(dialog, 0);
    }
    if (scene == L"restart") {
        Click(Labelled(dialog, L"Dolby passthrough"));
        Click(::GetDlgItem(dialog, SettingsDialog::kApply));
    }
    if (scene == L"row") {
        ChooseSection(dialog, kTelevision);
        ::SetFocus(Labelled(dialog, L"Channels"));
        ::SendMessageW(::GetFocus(), WM_KEYDOWN, VK_DOWN, 0);
        ::SendMessageW(::GetFocus(), WM_KEYDOWN, VK_DOWN, 0);
        Click(Labelled(dialog, L"Edit..."));
    }
}

/// Called by the window's own message loop, again and again: a desktop that is still being made
/// takes the focus from the first window on it.
void CALLBACK PlayAndStayActive(HWND, UINT, UINT_PTR, DWORD) {
    static bool isPlayed = false;
    const HWND dialog = ::FindWindowW(L"#32770", kTitle);
    if (!dialog) return;
    const HWND top = ::GetLastActivePopup(dialog);
    ::SetForegroundWindow(top);
    ::SendMessageW(top, WM_NCACTIVATE, TRUE, 0);
    if (!std::exchange(isPlayed, true)) Play(dialog);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* name, int) {
    scene = name;
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    Player player;
    Fill(player);
    const auto edited = player.Edit();
    SettingsDialog dialog(kTitle, *edited, [&] {
        player = *edited;
        return player.RestartNeeded() ? Applied::AfterRestart : Applied::AtOnce;
    });
    ::SetTimer(nullptr, 0, 100, PlayAndStayActive);
    dialog.Run(nullptr);
    ::CoUninitialize();
    return 0;
}
