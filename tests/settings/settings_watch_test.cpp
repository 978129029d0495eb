// The notice that a section has changed.

#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <kitbag/settings.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>

#include <atomic>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace kitbag::test;

constexpr DWORD kOnlyAHangIsLonger = 30000;

struct SettingsWatch : testing::Test {
    /// The key that every system has.
    SettingsWatch() { ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, "Software", "", REG_SZ, "", 1); }
};

/// Watches "Audio\\Deep" and keeps what its value "n" was at the last notice; 0 where there is
/// none.
class Watched {
 public:
    ~Watched() { ::CloseHandle(noticed_); }

    /// Waits for a notice that finds this number.
    bool Sees(DWORD number) {
        while (seen_ != number)
            if (::WaitForSingleObject(noticed_, kOnlyAHangIsLonger) != WAIT_OBJECT_0) return false;
        return true;
    }
    int Calls() const { return calls_; }
    /// What the system has spent on the watch's thread, in its units.
    ULONGLONG ProcessorTime() const {
        FILETIME created, exited, kernel, user;
        const HANDLE thread = ::OpenThread(THREAD_QUERY_INFORMATION, FALSE, thread_);
        EXPECT_TRUE(::GetThreadTimes(thread, &created, &exited, &kernel, &user));
        ::CloseHandle(thread);
        return ULONGLONG{kernel.dwLowDateTime} + user.dwLowDateTime;
    }

 private:
    void Notice() {
        thread_ = ::GetCurrentThreadId();
        ++calls_;
        seen_ = kitbag::Get("Audio\\Deep", "n", DWORD{});
        ::SetEvent(noticed_);
    }

    const HANDLE noticed_ = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
    std::atomic<DWORD> seen_ = 0;
    std::atomic<DWORD> thread_ = 0;
    std::atomic<int> calls_ = 0;
    // Last, so that it goes first.
    const kitbag::SettingsWatch watch_{"Audio\\Deep", [this] { Notice(); }};
};

void StoreNumber(DWORD number) { KB_SetDWORDA("Audio\\Deep", "n", number); }

TEST_F(SettingsWatch, MissesNoChange) {
    std::optional<Watched> watched;
    // A notice ends with the thread that armed it, which is not the one that made the watch.
    std::thread([&] { watched.emplace(); }).join();
    for (DWORD number = 1; number <= 300; ++number) {
        StoreNumber(number);
        ASSERT_TRUE(watched->Sees(number)) << number;
    }
    for (DWORD number = 1; number <= 300; ++number) StoreNumber(number);
    EXPECT_TRUE(watched->Sees(300)) << "changes in a row";
}

TEST_F(SettingsWatch, SurvivesTheDeletionAndCreationOfItsSection) {
    Watched watched;
    for (const char* deleted : {"Audio", "Audio\\Deep"})
        for (DWORD number = 1; number <= 50; ++number) {
            SCOPED_TRACE(testing::Message() << deleted << ' ' << number);
            StoreNumber(number);
            ASSERT_TRUE(watched.Sees(number));
            KB_DeleteSectionA(deleted);
            ASSERT_TRUE(watched.Sees(0));
        }
}

TEST_F(SettingsWatch, TellsOfTheSectionsBelowAndNotOfThoseBeside) {
    Watched watched;
    StoreNumber(1);
    ASSERT_TRUE(watched.Sees(1));
    const int before = watched.Calls();
    for (int i = 0; i < 100; ++i)
        KB_SetDWORDA(("Audio\\Beside " + std::to_string(i)).c_str(), "n", 7);
    KB_SetDWORDA("Audio", "n", 7);
    StoreNumber(2);
    ASSERT_TRUE(watched.Sees(2));
    // One that came while the watch was being armed again may be told of twice.
    EXPECT_GE(before + 2, watched.Calls());
    KB_SetDWORDA("Audio\\Deep\\Below", "m", 1);
    const int calls = watched.Calls();
    for (int wait = 0; wait < 3000 && watched.Calls() == calls; ++wait) ::Sleep(10);
    EXPECT_LT(calls, watched.Calls());
}

TEST_F(SettingsWatch, EndsWithoutAChangeAndLeavesNothingOpen) {
    ExpectNoHandleLeak([] { const kitbag::SettingsWatch watch(L"Audio", [] {}); });
}

TEST_F(SettingsWatch, TakesNoProcessorTimeWhileItWaits) {
    Watched watched;
    StoreNumber(1);
    ASSERT_TRUE(watched.Sees(1));
    const ULONGLONG before = watched.ProcessorTime();
    // Not waited for: what is measured.
    ::Sleep(500);
    constexpr ULONGLONG kOneTick = 160000;
    EXPECT_GE(before + kOneTick, watched.ProcessorTime());
}

const HANDLE terminated = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);

TEST_F(SettingsWatch, EndsTheProgramWhereAnExceptionLeavesItsFunction) {
    // Ends the watch's thread in place of the program.
    const auto before = std::set_terminate([] {
        ::SetEvent(terminated);
        ::ExitThread(0);
    });
    const kitbag::SettingsWatch watch("Audio", [] { throw std::runtime_error("not caught"); });
    KB_SetDWORDA("Audio", "n", 1);
    EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(terminated, kOnlyAHangIsLonger));
    std::set_terminate(before);
}

}  // namespace
