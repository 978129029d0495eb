#include <gmock/gmock.h>
#include <kitbag/runtime/threads.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>

#include <atomic>
#include <climits>
#include <thread>

namespace {

using namespace kitbag::test;
using testing::ElementsAre;
using testing::IsEmpty;

/// Waits for what another thread is about to do; only a hang reaches the test's time limit.
void WaitUntil(auto condition) {
    while (!condition()) ::Sleep(1);
}

/// How CreateThread works, and what it created last.
struct {
    DWORD flags;
    bool fails, waitsForItsEnd;
} creation;
HANDLE created;
HANDLE WINAPI Create(SECURITY_ATTRIBUTES* rights, SIZE_T stack, LPTHREAD_START_ROUTINE procedure,
                     void* object, DWORD flags, DWORD* id) {
    if (creation.fails) return nullptr;
    created = ::CreateThread(rights, stack, procedure, object, flags | creation.flags, id);
    if (creation.waitsForItsEnd) ::WaitForSingleObject(created, INFINITE);
    return created;
}

std::vector<HANDLE> closed;
BOOL WINAPI NoteClosed(HANDLE handle) {
    closed.push_back(handle);
    return TRUE;
}
std::vector<int> priorities;
BOOL WINAPI NotePriority(HANDLE thread, int priority) {
    EXPECT_EQ(created, thread);
    priorities.push_back(priority);
    return TRUE;
}

struct Threads : testing::Test {
    Threads() {
        creation = {};
        closed.clear();
        priorities.clear();
    }
    const ImportPatch create{"CreateThread", Create};
};

/// Asks on its own thread what must not wait for that thread.
struct Asker : SimpleThread {
    void ThreadEntryPoint() override {
        isInside = running_;
        isTold = WaitForFinish(INFINITE);
    }
    bool IsInside() const { return running_; }

    bool isInside = false, isTold = false;
};

TEST_F(Threads, RunOnceAndCanBeStartedAgain) {
    Asker thread;
    EXPECT_FALSE(thread.IsFinished()) << "not started";
    EXPECT_FALSE(thread.WaitForFinish(0)) << "not started";
    ExpectNoHandleLeak([&] {
        if (HasFailure()) return;
        thread.isInside = false;
        ASSERT_TRUE(thread.Start(THREAD_PRIORITY_NORMAL));
        ASSERT_TRUE(thread.WaitForFinish(INFINITE));
        ASSERT_TRUE(thread.IsFinished());
        ASSERT_TRUE(thread.isInside);
        ASSERT_FALSE(thread.IsInside());
    });
}

TEST_F(Threads, KnowThemselvesBeforeStartDoes) {
    creation.waitsForItsEnd = true;
    Asker thread;
    thread.Start(THREAD_PRIORITY_NORMAL);
    EXPECT_TRUE(thread.isTold);
}

TEST_F(Threads, NeverFinishWhereTheyCouldNotBeCreated) {
    creation.fails = true;
    const ImportPatch priority("SetThreadPriority", NotePriority);
    Asker thread;
    EXPECT_TRUE(thread.Start(THREAD_PRIORITY_NORMAL));
    EXPECT_FALSE(thread.IsFinished());
    EXPECT_FALSE(thread.WaitForFinish(INFINITE));
    EXPECT_THAT(priorities, IsEmpty());
}

TEST_F(Threads, HaveAPriorityAndShareTheirHandleWithCopies) {
    const ImportPatch priority("SetThreadPriority", NotePriority), close("CloseHandle", NoteClosed);
    {
        Asker thread;
        thread.Start(THREAD_PRIORITY_LOWEST);
        thread.WaitForFinish(INFINITE);
        const Asker copy = thread;
        EXPECT_TRUE(copy.IsFinished());
    }
    EXPECT_THAT(priorities, ElementsAre(THREAD_PRIORITY_LOWEST));
    EXPECT_THAT(closed, ElementsAre(created, created));
    ::CloseHandle(created);
}

/// Passes until it is stopped, or has made so many.
struct Counter : WorkerThread {
    explicit Counter(int passes) : passesLeft(passes) {}
    bool DoWork() override {
        ::SwitchToThread();
        return --passesLeft > 0;
    }
    void OnThreadExit() override { Stop(); }  // does not wait for its own thread

    std::atomic<int> passesLeft;
};

TEST_F(Threads, PassUntilAPassAnswersFalseOrTheyAreStopped) {
    Counter three(3);
    EXPECT_FALSE(three.IsActive());
    three.Start(THREAD_PRIORITY_NORMAL);
    EXPECT_TRUE(three.WaitForFinish(INFINITE));
    EXPECT_EQ(0, three.passesLeft);
    EXPECT_FALSE(three.IsActive());

    Counter many(INT_MAX);
    many.Start(THREAD_PRIORITY_NORMAL);
    WaitUntil([&] { return many.passesLeft < INT_MAX - 2; });
    EXPECT_TRUE(many.IsActive());
    EXPECT_FALSE(many.WaitForFinish(0));
    many.Stop();
    EXPECT_FALSE(many.IsActive());
    EXPECT_TRUE(many.IsFinished());
}

/// Notes its life: start '<', event 'e', time-out 't', exit '>'.
struct Recorder : EventThread {
    void OnThreadStart() override {
        for (; triggers > 0; --triggers) TriggerEvent();
        happened += '<';
    }
    void OnThreadExit() override { happened += '>'; }
    bool OnEvent() override {
        happened += 'e';
        ++events;
        return happened.size() < 10;  // else something repeats what should happen once
    }
    bool OnTimeout() override {
        happened += 't';
        return false;
    }

    int triggers = 0;
    std::string happened;
    std::atomic<int> events = 0;
};

TEST_F(Threads, CloseNothingThatTheyNeverHad) {
    const ImportPatch close("CloseHandle", NoteClosed);
    { const Recorder neverStarted; }
    EXPECT_THAT(closed, IsEmpty());
}

TEST_F(Threads, AnswerTwoTriggersOnceAndThenTimeOut) {
    Recorder thread;
    for (const char* start : {"first", "second"}) {
        thread.triggers = 2;
        thread.happened.clear();
        ASSERT_TRUE(thread.Start(THREAD_PRIORITY_NORMAL, 0));
        ASSERT_TRUE(thread.WaitForFinish(INFINITE));
        ASSERT_EQ("<et>", thread.happened) << start;
        ASSERT_FALSE(thread.IsActive()) << start;
    }
    thread.happened.clear();
    thread.Start(THREAD_PRIORITY_NORMAL);
    thread.WaitForFinish(INFINITE);
    EXPECT_EQ("<t>", thread.happened) << "with the former time-out";
}

TEST_F(Threads, EndTheirWaitAtOnceWhenTheyAreStopped) {
    Recorder thread;
    thread.Start(THREAD_PRIORITY_NORMAL, INFINITE);
    for (const int events : {1, 2}) {
        thread.TriggerEvent();
        WaitUntil([&] { return thread.events == events; });
    }
    EXPECT_TRUE(thread.IsActive());
    EXPECT_FALSE(thread.IsFinished());
    thread.Stop();
    EXPECT_TRUE(thread.IsFinished());
    EXPECT_FALSE(thread.IsActive());
    EXPECT_EQ("<ee>", thread.happened);
}

std::atomic<int> failedWaits;
DWORD WINAPI CountFailed(HANDLE object, DWORD timeout) {
    if (!object) ++failedWaits;
    return ::WaitForSingleObject(object, timeout);
}
HANDLE WINAPI NoEvent(SECURITY_ATTRIBUTES*, BOOL, BOOL, LPCSTR) { return nullptr; }

TEST_F(Threads, SpinWithoutAnEventUntilTheyAreStopped) {
    const ImportPatch event("CreateEventA", NoEvent), wait("WaitForSingleObject", CountFailed);
    Recorder thread;
    thread.Start(THREAD_PRIORITY_NORMAL, INFINITE);
    WaitUntil([] { return failedWaits > 2; });
    thread.Stop();
    EXPECT_EQ("<>", thread.happened);
}

std::vector<DWORD> timeouts;
DWORD WINAPI WaitNotAtAll(HANDLE object, DWORD timeout) {
    timeouts.push_back(timeout);
    return ::WaitForSingleObject(object, 0);
}

/// A Stop that gives up at once, on a thread that begins only then.
void StopBeforeItBegins(auto& thread, auto... timeout) {
    creation.flags = CREATE_SUSPENDED;
    thread.Start(THREAD_PRIORITY_NORMAL, timeout...);
    {
        const ImportPatch wait("WaitForSingleObject", WaitNotAtAll);
        thread.Stop();
    }
    EXPECT_FALSE(thread.IsFinished());
    ::ResumeThread(created);
    EXPECT_TRUE(thread.WaitForFinish(INFINITE));
}

TEST_F(Threads, RunTheirHooksAloneWhenTheyAreStoppedBeforeTheyBegin) {
    Counter worker(5);
    Recorder waiter;
    StopBeforeItBegins(worker);
    StopBeforeItBegins(waiter, INFINITE);
    EXPECT_EQ(5, worker.passesLeft);
    EXPECT_EQ("<>", waiter.happened);
    EXPECT_THAT(timeouts, ElementsAre(30000, 30000)) << "the limits of Stop";
}

TEST_F(Threads, AreStartedAndStoppedByEightThreadsAtOnce) {
    std::vector<std::jthread> controllers;
    for (int i = 0; i < 8; ++i)
        controllers.emplace_back([] {
            Recorder thread;
            for (int life = 0; life < 100; ++life) {
                thread.happened.clear();
                thread.Start(THREAD_PRIORITY_NORMAL, INFINITE);
                thread.Stop();
                ASSERT_TRUE(thread.IsFinished());
                ASSERT_TRUE(thread.happened.ends_with('>')) << thread.happened;
            }
        });
}

}  // namespace
