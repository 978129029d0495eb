#include <gmock/gmock.h>
#include <kitbag/runtime/threads.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>

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

HANDLE WINAPI RefuseEvent(SECURITY_ATTRIBUTES*, BOOL, BOOL, const char*) { return nullptr; }
HANDLE WINAPI RefuseThread(SECURITY_ATTRIBUTES*, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD,
                           DWORD*) {
    return nullptr;
}

TEST(Threads, EndAtOnceWhenStoppedAndStartAgainWithTheSameEvent) {
    const auto startAndStopTwice = [] {
        Recorder thread;
        for (const char* restarted : {"sx", "sex"}) {
            thread.Start(THREAD_PRIORITY_NORMAL, INFINITE);
            ::SetEvent(gate);
            thread.Stop();
            EXPECT_TRUE(thread.IsFinished());
            // The second thread may find the event set by the first Stop.
            EXPECT_THAT(TakeNotes(), testing::AnyOf("sx", restarted));
        }
    };
    kitbag::test::ExpectNoHandleLeak(startAndStopTwice);
    const ImportPatch patch("CreateEventA", RefuseEvent);
    startAndStopTwice();
}

TEST(Threads, RunBothHooksWhenStoppedBeforeTheyBegan) {
    const ImportPatch noThread("CreateThread", RefuseThread), noEvent("CreateEventA", RefuseEvent);
    Recorder thread;
    EXPECT_TRUE(thread.Start(THREAD_PRIORITY_NORMAL, 0));
    Recorder copy = thread;
    thread.Stop();
    EXPECT_FALSE(!copy.IsActive() || thread.IsActive() || thread.IsFinished());
    ::SetEvent(gate);
    SimpleThread::ThreadProc(&thread);
    EXPECT_EQ("sx", TakeNotes());
}

}  // namespace
