#include <gmock/gmock.h>
#include <kitbag/runtime/idle_monitor.h>
#include <process.h>
#include <tests/support/import_patch.h>
#include <tests/support/library_copy.h>
#include <tests/support/printing.h>
#include <tests/support/trace_capture.h>

namespace {

using namespace kitbag::test;
using testing::ElementsAre;
using testing::IsEmpty;

const HHOOK kKeyboard = reinterpret_cast<HHOOK>(0x1100), kMouse = reinterpret_cast<HHOOK>(0x2200);

/// The system as the library sees it.
struct System {
    DWORD ticks = 5000, lastInput = 0;
    bool hasUser = true;
    bool tellsLastInput = false, readsLastInput = false;
    bool refusesKeyboard = false, refusesMouse = false, keepsHooks = false;
} sys;
std::vector<std::string> calls;
HOOKPROC onKeyboard, onMouse;

DWORD WINAPI Ticks() { return sys.ticks; }

BOOL WINAPI LastInputInfo(LASTINPUTINFO* info) {
    EXPECT_EQ(8u, info->cbSize);
    EXPECT_EQ(0u, info->dwTime);
    if (sys.readsLastInput) info->dwTime = sys.lastInput;
    return sys.readsLastInput;
}

HMODULE WINAPI FindUser(const char* module) {
    EXPECT_STRCASEEQ("user32", module);
    return sys.hasUser ? ::GetModuleHandleA(module) : nullptr;
}

void* WINAPI FindLastInputInfo(HMODULE module, const char* name) {
    EXPECT_EQ(::GetModuleHandleA("user32"), module);
    EXPECT_STREQ("GetLastInputInfo", name);
    return sys.tellsLastInput ? reinterpret_cast<void*>(LastInputInfo) : nullptr;
}

HHOOK WINAPI Install(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    EXPECT_EQ(::GetModuleHandleA(LibraryCopy::kName), module);
    EXPECT_EQ(0u, thread);
    const bool isKeyboard = kind == WH_KEYBOARD;
    EXPECT_EQ(isKeyboard ? WH_KEYBOARD : WH_MOUSE, kind);
    calls.push_back(isKeyboard ? "install keyboard" : "install mouse");
    (isKeyboard ? onKeyboard : onMouse) = procedure;
    if (isKeyboard ? sys.refusesKeyboard : sys.refusesMouse) return nullptr;
    return isKeyboard ? kKeyboard : kMouse;
}

BOOL WINAPI Remove(HHOOK hook) {
    calls.push_back(hook == kKeyboard ? "remove keyboard"
                    : hook == kMouse  ? "remove mouse"
                                      : "remove another");
    return !sys.keepsHooks;
}

LRESULT WINAPI CallNext(HHOOK hook, int code, WPARAM key, LPARAM more) {
    return reinterpret_cast<LRESULT>(hook) + code + static_cast<LRESULT>(key) + more;
}

/// The monitor of a copy of the library: all processes that loaded one file share its words.
struct IdleMonitor : testing::Test {
    IdleMonitor() {
        sys = System();
        calls.clear();
    }

    const LibraryCopy library;
    decltype(KB_UserIdleMonitorInit)* const init = library.Find<BOOL()>("KB_UserIdleMonitorInit");
    decltype(KB_UserIdleMonitorTerm)* const term = library.Find<void()>("KB_UserIdleMonitorTerm");
    decltype(KB_GetUserIdleTime)* const idleTime = library.Find<DWORD()>("KB_GetUserIdleTime");
    decltype(KB_GetLastUserInputTime)* const lastInput =
        library.Find<DWORD()>("KB_GetLastUserInputTime");
};

struct FakedIdleMonitor : IdleMonitor {
    const ImportPatch patches[6] = {{"GetTickCount", Ticks, LibraryCopy::kName},
                                    {"GetModuleHandleA", FindUser, LibraryCopy::kName},
                                    {"GetProcAddress", FindLastInputInfo, LibraryCopy::kName},
                                    {"SetWindowsHookExA", Install, LibraryCopy::kName},
                                    {"UnhookWindowsHookEx", Remove, LibraryCopy::kName},
                                    {"CallNextHookEx", CallNext, LibraryCopy::kName}};
};

TEST_F(FakedIdleMonitor, AsksASystemThatTellsTheLastInput) {
    EXPECT_EQ(5000u, idleTime()) << "since the system's start until it is started";
    sys.tellsLastInput = sys.readsLastInput = true;
    sys.lastInput = 0xfffffff0;  // before the wrap of the ticks
    EXPECT_TRUE(init());
    EXPECT_EQ(0xfffffff0, lastInput());
    EXPECT_EQ(5016u, idleTime());
    sys.readsLastInput = false;
    EXPECT_EQ(0u, lastInput());
    term();
    sys.hasUser = sys.tellsLastInput = false;
    EXPECT_TRUE(init()) << "where it cannot look again";
    EXPECT_THAT(calls, IsEmpty());
    sys.hasUser = true;
    init();
    EXPECT_THAT(calls, ElementsAre("install keyboard", "install mouse")) << "no longer told";
}

TEST_F(FakedIdleMonitor, InstallsItsHooksOnce) {
    EXPECT_TRUE(init());
    EXPECT_EQ(0u, idleTime());
    sys.ticks += 70;
    EXPECT_TRUE(init());
    EXPECT_EQ(70u, idleTime());
    EXPECT_EQ(5000u, lastInput());
    EXPECT_THAT(calls, ElementsAre("install keyboard", "install mouse"));
}

TEST_F(FakedIdleMonitor, TriesBothHooksAgainWhereTheKeyboardHookWasRefused) {
    sys.refusesKeyboard = true;
    EXPECT_FALSE(init());
    term();
    EXPECT_THAT(calls, ElementsAre("install keyboard", "install mouse"));
    calls.clear();
    sys.refusesKeyboard = false;
    EXPECT_TRUE(init());
    EXPECT_THAT(calls, ElementsAre("remove mouse", "install keyboard", "install mouse"));
}

TEST_F(FakedIdleMonitor, LeavesItAtTheKeyboardHookWhereTheMouseHookWasRefused) {
    sys.refusesMouse = true;
    EXPECT_FALSE(init());
    sys.refusesMouse = false;
    EXPECT_FALSE(init());
    EXPECT_THAT(calls, ElementsAre("install keyboard", "install mouse"));
}

TEST_F(FakedIdleMonitor, HearsWhatItsHooksAreToldAndPassesItOn) {
    init();
    for (const auto& [about, procedure, hook] :
         {std::tuple{"keyboard", onKeyboard, 0x1100}, {"mouse", onMouse, 0x2200}}) {
        SCOPED_TRACE(about);
        sys.ticks += 500;
        ASSERT_EQ(hook + HC_NOREMOVE + 60, procedure(HC_NOREMOVE, 20, 40));
        ASSERT_EQ(500u, idleTime()) << "only looked at";
        ASSERT_EQ(hook + HC_ACTION + 60, procedure(HC_ACTION, 20, 40));
        ASSERT_EQ(0u, idleTime());
    }
}

TEST_F(FakedIdleMonitor, RemovesBothHooksAndSaysWhichOneStayed) {
    init();
    calls.clear();
    sys.keepsHooks = true;
    TraceCapture trace;
    term();
    trace.Expect({"UnhookWindowsHookEx(g_hHookKbd)", "UnhookWindowsHookEx(g_hHookMouse)"});
    sys.keepsHooks = false;
    term();
    init();
    term();
    trace.Expect({});
    EXPECT_THAT(calls, ElementsAre("remove keyboard", "remove mouse", "install keyboard",
                                   "install mouse", "remove keyboard", "remove mouse"));
}

TEST_F(FakedIdleMonitor, SharesFourWordsWithAllProcesses) {
    init();
    const auto* image = reinterpret_cast<const char*>(library.Get());
    const auto* section = reinterpret_cast<const IMAGE_SECTION_HEADER*>(
        image + std::string_view(image, 4096).find(".UIdle"));
    const DWORD words[] = {0x1100, 0x2200, 5000, 0};
    EXPECT_EQ(Bytes(words, sizeof words),
              Bytes(image + section->VirtualAddress, section->Misc.VirtualSize));
    const auto reader = library.Built() / "kitbag_idle_reader.exe", file = library.File();
    EXPECT_EQ(5000, ::_wspawnl(_P_WAIT, reader.c_str(), L"", file.c_str(), nullptr));
    sys.tellsLastInput = true;
    init();
    EXPECT_EQ(reinterpret_cast<DWORD>(LastInputInfo),
              reinterpret_cast<const DWORD*>(image + section->VirtualAddress)[3]);
}

TEST_F(IdleMonitor, HearsRealInputThroughItsHooks) {
    if (!::CreateWindowA("EDIT", "", WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr))
        GTEST_SKIP() << "no display";
    const ImportPatch find("GetProcAddress", FindLastInputInfo, LibraryCopy::kName);
    EXPECT_TRUE(init());
    const DWORD before = lastInput();
    // The first keys may come before the window does.
    for (MSG message; lastInput() == before; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        ::Sleep(1);
        ::keybd_event('A', 0, 0, 0);
    }
    term();
}

}  // namespace
