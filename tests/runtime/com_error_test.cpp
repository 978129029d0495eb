#include <comutil.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/runtime/com_error.h>
#include <tests/support/trace_capture.h>

#include <thread>

namespace {

/// Leaves one initialisation to undo, whether it is the thread's own or not.
void SetOn(DWORD apartment, bool isInitialised, const char* text, const wchar_t* expected) {
    if (isInitialised) ::CoInitializeEx(nullptr, apartment);
    kitbag::test::TraceCapture trace;
    EXPECT_TRUE(KB_SetIErrorInfoA(text));
    TWinString<char> line;
    line.Format("CKitbag::SetIErrorInfo - Thread 0x%08X should call CoInitialise\n",
                ::GetCurrentThreadId());
    const bool isAsItShould = isInitialised && apartment == COINIT_APARTMENTTHREADED;
    trace.Expect(std::vector<std::string>(!isAsItShould, line));

    IErrorInfo* error = nullptr;
    ASSERT_EQ(S_OK, ::GetErrorInfo(0, &error));
    _bstr_t description;
    error->GetDescription(description.GetAddress());
    EXPECT_STREQ(expected, description);
    EXPECT_EQ(0u, error->Release());
    EXPECT_EQ(S_FALSE, ::CoInitializeEx(nullptr, apartment));
    ::CoUninitialize();
    ::CoUninitialize();
    EXPECT_EQ(S_OK, ::CoInitializeEx(nullptr, apartment));
    ::CoUninitialize();
}

TEST(ComError, LeavesATextAndOneInitialisationOnEveryKindOfThread) {
    std::thread(SetOn, COINIT_APARTMENTTHREADED, true, "Caf\xe9", L"Caf\xe9").join();
    std::thread(SetOn, COINIT_APARTMENTTHREADED, false, "", L"").join();
    std::thread(SetOn, COINIT_MULTITHREADED, true, nullptr, nullptr).join();
}

}  // namespace
