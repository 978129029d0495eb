#include <gtest/gtest.h>
#include <kitbag/runtime/com_error.h>
#include <objbase.h>
#include <oleauto.h>
#include <tests/support/trace_capture.h>
#include <wrl/client.h>

#include <thread>

namespace {

std::wstring TakeDescription() {
    Microsoft::WRL::ComPtr<IErrorInfo> error;
    BSTR text = nullptr;
    if (::GetErrorInfo(0, &error) == S_OK) error->GetDescription(&text);
    EXPECT_EQ(0u, error.Reset());
    const std::wstring description(text, ::SysStringLen(text));
    ::SysFreeString(text);
    return description;
}

/// Sets a text on a thread that holds so many initialisations of its own; leaves one more to undo.
void SetOn(DWORD apartment, int initialisations, bool isTraced) {
    kitbag::test::TraceCapture trace;
    for (int i = 0; i < initialisations; ++i) ::CoInitializeEx(nullptr, apartment);
    EXPECT_TRUE(KB_SetIErrorInfoA("Caf\xe9"));
    char line[100];
    std::snprintf(line, sizeof line,
                  "CKitbag::SetIErrorInfo - Thread 0x%08lX should call CoInitialise\n",
                  ::GetCurrentThreadId());
    trace.Expect(isTraced ? std::vector<std::string>{line} : std::vector<std::string>{});
    EXPECT_EQ(L"Caf\xe9", TakeDescription());
    EXPECT_TRUE(KB_SetIErrorInfoA(nullptr));
    EXPECT_EQ(L"", TakeDescription());

    ::CoUninitialize();
    EXPECT_EQ(S_OK, ::CoInitializeEx(nullptr, apartment));
    ::CoUninitialize();
}

TEST(ComError, LeavesATextAndOneInitialisationOnEveryKindOfThread) {
    std::thread(SetOn, COINIT_APARTMENTTHREADED, 1, false).join();
    std::thread(SetOn, COINIT_APARTMENTTHREADED, 0, true).join();
    std::thread(SetOn, COINIT_MULTITHREADED, 1, true).join();
}

}  // namespace
