#include <gtest/gtest.h>
#include <kitbag/runtime/idle_monitor.h>
#include <process.h>
#include <tests/support/import_patch.h>
#include <tests/support/trace_capture.h>

#include <cstring>
#include <filesystem>
#include <map>
#include <utility>

namespace {

using kitbag::test::ImportPatch;
using Numbers = std::vector<DWORD>;

BYTE* Library() { return reinterpret_cast<BYTE*>(::GetModuleHandleA("Kitbag.dll")); }

const IMAGE_SECTION_HEADER& SharedSection() {
    auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(Library());
    auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(Library() + dos->e_lfanew);
    auto* section = reinterpret_cast<const IMAGE_SECTION_HEADER*>(nt + 1);
    while (std::memcmp(section->Name, ".UIdle", sizeof ".UIdle") != 0) ++section;
    return *section;
}

/// Keyboard hook, mouse hook, tick of the last input, address of GetLastInputInfo.
DWORD* Words() { return reinterpret_cast<DWORD*>(Library() + SharedSection().VirtualAddress); }

/// All processes share the words: one test at a time has them, cleared.
class IdleMonitor : public testing::Test {
 protected:
    IdleMonitor() {
        ::WaitForSingleObject(mutex_, INFINITE);
        std::fill_n(Words(), 4, 0);
    }
    ~IdleMonitor() override {
        std::fill_n(Words(), 4, 0);
        ::ReleaseMutex(mutex_);
        ::CloseHandle(mutex_);
    }

 private:
    HANDLE mutex_ = ::CreateMutexA(nullptr, FALSE, "Kitbag idle monitor tests");
};

DWORD now = 0;
DWORD WINAPI FakeTicks() { return now; }
BOOL WINAPI FailingInputInfo(LASTINPUTINFO* info) { return info->dwTime = info->cbSize, FALSE; }

TEST_F(IdleMonitor, SharesItsWordsWithEveryProcess) {
    EXPECT_EQ(16u, SharedSection().Misc.VirtualSize);
    const DWORD flags = IMAGE_SCN_MEM_SHARED | IMAGE_SCN_MEM_READ | IMAGE_SCN_MEM_WRITE;
    EXPECT_EQ(flags, flags & SharedSection().Characteristics);
    Words()[2] = 4242;
    const auto reader = std::filesystem::path(_pgmptr).replace_filename("kitbag_idle_reader.exe");
    EXPECT_EQ(4242, ::_wspawnl(_P_WAIT, reader.c_str(), reader.c_str(), nullptr));
}

TEST_F(IdleMonitor, AsksTheSystemWhereItCan) {
    EXPECT_TRUE(KB_UserIdleMonitorInit());
    KB_UserIdleMonitorTerm();
    EXPECT_EQ((Numbers{0, 0, 0, reinterpret_cast<DWORD>(&::GetLastInputInfo)}),
              Numbers(Words(), Words() + 4));
    LASTINPUTINFO info = {sizeof info, 0};
    ::GetLastInputInfo(&info);
    EXPECT_EQ(info.dwTime, KB_GetLastUserInputTime());

    const ImportPatch patch("GetTickCount", FakeTicks);
    Words()[3] = reinterpret_cast<DWORD>(&FailingInputInfo);
    now = 3;
    EXPECT_EQ(0u - 5u, KB_GetUserIdleTime());
}

FARPROC WINAPI FindNothing(HMODULE, const char*) { return nullptr; }

std::map<int, HOOKPROC> procedures;
std::map<int, DWORD> hooks;
/// The kinds that were installed; the hooks that were removed or passed on to.
Numbers calls;

HHOOK WINAPI FakeInstall(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    EXPECT_TRUE(thread == 0 && Library() == reinterpret_cast<BYTE*>(module));
    procedures[kind] = procedure;
    calls.push_back(static_cast<DWORD>(kind));
    return reinterpret_cast<HHOOK>(hooks[kind]);
}
LRESULT WINAPI FakeNext(HHOOK hook, int code, WPARAM first, LPARAM second) {
    calls.push_back(reinterpret_cast<DWORD>(hook));
    return code + static_cast<int>(first) + second;
}
BOOL WINAPI FailToRemove(HHOOK hook) { return FakeNext(hook, 0, 0, FALSE); }

class IdleMonitorHooks : public IdleMonitor {
 protected:
    Numbers TakeCalls() { return std::exchange(calls, {}); }

 private:
    ImportPatch find_{"GetProcAddress", FindNothing};
    ImportPatch install_{"SetWindowsHookExA", FakeInstall};
    ImportPatch next_{"CallNextHookEx", FakeNext};
    ImportPatch remove_{"UnhookWindowsHookEx", FailToRemove};
    ImportPatch ticks_{"GetTickCount", FakeTicks};
};

TEST_F(IdleMonitorHooks, StoreTheTimeOfEachInputAndPassItOn) {
    now = 1000;
    hooks = {{WH_KEYBOARD, 11}, {WH_MOUSE, 22}};
    EXPECT_TRUE(KB_UserIdleMonitorInit() && KB_UserIdleMonitorInit());
    EXPECT_EQ((Numbers{WH_KEYBOARD, WH_MOUSE}), TakeCalls());
    EXPECT_EQ((Numbers{11, 22, 1000, 0}), Numbers(Words(), Words() + 4));
    for (const auto& [kind, hook] : hooks) {
        now += 500;
        EXPECT_EQ(6, procedures[kind](HC_NOREMOVE, 1, 2));
        EXPECT_EQ(500u, KB_GetUserIdleTime());
        EXPECT_EQ(3, procedures[kind](HC_ACTION, 1, 2));
        EXPECT_EQ(0u, KB_GetUserIdleTime());
        EXPECT_EQ((Numbers{hook, hook}), TakeCalls());
    }

    kitbag::test::TraceCapture trace;
    KB_UserIdleMonitorTerm();
    KB_UserIdleMonitorTerm();
    trace.Expect({"UnhookWindowsHookEx(g_hHookKbd)", "UnhookWindowsHookEx(g_hHookMouse)"});
    EXPECT_EQ((Numbers{11, 22}), TakeCalls());
    EXPECT_EQ((Numbers{0, 0, 2000, 0}), Numbers(Words(), Words() + 4));
}

TEST_F(IdleMonitorHooks, AreTriedAgainOnlyWhereTheKeyboardHookWasRefused) {
    const struct {
        DWORD keyboard, mouse;
        Numbers again;
    } refusals[] = {{11, 0, {}}, {0, 0, {2, 7}}, {0, 22, {22, 2, 7}}};
    for (const auto& refusal : refusals) {
        std::fill_n(Words(), 4, 0);
        hooks = {{WH_KEYBOARD, refusal.keyboard}, {WH_MOUSE, refusal.mouse}};
        EXPECT_FALSE(KB_UserIdleMonitorInit());
        TakeCalls();
        EXPECT_FALSE(KB_UserIdleMonitorInit());
        EXPECT_EQ(refusal.again, TakeCalls());
    }
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
        Words()[2] = 0;
        // The first inputs may come before the window does.
        for (int i = 0; KB_GetLastUserInputTime() == 0 && i < 5000; ++i) {
            input();
            for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);)
                ::DispatchMessageA(&message);
            ::Sleep(1);
        }
        EXPECT_NE(0u, KB_GetLastUserInputTime());
    }
    KB_UserIdleMonitorTerm();
    ::DestroyWindow(window);
}

}  // namespace
