// Eight threads at once: in the settings, in first calls, and with event threads of their own.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/text_forms.h>

#include <atomic>
#include <barrier>
#include <thread>

namespace {

using namespace kitbag::test;

constexpr unsigned kThreads = 8;

/// Runs the work on eight threads, which begin it together, and waits for their end.
template <class Work>
void RunTogether(Work&& work) {
    std::barrier<> start(kThreads);
    std::vector<std::jthread> threads;
    for (unsigned thread = 0; thread < kThreads; ++thread)
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
    const auto textOf = [](unsigned i) { return std::to_string(i).append(i % 50, '.'); };
    RunTogether([&](unsigned thread) {
        for (unsigned i = thread; i < 400; i += kThreads) {
            const auto use = i / kThreads % 2 ? WriteAndRead<char> : WriteAndRead<wchar_t>;
            EXPECT_EQ(textOf(i), use("Own\\" + std::to_string(i), textOf(i)));
            // Not readable where another thread lengthens it meanwhile.
            const std::string shared = use("Shared", textOf(i));
            EXPECT_TRUE(shared.empty() || shared == textOf(std::stoul(shared))) << shared;
        }
    });
    for (unsigned i = 0; i < 400; ++i) {
        const std::wstring text = RawKey("Own\\" + std::to_string(i)).TextOf(L"Text");
        EXPECT_EQ(textOf(i), std::string(text.begin(), text.end()));
    }
}

/// What a function of the system is replaced by, one of each signature, so that all threads ask it
/// before the first one knows.
template <class Result, class... Arguments>
auto Slow(Result(WINAPI* function)(Arguments...)) {
    static Result(WINAPI * original)(Arguments...);
    original = function;
    struct Fake {
        static Result WINAPI Call(Arguments... arguments) {
            return ::Sleep(30), original(arguments...);
        }
    };
    return Fake::Call;
}

std::string folder;
DWORD WINAPI ModuleFile(HMODULE module, char* path, DWORD size) {
    return (folder + (module ? "\\lib\\Kitbag.dll" : "\\player.exe")).copy(path, size - 1);
}

TEST(Concurrency, GivesEveryFirstCallTheSameAnswer) {
    const TemporaryFolder temporary;
    folder = temporary.Path().string();
    RawKey("Screen").Set(L"User experience level", DWORD{1});
    const ImportPatch file("GetModuleFileNameA", ModuleFile),
        version("GetVersionExA", Slow(::GetVersionExA)),
        station("GetUserObjectInformationA", Slow(::GetUserObjectInformationA)),
        region("VirtualQuery", Slow(::VirtualQuery)),
        value("RegQueryValueExA", Slow(::RegQueryValueExA)),
        create("CreateDirectoryA", Slow(::CreateDirectoryA));
    RunTogether([](unsigned) {
        TWinString<char> data;
        EXPECT_TRUE(KB_GetDataDirectoryA(data));
        EXPECT_EQ(folder + "\\lib\\Data\\", data);
        EXPECT_EQ(1, KB_GetUserInterfaceLevel());
        EXPECT_TRUE(KB_IsNT() && KB_IsInteractiveSession());
    });
    EXPECT_TRUE(RawKey("Directories").Has(L"Data Directory"));
}

/// Answers the latest request.
struct Answerer : EventThread {
    ~Answerer() override { ::CloseHandle(answer); }
    /// False where ten seconds have passed without any answer.
    bool Ask() {
        ++asked;
        for (TriggerEvent(); answered != asked;)
            if (::WaitForSingleObject(answer, 10000) != WAIT_OBJECT_0) return false;
        return true;
    }
    void OnThreadStart() override { ++starts; }
    void OnThreadExit() override { ++exits; }
    bool OnEvent() override { return answered = asked.load(), ::SetEvent(answer); }
    bool OnTimeout() override { return false; }

    int starts = 0, exits = 0;
    std::atomic<int> asked = 0, answered = 0;
    HANDLE answer = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
};

void StartAskAndStop(Answerer& thread) {
    if (testing::Test::HasFailure()) return;
    const int runs = thread.starts + 1;
    thread.Start(THREAD_PRIORITY_NORMAL, INFINITE);
    EXPECT_TRUE(thread.Ask() && thread.Ask() && thread.Ask());
    thread.Stop();
    EXPECT_TRUE(thread.IsFinished() && thread.starts == runs && thread.exits == runs);
}

TEST(Concurrency, StartsAndStopsEventThreadsThousandsOfTimes) {
    RunTogether([](unsigned) {
        Answerer thread;
        for (int i = 0; i < 125; ++i) StartAskAndStop(thread);
    });
    Answerer thread;
    ExpectNoHandleLeak([&] { StartAskAndStop(thread); });
}

}  // namespace
