// Eight threads at once: in the settings, in first calls, and with event threads of their own.

#include <gtest/gtest.h>
#include <kitbag/registry/directories.h>
#include <kitbag/registry/values.h>
#include <kitbag/runtime/threads.h>
#include <kitbag/system/system_information.h>
#include <kitbag/values/user_interface_level.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/text_forms.h>

#include <atomic>
#include <barrier>
#include <set>
#include <thread>

namespace {

using namespace kitbag::test;

constexpr int kThreads = 8;

/// Runs the work on eight threads, which begin it together, and waits for their end.
template <class Work>
void RunTogether(Work&& work) {
    std::barrier<> start(kThreads);
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([&, thread] {
            start.arrive_and_wait();
            work(thread);
        });
}

/// The text of a section after one was written there; empty where it cannot be read.
template <class Ch>
std::string WriteAndRead(const std::string& name, const std::string& text) {
    const Text<Ch> section(name.begin(), name.end());
    Text<Ch> read;
    EXPECT_TRUE(KB(SetTString)(section.c_str(), T("Text"), {text.begin(), text.end()}));
    KB(GetTString)(section.c_str(), T("Text"), read);
    return {read.begin(), read.end()};
}

TEST(Concurrency, KeepsTheSettingsOfEveryThread) {
    std::vector<std::string> texts;
    for (unsigned i = 0; i < 400; ++i) texts.push_back(std::to_string(i).append(i % 50, '.'));
    // The shared text cannot be read when another thread lengthens it meanwhile.
    std::set<std::string> readable(texts.begin(), texts.end());
    readable.insert("");
    RunTogether([&](int thread) {
        for (unsigned i = static_cast<unsigned>(thread); i < texts.size(); i += kThreads) {
            const auto use = i / kThreads % 2 ? WriteAndRead<char> : WriteAndRead<wchar_t>;
            EXPECT_EQ(texts[i], use("Own\\" + std::to_string(i), texts[i]));
            EXPECT_TRUE(readable.contains(use("Shared", texts[i])));
        }
    });
    for (unsigned i = 0; i < texts.size(); ++i)
        EXPECT_EQ(std::wstring(texts[i].begin(), texts[i].end()),
                  RawKey("Own\\" + std::to_string(i)).TextOf(L"Text"));
}

/// Has a function of the system take so long that all threads ask it before the first one knows.
/// One function of each signature.
template <class Result, class... Arguments>
class Slow : ImportPatch {
 public:
    Slow(const char* name, Result(WINAPI* function)(Arguments...)) : ImportPatch(name, Call) {
        original_ = function;
    }

 private:
    static Result WINAPI Call(Arguments... arguments) {
        ::Sleep(30);
        return original_(arguments...);
    }
    static inline Result(WINAPI* original_)(Arguments...);
};

std::string folder;
DWORD WINAPI ModuleFile(HMODULE module, char* path, DWORD size) {
    const std::string file = folder + (module ? "\\lib\\Kitbag.dll" : "\\player.exe");
    return file.copy(path, size - 1);
}

TEST(Concurrency, GivesEveryFirstCallTheSameAnswer) {
    const TemporaryFolder temporary;
    folder = temporary.Path().string();
    RawKey("Screen").Set(L"User experience level", DWORD{1});
    const ImportPatch file("GetModuleFileNameA", ModuleFile);
    const Slow version("GetVersionExA", ::GetVersionExA);
    const Slow station("GetUserObjectInformationA", ::GetUserObjectInformationA);
    const Slow region("VirtualQuery", ::VirtualQuery);
    const Slow value("RegQueryValueExA", ::RegQueryValueExA);
    const Slow create("CreateDirectoryA", ::CreateDirectoryA);
    RunTogether([](int) {
        TWinString<char> data;
        EXPECT_TRUE(KB_GetDataDirectoryA(data));
        EXPECT_EQ(folder + "\\lib\\Data\\", data);
        EXPECT_EQ(1, KB_GetUserInterfaceLevel());
        EXPECT_TRUE(KB_IsNT() && KB_IsInteractiveSession());
    });
    EXPECT_TRUE(RawKey("Directories").Has(L"Data Directory"));
}

/// Answers the latest request.
class Answerer : public EventThread {
 public:
    /// False where no OnEvent has seen the request after ten seconds.
    bool Ask() {
        ++asked_;
        TriggerEvent();
        for (int wait = 0; answered_ != asked_ && wait < 10000; ++wait) ::Sleep(1);
        return answered_ == asked_;
    }
    void OnThreadStart() override { ++starts; }
    void OnThreadExit() override { ++exits; }
    bool OnEvent() override { return answered_ = asked_.load(); }
    bool OnTimeout() override { return false; }

    int starts = 0, exits = 0;

 private:
    std::atomic<int> asked_ = 0, answered_ = 0;
};

void StartAskAndStop(int times) {
    Answerer thread;
    for (int i = 1; i <= times; ++i) {
        thread.Start(THREAD_PRIORITY_NORMAL, INFINITE);
        ASSERT_TRUE(thread.Ask() && thread.Ask() && thread.Ask());
        thread.Stop();
        ASSERT_TRUE(thread.IsFinished() && thread.starts == i && thread.exits == i);
    }
}

/// The hundredth value from here on that no open handle has: it rises with those left open.
HANDLE FreeHandle() {
    HANDLE probes[100];
    for (HANDLE& probe : probes) probe = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    for (HANDLE probe : probes) ::CloseHandle(probe);
    return probes[99];
}

TEST(Concurrency, StartsAndStopsAThousandEventThreads) {
    // What the system opens once is open before the count.
    RunTogether([](int) { StartAskAndStop(1); });
    HANDLE before = FreeHandle();
    RunTogether([](int) { StartAskAndStop(1000 / kThreads); });
    EXPECT_EQ(before, FreeHandle());
}

}  // namespace
