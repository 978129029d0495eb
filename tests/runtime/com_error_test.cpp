#include <comutil.h>
#include <kitbag/runtime/com_error.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>
#include <wrl/client.h>

#include <thread>

namespace {

using namespace kitbag::test;
using Microsoft::WRL::ComPtr;

/// One text of an error object; "no object" where there is none.
std::wstring TextOf(IErrorInfo* error, HRESULT (WINAPI IErrorInfo::*get)(BSTR*)) {
    _bstr_t text(L"no object");
    if (error) (error->*get)(text.GetAddress());
    return {text, text.length()};
}
std::wstring TakeDescription() {
    ComPtr<IErrorInfo> error;
    ::GetErrorInfo(0, &error);
    return TextOf(error.Get(), &IErrorInfo::GetDescription);
}

template <class Ch>
struct ComError : testing::Test {};
TYPED_TEST_SUITE(ComError, TextForms, TextFormName);

TYPED_TEST(ComError, IsADescriptionAndNothingElse) {
    using Kb = Exports<TypeParam>;
    const Com com;
    EXPECT_TRUE(Kb::SetIErrorInfo("Caf\xe9"_t));
    ComPtr<IErrorInfo> error;
    ASSERT_EQ(S_OK, ::GetErrorInfo(0, &error));
    EXPECT_EQ(L"Caf\xe9", TextOf(error.Get(), &IErrorInfo::GetDescription));
    EXPECT_EQ(L"", TextOf(error.Get(), &IErrorInfo::GetSource));
    EXPECT_EQ(L"", TextOf(error.Get(), &IErrorInfo::GetHelpFile));
    EXPECT_EQ(0u, error.Reset());
    EXPECT_TRUE(Kb::SetIErrorInfo(nullptr));
    EXPECT_EQ(L"", TakeDescription());
}

HRESULT WINAPI CreateNone(ICreateErrorInfo**) { return E_OUTOFMEMORY; }
HRESULT WINAPI SetNone(ULONG, IErrorInfo*) { return S_FALSE; }

TYPED_TEST(ComError, StaysTheFormerOneWhereNoneCanBeSet) {
    using Kb = Exports<TypeParam>;
    const Com com;
    Kb::SetIErrorInfo("former"_t);
    {
        const ImportPatch create("CreateErrorInfo", CreateNone);
        EXPECT_FALSE(Kb::SetIErrorInfo("new"_t));
    }
    const ImportPatch set("SetErrorInfo", SetNone);
    EXPECT_FALSE(Kb::SetIErrorInfo("new"_t));
    EXPECT_EQ(L"former", TakeDescription());
}

/// On a thread that initialised COM in this way, or, with -1, not at all.
void SetOnThread(int mode, bool isTraced) {
    const auto threadsMode = static_cast<DWORD>(mode < 0 ? int{COINIT_APARTMENTTHREADED} : mode);
    if (mode >= 0) ::CoInitializeEx(nullptr, threadsMode);
    char line[99];
    std::snprintf(line, sizeof line,
                  "CKitbag::SetIErrorInfo - Thread 0x%08lX should call CoInitialise\n",
                  ::GetCurrentThreadId());
    TraceCapture trace;
    EXPECT_TRUE(KB_SetIErrorInfoA("text"));
    trace.Expect(isTraced ? TraceCapture::Texts{line} : TraceCapture::Texts{});
    EXPECT_EQ(L"text", TakeDescription());
    // One initialisation is left to undo, whoever it came from.
    EXPECT_EQ(S_FALSE, ::CoInitializeEx(nullptr, threadsMode));
    ::CoUninitialize();
    ::CoUninitialize();
    EXPECT_EQ(S_OK, ::CoInitializeEx(nullptr, threadsMode));
    ::CoUninitialize();
}

TEST(ComErrors, AreSetOnEveryThreadWithAWordToThoseWithoutAnApartment) {
    std::thread(SetOnThread, COINIT_APARTMENTTHREADED, false).join();
    std::thread(SetOnThread, COINIT_MULTITHREADED, true).join();
    std::thread(SetOnThread, -1, true).join();
}

}  // namespace
