// Threads with a fixed life, to derive from.
//
//     class Indexer : public EventThread {
//      public:
//         bool OnEvent() override { return IndexNewRecordings(); }  // false ends the thread
//         bool OnTimeout() override { return true; }
//     };
//
//     Indexer indexer;
//     indexer.Start(THREAD_PRIORITY_BELOW_NORMAL, 60000);
//     indexer.TriggerEvent();  // one pass of OnEvent, on the indexer's thread
//     indexer.Stop();          // before the object goes: it must outlive its thread
//
// One thread starts, stops and destroys the object. The started thread itself may call Stop,
// WaitForFinish, IsActive and TriggerEvent as well. Nothing is locked, and no operation reports a
// failure: a thread that could not be created looks like one that never finishes.
//
// An exception that leaves the thread's work ends the process.
//
// Copies hold the same handles, none is duplicated, and every object closes what it holds. The
// handles are therefore plain fields and have no owner object each. Never start a copy again, or an
// original that has copies: that closes the handle under the others.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/runtime/cross_thread.h>
#include <windows.h>

/// Runs one function on a thread of its own.
class KITBAG_API SimpleThread {
 public:
    SimpleThread() = default;
    SimpleThread(const SimpleThread&) = default;
    SimpleThread& operator=(const SimpleThread&) = default;
    /// Closes the handle; neither stops nor waits for the thread.
    virtual ~SimpleThread();

    /// Creates the thread, which runs at once with a priority of SetThreadPriority's. Answers true
    /// whether or not that worked; callers do not rely on it. The handle of a thread that was
    /// started before is closed.
    virtual bool Start(int priority);
    /// True once the thread has run to its end; false before Start.
    virtual bool IsFinished() const;
    /// Waits so many milliseconds, or INFINITE, for the thread to end; true when it has. The thread
    /// itself does not wait: it is told true at once.
    virtual bool WaitForFinish(unsigned long timeout) const;

    /// What the system runs on the new thread.
    static DWORD __stdcall ThreadProc(void* object);

 protected:
    /// The thread's work; the thread ends when it returns.
    virtual void ThreadEntryPoint() = 0;

    /// True while the thread is inside ThreadEntryPoint.
    kitbag::CrossThread<bool> running_;

 private:
    kitbag::CrossThread<HANDLE> thread_;
    // Set by both sides: the new thread may ask before CreateThread has returned.
    kitbag::CrossThread<DWORD> threadId_;
};

/// Calls DoWork again and again until it is stopped.
class KITBAG_API WorkerThread : public SimpleThread {
 public:
    bool Start(int priority) override;
    /// Has the thread end after its present pass and waits for it, 30 seconds at most. A Stop that
    /// comes before the thread begins leaves OnThreadStart and OnThreadExit to run, but no DoWork.
    virtual void Stop();
    /// False once the thread was stopped or a DoWork answered false.
    virtual bool IsActive();
    /// Called on the thread before the first and after the last DoWork.
    virtual void OnThreadStart();
    virtual void OnThreadExit();

 protected:
    void ThreadEntryPoint() override;
    /// One pass; false ends the thread.
    virtual bool DoWork() = 0;

    /// The loop goes on while this is set.
    kitbag::CrossThread<bool> active_;
};

/// Waits for an event and answers it, again and again until it is stopped.
class KITBAG_API EventThread : public WorkerThread {
 public:
    EventThread() = default;
    EventThread(const EventThread&) = default;
    EventThread& operator=(const EventThread&) = default;
    ~EventThread() override;

    /// The inherited Start creates no event: it starts a thread again, with its former time-out.
    using WorkerThread::Start;
    /// Ends the wait of a waiting thread at once.
    void Stop() override;
    /// Starts the thread, which waits so many milliseconds in each pass: INFINITE for a thread that
    /// only answers events, 0 for one that polls. The event is created on the first Start and kept
    /// for later ones; a Stop or TriggerEvent that the thread did not see any more shows as one
    /// OnEvent after the next Start. Where the event could not be created every wait fails at once
    /// and the thread spins, without a call of OnEvent or OnTimeout, until it is stopped.
    virtual bool Start(int priority, unsigned long timeout);
    /// Wakes the thread for one OnEvent. Further calls before it wakes add none.
    virtual void TriggerEvent();
    /// What the thread does when it was woken, and when the time-out has passed; false ends it.
    virtual bool OnEvent() = 0;
    virtual bool OnTimeout() = 0;

 protected:
    bool DoWork() override;

 private:
    HANDLE event_ = INVALID_HANDLE_VALUE;
    DWORD timeout_ = 0;
};
