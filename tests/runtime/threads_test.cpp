// The thread classes, and the library under eight threads at once.

#include <kitbag/kitbag.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/temporary_folder.h>

#include <thread>

namespace {

using namespace kitbag::test;

/// Notes its life: start '<', event 'e', time-out 't', exit '>'.
struct Recorder : EventThread {
    void OnThreadStart() override {
        TriggerEvent();
        TriggerEvent();
        happened += '<';
    }
    void OnThreadExit() override { happened += '>'; }
    bool OnEvent() override { return happened += 'e', true; }
    bool OnTimeout() override {
        // The starting thread may not have set it yet.
        while (::GetThreadPriority(::GetCurrentThread()) != THREAD_PRIORITY_LOWEST) ::Sleep(1);
        // Neither waits for the very thread that asks.
        EXPECT_TRUE(running_ && WaitForFinish(INFINITE));
        Stop();
        return happened += 't', true;
    }

    std::string happened;
};

/// What happens in a life that is ended after so many milliseconds if it does not end before.
std::string LifeOf(Recorder& thread, DWORD timeout, DWORD patience) {
    thread.happened.clear();
    EXPECT_TRUE(thread.Start(THREAD_PRIORITY_LOWEST, timeout));
    thread.WaitForFinish(patience);
    thread.Stop();
    return thread.happened;
}

HANDLE WINAPI NoEvent(void*, BOOL, BOOL, const char*) { return nullptr; }

TEST(Threads, AnswerEventsAndTimeOutsUntilTheyAreStopped) {
    Recorder thread, withoutEvent;
    EXPECT_EQ("<et>", LifeOf(thread, 0, INFINITE));
    EXPECT_TRUE(LifeOf(thread, INFINITE, 2000) == "<e>" && thread.IsFinished());
    const ImportPatch patch("CreateEventA", NoEvent);
    EXPECT_EQ("<>", LifeOf(withoutEvent, INFINITE, 2000));
}

DWORD now = 0;
DWORD WINAPI FakeTicks() { return now; }

TEST(TimeDelayAction, ActsOnceMoreThanTheDelayHasPassed) {
    const ImportPatch patch("GetTickCount", FakeTicks);
    TimeDelayAction action;
    const auto actsAt = [&](DWORD tick, DWORD delay) { return now = tick, action.DoAction(delay); };
    EXPECT_FALSE(actsAt(1000, 1000));
    EXPECT_TRUE(actsAt(1001, 1000) && actsAt(0xffffff00, 0) && actsAt(0x100, 0x1ff));
    EXPECT_EQ(3u, action.GetCount());
}

template <class Work>
void RunOnEightThreads(Work work) {
    std::vector<std::jthread> threads;
    for (char thread = 'a'; thread < 'i'; ++thread) threads.emplace_back(work, thread);
}

TEST(Concurrency, StartsAndStopsEventThreadsThousandsOfTimes) {
    RunOnEightThreads([](char) {
        Recorder thread;
        // Stopped before they began, and while they wait.
        for (DWORD i = 0; i < 125; ++i) EXPECT_TRUE(LifeOf(thread, INFINITE, i % 3).ends_with('>'));
    });
    Recorder thread;
    ExpectNoHandleLeak([&] { EXPECT_EQ("<et>", LifeOf(thread, 0, INFINITE)); });
}

TEST(Concurrency, KeepsTheSettingsOfEveryThread) {
    RunOnEightThreads([](char thread) {
        for (unsigned length = 1; length <= 50; ++length) {
            const TWinString<char> text(length, thread);
            TWinString<char> read;
            EXPECT_TRUE(KB_SetTStringA(text.c_str(), "Own", text));
            EXPECT_TRUE(KB_SetTStringA("Shared", "Text", text));
            // Not readable where another thread lengthens it meanwhile.
            EXPECT_TRUE(!KB_GetTStringA("Shared", "Text", read) ||
                        read == std::string(read.size(), read[0]));
            EXPECT_TRUE(KB_GetTStringA(text.c_str(), "Own", read) && read == text);
        }
    });
}

BOOL WINAPI SlowVersion(OSVERSIONINFOA* version) { return ::Sleep(30), ::GetVersionExA(version); }
DWORD WINAPI SlowFile(const char* path) { return ::Sleep(30), ::GetFileAttributesA(path); }

TEST(Concurrency, GivesEveryFirstCallTheSameAnswer) {
    const TemporaryFolder folder;
    const std::string data = (folder / "Data\\").string();
    KB_SetIntA("Screen", "User experience level", 1);
    KB_SetDataDirectoryA(data);
    const ImportPatch version("GetVersionExA", SlowVersion), file("GetFileAttributesA", SlowFile);
    RunOnEightThreads([&](char) {
        EXPECT_TRUE(KB_IsNT() && KB_IsInteractiveSession() && KB_GetUserInterfaceLevel() == 1);
        TWinString<char> found;
        EXPECT_TRUE(KB_GetDataDirectoryA(found) && found == data);
    });
}

}  // namespace
