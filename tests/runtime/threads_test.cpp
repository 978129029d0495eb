#include <gtest/gtest.h>
#include <kitbag/runtime/threads.h>
#include <kitbag/runtime/time_delay_action.h>
#include <tests/support/import_patch.h>

#include <string>
#include <utility>

namespace {

using kitbag::test::ImportPatch;

/// Holds a started thread until the test lets it begin.
HANDLE gate = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
/// What happened on the thread: s(tart), e(vent), t(ime-out), x (exit).
std::string happened;
std::string TakeNotes() { return std::exchange(happened, {}); }

class Recorder : public EventThread {
 public:
    void OnThreadStart() override {
        ::WaitForSingleObject(gate, INFINITE);
        happened += 's';
    }
    void OnThreadExit() override { happened += 'x'; }
    bool OnEvent() override { return happened += 'e', true; }
    bool OnTimeout() override {
        EXPECT_EQ(THREAD_PRIORITY_LOWEST, ::GetThreadPriority(::GetCurrentThread()));
        // Neither waits for the very thread that asks.
        EXPECT_TRUE(running_ && WaitForFinish(INFINITE));
        Stop();
        return happened += 't', true;
    }
};

TEST(Threads, AnswerAnEventThenATimeOutAndEndWhenStopped) {
    Recorder thread;
    EXPECT_TRUE(thread.Start(THREAD_PRIORITY_LOWEST, 0));
    EXPECT_FALSE(thread.IsFinished() || thread.WaitForFinish(0));
    thread.TriggerEvent();
    thread.TriggerEvent();
    ::SetEvent(gate);
    EXPECT_TRUE(thread.WaitForFinish(INFINITE) && thread.IsFinished());
    EXPECT_EQ("setx", TakeNotes());
}

template <class... Arguments>
HANDLE WINAPI Refuse(Arguments...) {
    return nullptr;
}

void StartAndStop() {
    Recorder thread;
    thread.Start(THREAD_PRIORITY_NORMAL, INFINITE);
    ::SetEvent(gate);
    EXPECT_FALSE(thread.WaitForFinish(20));
    thread.Stop();
    EXPECT_EQ("sx", TakeNotes());
}

TEST(Threads, AnswerNothingWhenStoppedWhetherTheyHaveAnEventOrNot) {
    StartAndStop();
    const ImportPatch noEvent("CreateEventA", Refuse<void*, BOOL, BOOL, const char*>);
    StartAndStop();
}

TEST(Threads, RunBothHooksWhenStoppedBeforeTheyBegan) {
    const ImportPatch noThread("CreateThread", Refuse<void*, SIZE_T, void*, void*, DWORD, DWORD*>);
    Recorder thread;
    EXPECT_TRUE(thread.Start(THREAD_PRIORITY_NORMAL, 0));
    Recorder copy(thread);
    EXPECT_TRUE(copy.IsActive());
    thread.Stop();
    EXPECT_FALSE(thread.IsActive() || thread.IsFinished());
    ::SetEvent(gate);
    SimpleThread::ThreadProc(&thread);
    EXPECT_EQ("sx", TakeNotes());
}

DWORD now = 0;
DWORD WINAPI FakeTicks() { return now; }

TEST(TimeDelayAction, ActsOnceMoreThanTheDelayHasPassed) {
    const ImportPatch patch("GetTickCount", FakeTicks);
    TimeDelayAction action;
    const auto actsAt = [&](DWORD tick, DWORD delay) { return now = tick, action.DoAction(delay); };
    EXPECT_FALSE(actsAt(1000, 1000));
    EXPECT_TRUE(actsAt(1001, 1000));
    EXPECT_TRUE(actsAt(0xffffff00, 0));
    EXPECT_FALSE(actsAt(0x100, 0x200));
    EXPECT_TRUE(actsAt(0x100, 0x1ff));
    EXPECT_EQ(3u, action.GetCount());
}

}  // namespace
