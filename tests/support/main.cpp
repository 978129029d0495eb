#include <gmock/gmock.h>
#include <tests/support/own_process.h>
#include <tests/support/private_registry.h>

#include <iostream>
#include <optional>

namespace {

int testsStarted = 0;

/// No test can forget to keep away from the real settings, or meets those of the one before it.
class EachTestsRegistry : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        ++testsStarted;
        registry_.emplace();
    }
    void OnTestEnd(const testing::TestInfo&) override { registry_.reset(); }

    std::optional<kitbag::test::PrivateRegistry> registry_;
};

/// The names alone: CTest would make the types behind "# TypeParam =" a part of them.
void ListTests() {
    const auto& all = *testing::UnitTest::GetInstance();
    for (int i = 0; i < all.total_test_suite_count(); ++i) {
        const auto& suite = *all.GetTestSuite(i);
        std::cout << suite.name() << ".\n";
        for (int j = 0; j < suite.total_test_count(); ++j)
            std::cout << "  " << suite.GetTestInfo(j)->name() << '\n';
    }
}

}  // namespace

bool kitbag::test::RanInAProcessOfItsOwn() {
    if (testsStarted == 1) return false;
    const auto& test = *testing::UnitTest::GetInstance()->current_test_info();
    std::string command = std::string(1, '"') + _pgmptr +
                          "\" --gtest_filter=" + test.test_suite_name() + '.' + test.name();
    STARTUPINFOA start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    const BOOL isStarted = ::CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0,
                                            nullptr, nullptr, &start, &process);
    EXPECT_TRUE(isStarted) << command;
    if (!isStarted) return true;
    DWORD failed = 1;
    ::WaitForSingleObject(process.hProcess, INFINITE);
    ::GetExitCodeProcess(process.hProcess, &failed);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    EXPECT_EQ(0u, failed) << command;
    return true;
}

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) {
        ListTests();
        return 0;
    }
    // For the child process of a death test, which hears no listener.
    const kitbag::test::PrivateRegistry registry;
    testing::UnitTest::GetInstance()->listeners().Append(new EachTestsRegistry);
    return RUN_ALL_TESTS();
}
