#include <gtest/gtest.h>
#include <kitbag/runtime/threads.h>
#include <kitbag/runtime/time_delay_action.h>
#include <tests/support/import_patch.h>

#include <string>

namespace {

using kitbag::test::ImportPatch;

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

std::string LifeWith(DWORD timeout) {
    Recorder thread;
    thread.Start(THREAD_PRIORITY_LOWEST, timeout);
    EXPECT_EQ(timeout == 0, thread.WaitForFinish(timeout == 0 ? INFINITE : 2000));
    thread.Stop();
    return thread.happened;
}

HANDLE WINAPI NoEvent(void*, BOOL, BOOL, const char*) { return nullptr; }
HANDLE WINAPI NoThread(void*, SIZE_T, void*, void*, DWORD, DWORD*) { return nullptr; }

TEST(Threads, AnswerEventsAndTimeOutsUntilTheyAreStopped) {
    EXPECT_EQ("<et>", LifeWith(0));
    EXPECT_EQ("<e>", LifeWith(INFINITE));
    const ImportPatch patch("CreateEventA", NoEvent);
    EXPECT_EQ("<>", LifeWith(INFINITE));
}

TEST(Threads, RunBothHooksWhenStoppedBeforeTheyBegan) {
    const ImportPatch patch("CreateThread", NoThread);
    Recorder thread;
    EXPECT_TRUE(thread.Start(THREAD_PRIORITY_NORMAL, 0));
    thread.Stop();
    EXPECT_FALSE(thread.IsActive() || thread.IsFinished());
    SimpleThread::ThreadProc(&thread);
    EXPECT_EQ("<>", thread.happened);
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

}  // namespace
