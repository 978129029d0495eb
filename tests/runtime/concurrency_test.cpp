// The library under eight threads at once.

#include <kitbag/kitbag.h>
#include <tests/support/import_patch.h>
#include <tests/support/own_process.h>
#include <tests/support/temporary_folder.h>

#include <latch>
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
            TWinString<char> own, shared;
            ASSERT_TRUE(KB_SetTStringA(text.c_str(), "Own", text));
            ASSERT_TRUE(KB_GetTStringA(text.c_str(), "Own", own));
            ASSERT_EQ(text, own);
            // Not readable where other threads lengthen it all the time.
            ASSERT_TRUE(KB_SetTStringA("Shared", "Text", text));
            if (!KB_GetTStringA("Shared", "Text", shared)) continue;
            ASSERT_EQ(std::string(shared.size(), shared[0]), shared);
        }
    });
}

/// Lets none of eight threads pass until all of them have come.
std::latch allAsk(8);
BOOL WINAPI TellAllTogether(OSVERSIONINFOA* version) {
    allAsk.arrive_and_wait();
    return ::GetVersionExA(version);
}

TEST(Concurrency, GivesEveryFirstCallTheSameAnswer) {
    if (RanInAProcessOfItsOwn()) return;
    const TemporaryFolder folder;
    const std::string data = (folder / "Data\\").string();
    KB_SetIntA("Screen", "User experience level", 1);
    KB_SetDataDirectoryA(data);
    const ImportPatch version("GetVersionExA", TellAllTogether);
    RunOnEightThreads([&](char) {
        EXPECT_TRUE(KB_IsNT());
        EXPECT_TRUE(KB_IsInteractiveSession());
        EXPECT_EQ(1, KB_GetUserInterfaceLevel());
        TWinString<char> found;
        EXPECT_TRUE(KB_GetDataDirectoryA(found));
        EXPECT_EQ(data, found);
    });
    EXPECT_TRUE(allAsk.try_wait()) << "they did not race";
}

}  // namespace
