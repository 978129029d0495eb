#include <gmock/gmock.h>
#include <process.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

#include <cstring>
#include <string_view>
#include <utility>

namespace {

/// All processes that loaded one file share its words: every test has a copy of its own.
constexpr char kCopy[] = "Idle.dll";
HMODULE Copy() { return ::GetModuleHandleA(kCopy); }

struct Patch : kitbag::test::ImportPatch {
    Patch(const char* name, auto* fake) : ImportPatch(name, fake, kCopy) {}
};

std::filesystem::path Built(const char* file) {
    return std::filesystem::path(_pgmptr).replace_filename(file);
}

struct IdleMonitor : testing::Test {
    IdleMonitor() {
        copy_file(Built("Kitbag.dll"), copy);
        ::LoadLibraryW(copy.c_str());
    }
    ~IdleMonitor() override { ::FreeLibrary(Copy()); }
    /// None of the copy's functions takes an argument.
    static DWORD Call(const char* name) { return DWORD(::GetProcAddress(Copy(), name)()); }
    static DWORD Init() { return Call("KB_UserIdleMonitorInit"); }
    static DWORD Term() { return Call("KB_UserIdleMonitorTerm"); }
    static DWORD LastInput() { return Call("KB_GetLastUserInputTime"); }

    kitbag::test::TemporaryFolder folder;
    std::filesystem::path copy = folder / kCopy;
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
    EXPECT_TRUE(thread == 0 && module == Copy());
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
    const Patch patch("SetWindowsHookExA", FakeInstall);
    EXPECT_TRUE(Init());
    Term();
    EXPECT_EQ(Calls{}, TakeCalls());
    LASTINPUTINFO info = {sizeof info, 0};
    ::GetLastInputInfo(&info);
    EXPECT_EQ(info.dwTime, LastInput());
}

TEST_F(IdleMonitor, InstallsHooksWhereTheSystemCannotTell) {
    const Patch find("GetProcAddress", FindNothing), ticks("GetTickCount", FakeTicks),
        install("SetWindowsHookExA", FakeInstall), next("CallNextHookEx", FakeNext),
        remove("UnhookWindowsHookEx", FailToRemove);
    const auto init = [&](int keyboard, int mouse) {
        hooks[WH_KEYBOARD] = keyboard;
        hooks[WH_MOUSE] = mouse;
        EXPECT_EQ(keyboard && mouse, Init());
        return TakeCalls();
    };
    EXPECT_EQ((Calls{2, 7}), init(0, 22));
    EXPECT_EQ((Calls{22, 2, 7}), init(11, 0));
    EXPECT_EQ(Calls{}, init(11, 0));
    Term();
    TakeCalls();

    now = 0xffffff00;
    EXPECT_EQ((Calls{2, 7}), init(11, 22));
    EXPECT_EQ(Calls{}, init(11, 22));
    for (const int kind : {WH_KEYBOARD, WH_MOUSE}) {
        now += 500;
        EXPECT_EQ(6, procedures[kind](HC_NOREMOVE, 1, 2));
        EXPECT_EQ(500u, Call("KB_GetUserIdleTime"));
        EXPECT_EQ(3, procedures[kind](HC_ACTION, 1, 2));
        EXPECT_EQ(0u, Call("KB_GetUserIdleTime"));
        EXPECT_EQ((Calls{hooks[kind], hooks[kind]}), TakeCalls());
    }

    // The section as the module's header describes it; a second process sees its words.
    const std::string_view header(reinterpret_cast<const char*>(Copy()), 4096);
    const auto* section =
        reinterpret_cast<const IMAGE_SECTION_HEADER*>(header.substr(header.find(".UIdle")).data());
    const DWORD words[] = {11, 22, now, 0};
    EXPECT_EQ(sizeof words, section->Misc.VirtualSize);
    EXPECT_EQ(0, std::memcmp(words, &header[section->VirtualAddress], sizeof words));
    const auto reader = Built("kitbag_idle_reader.exe");
    EXPECT_EQ(now,
              DWORD(::_wspawnl(_P_WAIT, reader.c_str(), reader.c_str(), copy.c_str(), nullptr)));

    kitbag::test::TraceCapture trace;
    Term();
    Term();
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
    const Patch patch("GetProcAddress", FindNothing);
    EXPECT_TRUE(Init());
    for (const auto input : {PressKey, MoveMouse}) {
        const DWORD before = LastInput();
        // The first inputs may come before the window does.
        for (int i = 0; LastInput() == before && i < 5000; ++i) {
            ::Sleep(1);
            input();
            for (MSG message; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);)
                ::DispatchMessageA(&message);
        }
        EXPECT_NE(before, LastInput());
    }
    Term();
    ::DestroyWindow(window);
}

}  // namespace
