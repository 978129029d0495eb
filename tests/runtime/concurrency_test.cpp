// Eight threads at once: in the settings, in first calls, and with event threads of their own.

#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/temporary_folder.h>

#include <thread>

namespace {

using namespace kitbag::test;

template <class Work>
void RunOnEightThreads(Work work) {
    std::vector<std::jthread> threads;
    for (char thread = 'a'; thread < 'i'; ++thread) threads.emplace_back(work, thread);
}

TEST(Concurrency, KeepsTheSettingsOfEveryThread) {
    RunOnEightThreads([](char thread) {
        for (unsigned length = 1; length <= 50; ++length) {
            const TWinString<char> text(length, thread);
            TWinString<char> read;
            EXPECT_TRUE(KB_SetTStringA(text.c_str(), "Own", text));
            EXPECT_TRUE(KB_SetTStringA("Shared", "Text", text));
            // Not readable where another thread lengthens it meanwhile.
            EXPECT_TRUE(!KB_GetTStringA("Shared", "Text", read) ||
                        read == std::string(read.size(), read[0]));
            EXPECT_TRUE(KB_GetTStringA(text.c_str(), "Own", read) && read == text);
        }
    });
}

std::string folder;
DWORD WINAPI SlowFile(HMODULE module, char* path, DWORD size) {
    ::Sleep(30);
    return (folder + (module ? "\\lib\\Kitbag.dll" : "\\player.exe")).copy(path, size - 1);
}
BOOL WINAPI SlowVersion(OSVERSIONINFOA* version) { return ::Sleep(30), ::GetVersionExA(version); }

TEST(Concurrency, GivesEveryFirstCallTheSameAnswer) {
    const TemporaryFolder temporary;
    folder = temporary.Path().string();
    KB_SetIntA("Screen", "User experience level", 1);
    const ImportPatch file("GetModuleFileNameA", SlowFile), version("GetVersionExA", SlowVersion);
    RunOnEightThreads([](char) {
        EXPECT_TRUE(KB_IsNT() && KB_IsInteractiveSession());
        EXPECT_EQ(1, KB_GetUserInterfaceLevel());
        TWinString<char> data;
        EXPECT_TRUE(KB_GetDataDirectoryA(data) && data == folder + "\\lib\\Data\\");
    });
}

struct Answerer : EventThread {
    ~Answerer() override { ::CloseHandle(answered); }
    bool OnEvent() override { return ::SetEvent(answered); }
    bool OnTimeout() override { return false; }

    HANDLE answered = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
};

void StartAskAndStop(Answerer& thread) {
    thread.Start(THREAD_PRIORITY_NORMAL, INFINITE);
    thread.TriggerEvent();
    EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(thread.answered, 10000));
    thread.Stop();
    EXPECT_TRUE(thread.IsFinished());
}

TEST(Concurrency, StartsAndStopsEventThreadsThousandsOfTimes) {
    RunOnEightThreads([](char) {
        Answerer thread;
        for (int i = 0; i < 125; ++i) StartAskAndStop(thread);
    });
    Answerer thread;
    ExpectNoHandleLeak([&] { StartAskAndStop(thread); });
}

}  // namespace
