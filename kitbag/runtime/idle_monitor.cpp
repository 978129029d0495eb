#include <kitbag/frame/compiler.h>
#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/module_base.h>
#include <kitbag/runtime/idle_monitor.h>

#include <atomic>

namespace {

using InputInfoFunction = decltype(&::GetLastInputInfo);

/// One record, because its order is relied on and a compiler may reorder separate variables.
struct SharedWords {
    std::atomic<HHOOK> keyboardHook;
    std::atomic<HHOOK> mouseHook;
    std::atomic<DWORD> lastInputTick;
    /// Null where the system lacks it. One process finds it for all: user32 lies at the same
    /// address in each of them.
    std::atomic<InputInfoFunction> getLastInputInfo;
};
static_assert(sizeof(SharedWords) == 16);
static_assert(std::atomic<HHOOK>::is_always_lock_free && std::atomic<DWORD>::is_always_lock_free);

// The hooks run in whichever process receives the input, the readers in the one that asks.
KITBAG_SHARED_SECTION(".UIdle") constinit SharedWords shared = {};

// The hook procedures run in other programs, at every key and mouse move: they store the time and
// pass the call on, no more.

void NoteInput(int code) {
    // Other codes are messages that were only looked at.
    if (code == HC_ACTION) shared.lastInputTick = ::GetTickCount();
}

LRESULT CALLBACK OnKeyboard(int code, WPARAM key, LPARAM details) {
    NoteInput(code);
    return ::CallNextHookEx(shared.keyboardHook, code, key, details);
}

LRESULT CALLBACK OnMouse(int code, WPARAM message, LPARAM details) {
    NoteInput(code);
    return ::CallNextHookEx(shared.mouseHook, code, message, details);
}

/// Null where it is missing, even if another process had found one.
void FindInputInfoFunction() {
    HMODULE user = ::GetModuleHandleA("User32");
    if (!user) return;
    shared.getLastInputInfo = reinterpret_cast<InputInfoFunction>(
        reinterpret_cast<void*>(::GetProcAddress(user, "GetLastInputInfo")));
}

void InstallHooks() {
    // The keyboard hook was refused last time, the mouse hook was not.
    if (shared.mouseHook) ::UnhookWindowsHookEx(shared.mouseHook);

    shared.keyboardHook = ::SetWindowsHookExA(WH_KEYBOARD, OnKeyboard, kitbag::ModuleBase(), 0);
    shared.mouseHook = ::SetWindowsHookExA(WH_MOUSE, OnMouse, kitbag::ModuleBase(), 0);
    shared.lastInputTick = ::GetTickCount();
}

void Refresh() {
    const InputInfoFunction getLastInputInfo = shared.getLastInputInfo;
    if (!getLastInputInfo) return;
    LASTINPUTINFO info = {sizeof info, 0};
    getLastInputInfo(&info);
    shared.lastInputTick = info.dwTime;
}

}  // namespace

BOOL KB_UserIdleMonitorInit() {
    FindInputInfoFunction();
    if (shared.getLastInputInfo) return TRUE;
    if (!shared.keyboardHook) InstallHooks();
    return shared.keyboardHook && shared.mouseHook;
}

void KB_UserIdleMonitorTerm() {
    if (shared.getLastInputInfo || !shared.keyboardHook) return;
    if (!::UnhookWindowsHookEx(shared.keyboardHook)) DebugTrace("UnhookWindowsHookEx(g_hHookKbd)");
    if (!::UnhookWindowsHookEx(shared.mouseHook)) DebugTrace("UnhookWindowsHookEx(g_hHookMouse)");
    shared.keyboardHook = nullptr;
    shared.mouseHook = nullptr;
}

DWORD KB_GetUserIdleTime() {
    const DWORD last = KB_GetLastUserInputTime();
    return ::GetTickCount() - last;
}

DWORD KB_GetLastUserInputTime() {
    Refresh();
    return shared.lastInputTick;
}
