#include <process.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;

/// All processes that loaded one file share its words: every test has a copy of its own.
constexpr char kCopy[] = "Idle.dll";
HMODULE Copy() { return ::GetModuleHandleA(kCopy); }

const std::filesystem::path built = std::filesystem::path(_pgmptr).parent_path();

struct IdleMonitor : testing::Test {
    IdleMonitor() {
        copy_file(built / "Kitbag.dll", folder / kCopy);
        ::LoadLibraryW((folder / kCopy).c_str());
    }
    ~IdleMonitor() override { ::FreeLibrary(Copy()); }
    /// None of the copy's functions takes an argument.
    static DWORD Call(const char* name) { return DWORD(::GetProcAddress(Copy(), name)()); }
    static DWORD Init() { return Call("KB_UserIdleMonitorInit"); }
    static DWORD Term() { return Call("KB_UserIdleMonitorTerm"); }
    static DWORD LastInput() { return Call("KB_GetLastUserInputTime"); }

    TemporaryFolder folder;
};

DWORD now = 0;
DWORD WINAPI FakeTicks() { return now; }
FARPROC WINAPI FindNothing(HMODULE, const char*) { return nullptr; }

/// The kind of hook, WH_KEYBOARD (2) or WH_MOUSE (7), stands for the hook, too.
int refusedKind = WH_KEYBOARD;
HOOKPROC procedures[8];
/// The hooks asked for and, with a minus, those removed.
std::vector<int> calls;
int WINAPI FakeInstall(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    EXPECT_TRUE(thread == 0 && module == Copy());
    procedures[kind] = procedure;
    calls.push_back(kind);
    return kind == refusedKind ? 0 : kind;
}
BOOL WINAPI FailToRemove(int hook) { return calls.push_back(-hook), FALSE; }
int WINAPI FakeNext(int hook, int code, int key, int more) { return hook + code + key + more; }

TEST_F(IdleMonitor, AsksTheSystemOrInstallsHooks) {
    const ImportPatch install("SetWindowsHookExA", FakeInstall, kCopy),
        next("CallNextHookEx", FakeNext, kCopy), remove("UnhookWindowsHookEx", FailToRemove, kCopy);
    EXPECT_TRUE(Init());
    Term();
    LASTINPUTINFO info = {sizeof info, 0};
    ::GetLastInputInfo(&info);
    EXPECT_EQ(info.dwTime, LastInput());

    // Forgets what an earlier start had found.
    const ImportPatch find("GetProcAddress", FindNothing, kCopy),
        ticks("GetTickCount", FakeTicks, kCopy);
    EXPECT_FALSE(Init());
    refusedKind = WH_MOUSE;
    EXPECT_FALSE(Init() || Init());
    Term();
    refusedKind = 0;
    now = 0xffffff00;
    EXPECT_TRUE(Init() && Init());
    for (const int kind : {WH_KEYBOARD, WH_MOUSE}) {
        now += 500;
        EXPECT_EQ(kind + 63, procedures[kind](HC_NOREMOVE, 20, 40));
        EXPECT_EQ(500u, Call("KB_GetUserIdleTime"));
        EXPECT_EQ(kind + 60, procedures[kind](HC_ACTION, 20, 40));
        EXPECT_EQ(0u, Call("KB_GetUserIdleTime"));
    }

    // The section as the module's header describes it; a second process sees its words.
    const auto* image = reinterpret_cast<const char*>(Copy());
    const auto* section = reinterpret_cast<const IMAGE_SECTION_HEADER*>(
        image + std::string_view(image, 4096).find(".UIdle"));
    const DWORD words[] = {WH_KEYBOARD, WH_MOUSE, now, 0};
    EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(words), sizeof words),
              std::string_view(image + section->VirtualAddress, section->Misc.VirtualSize));
    const auto reader = built / "kitbag_idle_reader.exe", copy = folder / kCopy;
    EXPECT_EQ(int(now), ::_wspawnl(_P_WAIT, reader.c_str(), L"", copy.c_str(), nullptr));

    Term();
    EXPECT_EQ((std::vector{2, 7, -7, 2, 7, -2, 0, 2, 7, -2, -7}), calls);
}

TEST_F(IdleMonitor, HearsRealInputThroughItsHooks) {
    if (!::CreateWindowA("EDIT", "", WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr))
        GTEST_SKIP() << "no display";
    const ImportPatch find("GetProcAddress", FindNothing, kCopy);
    EXPECT_TRUE(Init());
    const DWORD before = LastInput();
    // The first keys may come before the window does.
    for (MSG message; LastInput() == before; ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        ::Sleep(1);
        ::keybd_event('A', 0, 0, 0);
    }
    Term();
}

}  // namespace
