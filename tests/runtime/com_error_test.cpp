#include <comutil.h>
#include <gtest/gtest.h>
#include <kitbag/runtime/com_error.h>

#include <thread>

namespace {

void SetOnThread(bool isInitialised, const char* text, const wchar_t* expected) {
    if (isInitialised) ::CoInitialize(nullptr);
    EXPECT_TRUE(KB_SetIErrorInfoA(text));
    IErrorInfo* error = nullptr;
    _bstr_t description;
    ASSERT_EQ(S_OK, ::GetErrorInfo(0, &error));
    error->GetDescription(description.GetAddress());
    EXPECT_STREQ(expected, description);
    EXPECT_EQ(0u, error->Release());
    // One initialisation is left to undo, whoever it came from.
    EXPECT_EQ(S_FALSE, ::CoInitialize(nullptr));
    ::CoUninitialize();
    ::CoUninitialize();
    EXPECT_EQ(S_OK, ::CoInitialize(nullptr));
}

TEST(ComError, LeavesATextAndOneInitialisationOnBothKindsOfThread) {
    std::thread(SetOnThread, true, "Caf\xe9", L"Caf\xe9").join();
    std::thread(SetOnThread, false, nullptr, nullptr).join();
}

}  // namespace
