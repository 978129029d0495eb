// The settings of a media player in a window. All of it is built from the settings' declarations in
// player.h: another program brings its own, and the files beside this one.

#include <objbase.h>
#include <windows.h>

#include "player.h"
#include "settings_dialog.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
    // The shell's dialogs for files and folders are COM objects.
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    EditSettings<Player>("Example player", L"Player settings");
    ::CoUninitialize();
    return 0;
}
