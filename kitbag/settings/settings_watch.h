// SettingsWatch: tells a program that a section of the settings has changed.
//
//     kitbag::SettingsWatch watch("Audio", [=] { ::PostMessageA(window, kReadAudio, 0, 0); });
//
// It sleeps in the system until something happens. It is armed when its constructor returns, and
// armed again before each call: a program that reads after the one and in the other, or later,
// misses no change. Several changes in a row may make one call.
#pragma once

#include <kitbag/frame/owned.h>
#include <kitbag/runtime/threads.h>
#include <kitbag/settings/path_of_section.h>
#include <kitbag/settings/text.h>
#include <windows.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kitbag {

/// A key of the registry, there or not, whose next change sets an event. Each arming has keys and
/// events of its own: the system gives one notice for each, a key stays with the filter that it was
/// first armed with, and closing an armed key sets the event.
class ArmedKey {
 public:
    ArmedKey() = default;
    /// Arms the keys on the way, each before it looks for the next one, so that no creation and no
    /// deletion falls between two of them. These tell of their direct sub-keys only; the key itself
    /// tells of everything in it and below.
    explicit ArmedKey(const std::wstring& path) : changed_(NewEvent()), moved_(NewEvent()) {
        for (std::size_t end = path.find(L'\\'); end != path.npos; end = path.find(L'\\', end + 1))
            onTheWay_.push_back(
                Armed(path.substr(0, end), FALSE, REG_NOTIFY_CHANGE_NAME, moved_.Get()));
        key_ =
            Armed(path, TRUE, REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_LAST_SET, changed_.Get());
    }

    HANDLE Changed() const { return changed_.Get(); }
    /// Set when a key was created or deleted beside those on the way, too.
    HANDLE Moved() const { return moved_.Get(); }

    /// True when the key was changed, created or deleted before the next arming.
    bool HasChanged(const ArmedKey& next) const {
        if (::WaitForSingleObject(changed_.Get(), 0) == WAIT_OBJECT_0) return true;
        return key_ ? IsDeleted() : bool{next.key_};
    }

 private:
    static KernelHandle NewEvent() {
        return KernelHandle(::CreateEventA(nullptr, TRUE, FALSE, nullptr));
    }
    /// None where there is no such key.
    static RegistryKey Armed(const std::wstring& path, BOOL withSubKeys, DWORD filter,
                             HANDLE event) {
        HKEY opened = nullptr;
        if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_NOTIFY | KEY_QUERY_VALUE,
                            &opened))
            return {};
        ::RegNotifyChangeKeyValue(opened, withSubKeys, filter, event, TRUE);
        return RegistryKey(opened);
    }
    /// Not every system sets the event of a key that is deleted itself.
    bool IsDeleted() const {
        return ::RegQueryValueExW(key_.Get(), nullptr, nullptr, nullptr, nullptr, nullptr) ==
               ERROR_KEY_DELETED;
    }

    KernelHandle changed_;
    KernelHandle moved_;
    std::vector<RegistryKey> onTheWay_;
    RegistryKey key_;
};

/// Calls a function whenever something in the section, or in a section below it, was changed, until
/// the watch goes. The section need not exist, and may be deleted and created again.
///
/// The function is called on the watch's own thread, where values of other threads are out of
/// bounds: it posts a message or reads with kitbag::Get. It must not destroy the watch; an
/// exception that leaves it ends the program, as on every thread. The destructor waits for a call
/// that is under way, not for a change.
class SettingsWatch final : private EventThread {
 public:
    SettingsWatch(const std::wstring& section, std::function<void()> changed)
        : path_(PathOfSection(section)),
          changed_(std::move(changed)),
          ready_(::CreateEventA(nullptr, TRUE, FALSE, nullptr)),
          stop_(::CreateEventA(nullptr, TRUE, FALSE, nullptr)) {
        EventThread::Start(THREAD_PRIORITY_NORMAL, INFINITE);
        ::WaitForSingleObject(ready_.Get(), kPatience);
    }
    SettingsWatch(const std::string& section, std::function<void()> changed)
        : SettingsWatch(Widened(section), std::move(changed)) {}
    SettingsWatch(const SettingsWatch&) = delete;
    SettingsWatch& operator=(const SettingsWatch&) = delete;
    ~SettingsWatch() override {
        Stop();
        // Stop gives up after a while.
        WaitForFinish(INFINITE);
    }

 private:
    /// Reached only where the system cannot make a thread, which shows in nothing else.
    static constexpr DWORD kPatience = 10000;

    /// A notice ends with the thread that armed it: this one.
    void OnThreadStart() override {
        armed_ = ArmedKey(path_);
        ::SetEvent(ready_.Get());
    }
    /// Waits for the registry's events too, which the base class knows nothing of.
    bool DoWork() override {
        const HANDLE events[] = {stop_.Get(), armed_.Changed(), armed_.Moved()};
        const DWORD wait = ::WaitForMultipleObjects(3, events, FALSE, INFINITE);
        return (wait == WAIT_OBJECT_0 + 1 || wait == WAIT_OBJECT_0 + 2) && OnEvent();
    }
    bool OnEvent() noexcept override {
        // What happens from here on is noticed by the next arming.
        ArmedKey next(path_);
        const bool changed = armed_.HasChanged(next);
        armed_ = std::move(next);
        if (changed) changed_();
        return true;
    }
    bool OnTimeout() override { return true; }
    void Stop() override {
        ::SetEvent(stop_.Get());
        EventThread::Stop();
    }

    const std::wstring path_;
    const std::function<void()> changed_;
    const KernelHandle ready_;
    const KernelHandle stop_;
    ArmedKey armed_;
};

}  // namespace kitbag
