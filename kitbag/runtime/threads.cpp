#include <kitbag/frame/owned.h>
#include <kitbag/runtime/threads.h>

namespace {

constexpr DWORD kStopTimeout = 30000;

}  // namespace

// Programs derive from these classes: their layout is part of the interface.
static_assert(sizeof(SimpleThread) == sizeof(void*) + 3 * sizeof(DWORD));
static_assert(sizeof(WorkerThread) == sizeof(SimpleThread) + sizeof(DWORD));
static_assert(sizeof(EventThread) == sizeof(WorkerThread) + 2 * sizeof(DWORD));

SimpleThread::~SimpleThread() {
    if (thread_) ::CloseHandle(thread_);
}

bool SimpleThread::Start(int priority) {
    DWORD id = threadId_;
    // Closed last, for other threads may be asking whether this one is finished.
    const kitbag::KernelHandle former(thread_);
    thread_ = ::CreateThread(nullptr, 0, ThreadProc, this, 0, &id);
    threadId_ = id;
    if (thread_) ::SetThreadPriority(thread_, priority);
    return true;
}

bool SimpleThread::IsFinished() const { return ::WaitForSingleObject(thread_, 0) == WAIT_OBJECT_0; }

bool SimpleThread::WaitForFinish(unsigned long timeout) const {
    if (::GetCurrentThreadId() == threadId_) return true;
    return ::WaitForSingleObject(thread_, timeout) == WAIT_OBJECT_0;
}

DWORD SimpleThread::ThreadProc(void* object) {
    auto& self = *static_cast<SimpleThread*>(object);
    self.threadId_ = ::GetCurrentThreadId();
    self.running_ = true;
    self.ThreadEntryPoint();
    self.running_ = false;
    return 0;
}

bool WorkerThread::Start(int priority) {
    active_ = true;
    return SimpleThread::Start(priority);
}

void WorkerThread::Stop() {
    active_ = false;
    WaitForFinish(kStopTimeout);
}

bool WorkerThread::IsActive() { return active_; }

void WorkerThread::OnThreadStart() {}

void WorkerThread::OnThreadExit() {}

void WorkerThread::ThreadEntryPoint() {
    OnThreadStart();
    while (active_)
        if (!DoWork()) active_ = false;
    OnThreadExit();
}

EventThread::~EventThread() {
    if (event_ == INVALID_HANDLE_VALUE) return;
    ::CloseHandle(event_);
    event_ = INVALID_HANDLE_VALUE;
}

void EventThread::Stop() {
    active_ = false;
    ::SetEvent(event_);
    WaitForFinish(kStopTimeout);
}

bool EventThread::Start(int priority, unsigned long timeout) {
    timeout_ = timeout;
    if (event_ == INVALID_HANDLE_VALUE) event_ = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
    return WorkerThread::Start(priority);
}

void EventThread::TriggerEvent() { ::SetEvent(event_); }

bool EventThread::DoWork() {
    const DWORD wait = ::WaitForSingleObject(event_, timeout_);
    if (!active_) return false;
    if (wait == WAIT_OBJECT_0) return OnEvent();
    if (wait == WAIT_TIMEOUT) return OnTimeout();
    return true;
}
