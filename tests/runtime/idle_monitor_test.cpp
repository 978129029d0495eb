#include <gtest/gtest.h>
#include <kitbag/runtime/idle_monitor.h>
#include <process.h>
#include <tests/support/import_patch.h>
#include <tests/support/trace_capture.h>

#include <cstring>
#include <filesystem>
#include <utility>

namespace {

using kitbag::test::ImportPatch;

BYTE* Library() { return reinterpret_cast<BYTE*>(::GetModuleHandleA("Kitbag.dll")); }

const IMAGE_SECTION_HEADER& SharedSection() {
    auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(Library());
    auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(Library() + dos->e_lfanew);
    auto* section = reinterpret_cast<const IMAGE_SECTION_HEADER*>(nt + 1);
    while (std::memcmp(section->Name, ".UIdle", sizeof ".UIdle") != 0) ++section;
    return *section;
}

/// All processes share the words: one has them at a time, until its end.
class IdleMonitor : public testing::Test {
 protected:
    IdleMonitor() {
        static HANDLE mutex = ::CreateMutexA(nullptr, FALSE, "Kitbag idle monitor tests");
        ::WaitForSingleObject(mutex, INFINITE);
        std::memset(Library() + SharedSection().VirtualAddress, 0, 16);
    }
};

DWORD now = 0;
DWORD WINAPI FakeTicks() { return now; }
FARPROC WINAPI FindNothing(HMODULE, const char*) { return nullptr; }

/// By kind, WH_KEYBOARD or WH_MOUSE: what was installed, and the hook that the system answers.
HOOKPROC procedures[8];
int hooks[8];
/// The kinds that were installed; the hooks that were removed or passed on to.
using Calls = std::vector<int>;
Calls calls;
Calls TakeCalls() { return std::exchange(calls, {}); }

HHOOK WINAPI FakeInstall(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    EXPECT_TRUE(thread == 0 && Library() == reinterpret_cast<BYTE*>(module));
    procedures[kind] = procedure;
    calls.push_back(kind);
    return reinterpret_cast<HHOOK>(hooks[kind]);
}
LRESULT WINAPI FakeNext(HHOOK hook, int code, WPARAM first, LPARAM second) {
    calls.push_back(reinterpret_cast<int>(hook));
    return code + static_cast<int>(first) + second;
}
BOOL WINAPI FailToRemove(HHOOK hook) { return FakeNext(hook, 0, 0, FALSE); }

TEST_F(IdleMonitor, AsksTheSystemWhereItCan) {
    const ImportPatch patch("SetWindowsHookExA", FakeInstall);
    EXPECT_TRUE(KB_UserIdleMonitorInit());
    KB_UserIdleMonitorTerm();
    EXPECT_EQ(Calls{}, TakeCalls());
    LASTINPUTINFO info = {sizeof info, 0};
    ::GetLastInputInfo(&info);
    EXPECT_EQ(info.dwTime, KB_GetLastUserInputTime());
}

TEST_F(IdleMonitor, InstallsHooksWhereTheSystemCannotTell) {
    const ImportPatch find("GetProcAddress", FindNothing), ticks("GetTickCount", FakeTicks),
        install("SetWindowsHookExA", FakeInstall), next("CallNextHookEx", FakeNext),
        remove("UnhookWindowsHookEx", FailToRemove);
    const auto init = [](int keyboard, int mouse) {
        hooks[WH_KEYBOARD] = keyboard;
        hooks[WH_MOUSE] = mouse;
        EXPECT_EQ(keyboard && mouse, KB_UserIdleMonitorInit());
        return TakeCalls();
    };
    EXPECT_EQ((Calls{2, 7}), init(0, 0));
    EXPECT_EQ((Calls{2, 7}), init(0, 22));
    EXPECT_EQ((Calls{22, 2, 7}), init(11, 0));
    EXPECT_EQ(Calls{}, init(11, 0));
    KB_UserIdleMonitorTerm();
    TakeCalls();

    now = 0xffffff00;
    EXPECT_EQ((Calls{2, 7}), init(11, 22));
    EXPECT_EQ(Calls{}, init(11, 22));
    for (const int kind : {WH_KEYBOARD, WH_MOUSE}) {
        now += 500;
        EXPECT_EQ(6, procedures[kind](HC_NOREMOVE, 1, 2));
        EXPECT_EQ(500u, KB_GetUserIdleTime());
        EXPECT_EQ(3, procedures[kind](HC_ACTION, 1, 2));
        EXPECT_EQ(0u, KB_GetUserIdleTime());
        EXPECT_EQ((Calls{hooks[kind], hooks[kind]}), TakeCalls());
    }
    // A second process sees what this one stored.
    const auto reader = std::filesystem::path(_pgmptr).replace_filename("kitbag_idle_reader.exe");
    EXPECT_EQ(now, DWORD(::_wspawnl(_P_WAIT, reader.c_str(), reader.c_str(), nullptr)));
    EXPECT_EQ(16u, SharedSection().Misc.VirtualSize);
    const DWORD flags = IMAGE_SCN_MEM_SHARED | IMAGE_SCN_MEM_READ | IMAGE_SCN_MEM_WRITE;
    EXPECT_EQ(flags, flags & SharedSection().Characteristics);

    kitbag::test::TraceCapture trace;
    KB_UserIdleMonitorTerm();
    KB_UserIdleMonitorTerm();
    trace.Expect({"UnhookWindowsHookEx(g_hHookKbd)", "UnhookWindowsHookEx(g_hHookMouse)"});
    EXPECT_EQ((Calls{11, 22}), TakeCalls());
}

void PressKey() { ::keybd_event('A', 0, 0, 0); }
void MoveMouse() { ::mouse_event(MOUSEEVENTF_MOVE, 1, 1, 0, 0); }

TEST_F(IdleMonitor, HearsRealInputThroughItsHooks) {
    HWND window = ::CreateWindowA("EDIT", "", WS_POPUP | WS_VISIBLE, 0, 0, 200, 200, nullptr,
                                  nullptr, nullptr, nullptr);
    if (!window) GTEST_SKIP() << "no display";
    ::SetForegroundWindow(window);
    const ImportPatch patch("GetProcAddress", FindNothing);
    EXPECT_TRUE(KB_UserIdleMonitorInit());
    for (const auto input : {PressKey, MoveMouse}) {
        const DWORD before = KB_GetLastUserInputTime();
        // The first inputs may come before the window does.
        for (int i = 0; KB_GetLastUserInputTime() == before && i < 5000; ++i) {
            ::Sleep(1);
            input();
            for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);)
                ::DispatchMessageA(&message);
        }
        EXPECT_NE(before, KB_GetLastUserInputTime());
    }
    KB_UserIdleMonitorTerm();
    ::DestroyWindow(window);
}

}  // namespace
