#include <gmock/gmock.h>
#include <kitbag/runtime/threads.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>

#include <string>
#include <utility>

namespace {

using kitbag::test::ImportPatch;
using testing::AnyOf;

/// Holds a started thread until the test lets it begin.
HANDLE gate = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
/// What happened on the thread: s(tart), e(vent), t(ime-out), x (exit).
std::string happened;

bool Note(char what) {
    happened += what;
    return true;
}
std::string TakeNotes() { return std::exchange(happened, {}); }

class Recorder : public EventThread {
 public:
    void OnThreadStart() override {
        ::WaitForSingleObject(gate, INFINITE);
        Note('s');
    }
    void OnThreadExit() override { Note('x'); }
    bool OnEvent() override { return Note('e'); }
    bool OnTimeout() override {
        EXPECT_EQ(THREAD_PRIORITY_LOWEST, ::GetThreadPriority(::GetCurrentThread()));
        // Neither waits for the very thread that asks.
        EXPECT_TRUE(running_ && WaitForFinish(INFINITE));
        Stop();
        return Note('t');
    }
};

HANDLE WINAPI RefuseThread(SECURITY_ATTRIBUTES*, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD,
                           DWORD*) {
    return nullptr;
}

int eventsCreated;
HANDLE WINAPI CountEvent(SECURITY_ATTRIBUTES*, BOOL manual, BOOL set, const char*) {
    ++eventsCreated;
    return ::CreateEventW(nullptr, manual, set, nullptr);
}
HANDLE WINAPI RefuseEvent(SECURITY_ATTRIBUTES*, BOOL, BOOL, const char*) { return nullptr; }

TEST(Threads, AnswerEventsThenTimeOutsAndStartAgainWithTheSameEvent) {
    const ImportPatch patch("CreateEventA", CountEvent);
    eventsCreated = 0;
    Recorder thread;
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(thread.Start(THREAD_PRIORITY_LOWEST, 0));
        EXPECT_FALSE(thread.IsFinished() || thread.WaitForFinish(0));
        thread.TriggerEvent();
        thread.TriggerEvent();
        ::SetEvent(gate);
        EXPECT_TRUE(thread.WaitForFinish(INFINITE) && thread.IsFinished());
        EXPECT_EQ("setx", TakeNotes());
    }
    EXPECT_EQ(1, eventsCreated);
}

TEST(Threads, EndAtOnceWhenStoppedEvenWithoutAnEvent) {
    const auto startAndStop = [] {
        Recorder thread;
        for (int round = 0; round < 2; ++round) {
            thread.Start(THREAD_PRIORITY_NORMAL, INFINITE);
            ::SetEvent(gate);
            thread.Stop();
            EXPECT_TRUE(thread.IsFinished());
            // The second thread may find the event set by the first Stop.
            EXPECT_THAT(TakeNotes(), AnyOf("sx", round ? "sex" : "sx"));
        }
    };
    kitbag::test::ExpectNoHandleLeak(startAndStop);
    const ImportPatch patch("CreateEventA", RefuseEvent);
    startAndStop();
}

TEST(Threads, RunBothHooksWhenStoppedBeforeTheyBegan) {
    const ImportPatch noThread("CreateThread", RefuseThread);
    const ImportPatch noEvent("CreateEventA", RefuseEvent);
    Recorder thread;
    EXPECT_TRUE(thread.Start(THREAD_PRIORITY_NORMAL, 0));
    Recorder copy = thread;
    thread.Stop();
    EXPECT_TRUE(copy.IsActive());
    EXPECT_FALSE(thread.IsActive() || thread.IsFinished());
    ::SetEvent(gate);
    EXPECT_EQ(0u, SimpleThread::ThreadProc(&thread));
    EXPECT_EQ("sx", TakeNotes());
}

}  // namespace
