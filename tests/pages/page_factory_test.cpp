#include <kitbag/registry/directories.h>
#include <kitbag/runtime/com_error.h>
#include <shlobj.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/trace_capture.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>

// The locale library's functions; this program stands in for that library.
extern "C" __declspec(dllexport) int GetLocaleLanguageDirectoryA(char* to, unsigned long size) {
    return std::strcpy(to, size == 260 ? "L:\\de" : "") != nullptr;
}
extern "C" __declspec(dllexport) int GetLocaleSubLanguageDirectoryA(char* to, unsigned long size) {
    return std::strcpy(to, size == 260 ? "L:\\de-AT\\" : "") != nullptr;
}

namespace {

using namespace kitbag::test;
using Texts = std::vector<std::wstring>;
using Factory = IKivPageFactory;

HMODULE localeLibrary = ::GetModuleHandleA(nullptr);
HMODULE WINAPI LoadLocaleLibrary(LPCSTR name) {
    return std::string(name) == "Lingrel.dll" ? localeLibrary : nullptr;
}
LPITEMIDLIST WINAPI Cancel(LPBROWSEINFOA) { return nullptr; }

/// A factory with the application around it.
class PageFactory : public testing::Test {
 protected:
    PageFactory() {
        ::CoInitialize(nullptr);
        ::CoRegisterClassObject(CLSID_KivGraphicFactory, &class_, CLSCTX_INPROC_SERVER,
                                REGCLS_MULTIPLEUSE, &cookie_);
        KB_SetSkinDirectoryA(std::string("C:\\windows"));
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory_));
    }
    ~PageFactory() override { ::CoRevokeClassObject(cookie_); }

    void Add(const wchar_t* name) { EXPECT_EQ(S_OK, factory_->AddPage(_bstr_t(name), nullptr)); }
    /// What an operation answers and leaves in its out pointer; only CreatePage does without one.
    using Outcome = std::pair<HRESULT, IUnknown*>;
    template <class Operation, class... Arguments>
    Outcome Call(Operation operation, Arguments... arguments) {
        if constexpr (!std::is_same_v<Operation, decltype(&Factory::CreatePage)>) {
            EXPECT_EQ(E_POINTER, (factory_.Get()->*operation)(arguments..., nullptr));
        }
        IUnknown* out = &overwritten_;
        const HRESULT result = (factory_.Get()->*operation)(arguments..., &out);
        if (out) out->Release();
        return {result, out};
    }
    Texts GraphicCalls() { return std::exchange(class_.graphics.calls, {}); }

    GraphicClass class_;
    DWORD cookie_ = 0;
    ImportPatch loadLibrary_{"LoadLibraryA", LoadLocaleLibrary};
    ImportPatch browse_{"SHBrowseForFolderA", Cancel};
    TraceCapture trace_;
    Double<> page_, other_, overwritten_;
    Double<IKivPageOwner> owner_;
    UserInterface userInterface_;
    ComPtr<Factory> factory_;
};

TEST_F(PageFactory, AnswersItsInterfaces) {
    ComPtr<ISupportErrorInfo> errors;
    ComPtr<IDispatch> automation;
    ASSERT_EQ(S_OK, factory_.As(&errors));
    EXPECT_EQ(S_OK, errors->InterfaceSupportsErrorInfo(IID_IKivPageFactory));
    EXPECT_EQ(S_FALSE, errors->InterfaceSupportsErrorInfo(IID_IDispatch));
    ASSERT_EQ(S_OK, errors.As(&automation));
    EXPECT_EQ(factory_, automation);
    void* out = &owner_;
    EXPECT_EQ(E_NOINTERFACE, factory_->QueryInterface(IID_IKivPageOwner, &out));
    EXPECT_EQ(nullptr, out);
}

TEST_F(PageFactory, KeepsNamesAndRefusesIndexesWithout) {
    LONG index = -1;
    EXPECT_EQ(E_INVALIDARG, factory_->AddPage(nullptr, &index));
    EXPECT_EQ(E_INVALIDARG, factory_->AddPage(_bstr_t(L""), &index));
    EXPECT_EQ(-1, index);
    EXPECT_EQ(S_OK, factory_->AddPage(_bstr_t(std::wstring(10000, L'x').c_str()), &index));
    EXPECT_EQ(0, index);
    EXPECT_EQ(E_POINTER, factory_->GetPageCount(nullptr));
    EXPECT_EQ(E_POINTER, factory_->SetScript(0, nullptr));
    for (const LONG wrong : {LONG_MIN, -1L, 1L, LONG_MAX}) {
        EXPECT_EQ(Outcome(E_INVALIDARG, nullptr), Call(&Factory::GetPage, wrong));
        EXPECT_EQ(Outcome(E_INVALIDARG, nullptr), Call(&Factory::GetScript, wrong));
        EXPECT_EQ(E_INVALIDARG, factory_->SetScript(wrong, &other_));
    }
}

TEST_F(PageFactory, KeepsObjectsAndADefaultForTheOthers) {
    const auto get = &Factory::GetRegisteredObject;
    EXPECT_EQ(Outcome(S_OK, nullptr), Call(get, IID_IUnknown));
    factory_->SetDefaultObject(&page_);
    factory_->SetDefaultObject(&other_);
    EXPECT_EQ(0, page_.references);
    factory_->RegisterObject(IID_IUnknown, &page_);
    factory_->RegisterObject(IID_IUnknown, &page_);
    EXPECT_EQ(1, page_.references);
    EXPECT_EQ(Outcome(S_OK, &page_), Call(get, IID_IUnknown));
    EXPECT_EQ(Outcome(S_OK, &other_), Call(get, IID_IDispatch));
    factory_->RegisterObject(IID_IUnknown, nullptr);
    EXPECT_EQ(Outcome(S_OK, &other_), Call(get, IID_IUnknown));
}

TEST_F(PageFactory, LoadsStringsFromItsModule) {
    wchar_t overwritten[] = L"";
    BSTR text = overwritten;
    EXPECT_EQ(E_POINTER, factory_->LoadResourceString(0, 399, nullptr));
    factory_->SetResourceModule(::GetModuleHandleA(nullptr));
    EXPECT_EQ(E_FAIL, factory_->LoadResourceString(0, 399, &text));
    EXPECT_EQ(nullptr, text);
    factory_->SetResourceModule(nullptr);
    EXPECT_EQ(S_OK, factory_->LoadResourceString(0, 399, &text));
    EXPECT_EQ(_bstr_t(L"Yes"), _bstr_t(text, false));
}

TEST_F(PageFactory, ChecksWhatCreatePageIsHandedInOrder) {
    const auto create = &Factory::CreatePage;
    EXPECT_EQ(Outcome(E_POINTER, nullptr), Call(create, 0, nullptr, nullptr));
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(create, 0, &userInterface_, &owner_));
    Add(L"0");
    EXPECT_EQ(Outcome(E_INVALIDARG, nullptr), Call(create, 1, &userInterface_, nullptr));
    userInterface_.create = [](auto&&...) { return S_FALSE; };
    EXPECT_EQ(S_FALSE, factory_->CreatePage(0, &userInterface_, nullptr, nullptr));
    trace_.Expect({"CKivPageFactory::CreatePage - Invalid IKivUserInterface pointer\n",
                   "CKivPageFactory::CreatePage - No filenames for pages given\n",
                   "CKivPageFactory::CreatePage - Index invalid\n"});
}

TEST_F(PageFactory, KeepsThePagesThatTheUserInterfaceCreates) {
    struct {
        LONG index;
        Outcome answers[2], outcome;
        IUnknown* kept[2];
    } const calls[] = {
        // All pages go on after a failure, of which the last one is answered.
        {-1, {{E_ABORT, nullptr}, {S_FALSE, &page_}}, {E_ABORT, nullptr}, {nullptr, &page_}},
        {LONG_MIN, {{E_ABORT, nullptr}, {E_FAIL, nullptr}}, {E_FAIL, nullptr}, {nullptr, &page_}},
        {-1, {{S_FALSE, &page_}, {S_FALSE, &page_}}, {S_OK, nullptr}, {&page_, &page_}},
        // A failure keeps the page, even one that hands out another.
        {1, {{}, {E_ACCESSDENIED, &other_}}, {E_ACCESSDENIED, nullptr}, {&page_, &page_}},
        {1, {{}, {S_FALSE, &other_}}, {S_FALSE, &other_}, {&page_, &other_}},
        {1, {{}, {S_OK, nullptr}}, {S_OK, nullptr}, {&page_, nullptr}},
    };
    Add(L"0");
    for (const auto& call : calls) {
        IKivPageOwner* const given = call.index < 0 ? nullptr : &owner_;
        ComPtr<IKivPageOwner> owner(given);
        userInterface_.create = [&](auto* handed, auto* factory, LONG index, IUnknown** page) {
            // All pages get the same owner.
            EXPECT_EQ(owner ? owner.Get() : handed, handed);
            owner = handed;
            // It may use the factory meanwhile, and even let go of the application's reference.
            factory_.Reset();
            factory_ = factory;
            if (&call == calls && index == 0) Add(L"1");
            KB_SetIErrorInfoW(L"No skin");
            ComPtr<IUnknown>(call.answers[index].second).CopyTo(page);
            return call.answers[index].first;
        };
        EXPECT_EQ(call.outcome, Call(&Factory::CreatePage, call.index, &userInterface_, given));
        EXPECT_EQ(0u, owner.Detach()->Release());
        // The application's explanation gets through.
        ComPtr<IErrorInfo> error;
        EXPECT_EQ(S_OK, ::GetErrorInfo(0, &error));
        for (const LONG index : {0, 1})
            EXPECT_EQ(Outcome(S_OK, call.kept[index]), Call(&Factory::GetPage, index));
        EXPECT_EQ(std::ranges::count(call.kept, &page_), page_.references);
        EXPECT_EQ(std::ranges::count(call.kept, &other_), other_.references);
    }
    trace_.Expect({"CKivPageFactory::CreatePage - Failed to create page '0' (HRESULT:80004004)\n",
                   "CKivPageFactory::CreatePage - Failed to create page '0' (HRESULT:80004004)\n",
                   "CKivPageFactory::CreatePage - Failed to create page '1' (HRESULT:80004005)\n",
                   "CKivPageFactory::CreatePage - Failed to create page '1' (HRESULT:80070005)\n"});
}

TEST_F(PageFactory, FindsScriptsInTheSkinDirectoryOrTheirOwn) {
    RawKey("Skins").Set(L"Renamed", L"New.page");
    const std::array<const wchar_t*, 3> cases[] = {
        {L"Main.page", L"C:\\windows\\Main.page", L"C:\\windows\\"},
        {L"sub\\Main.page", L"sub\\Main.page", L"sub\\"},
        {L"c:Main.page", L"c:Main.page", L""},
        {L"Renamed", L"C:\\windows\\New.page", L"C:\\windows\\"},
    };
    LONG index = 0;
    for (const auto& [name, file, directory] : cases) {
        Add(name);
        EXPECT_EQ(Outcome(S_OK, &class_.graphics.object), Call(&Factory::GetScript, index));
        EXPECT_EQ(S_OK, factory_->SetScript(index++, &other_));
        EXPECT_EQ((Texts{file, directory, L"L:\\de", L"L:\\de-AT\\", file}), GraphicCalls());
    }
    class_.graphics.refusals = 2;
    EXPECT_EQ(STG_E_FILENOTFOUND, factory_->SetScript(0, &other_));
    EXPECT_EQ(Outcome(STG_E_FILENOTFOUND, nullptr), Call(&Factory::GetScript, 0));
}

TEST_F(PageFactory, TakesImagesFromTheMostParticularDirectory) {
    const Texts all = {L"L:\\de-AT\\a.gif", L"L:\\de\\a.gif", L"C:\\windows\\a.gif"};
    // The languages' directories are known once a script was asked for.
    Call(&Factory::GetScriptImage, 7, _bstr_t(L"a.gif"));
    EXPECT_EQ(Texts{all[2]}, GraphicCalls());
    Add(L"Main.page");
    Call(&Factory::GetScript, 0);
    GraphicCalls();
    for (const auto get : {&Factory::GetScriptImage, &Factory::GetScriptImage2})
        for (const int refusals : {0, 1, 2, 3}) {
            class_.graphics.refusals = refusals;
            const auto outcome =
                refusals < 3 ? Outcome(S_OK, &class_.graphics.object) : Outcome(E_FAIL, nullptr);
            EXPECT_EQ(outcome, Call(get, 7, _bstr_t(L"a.gif")));
            EXPECT_EQ(Texts(all.begin(), all.begin() + std::min(refusals + 1, 3)), GraphicCalls());
        }
    trace_.Expect({});
}

TEST_F(PageFactory, DoesWithoutWhatItCannotFind) {
    localeLibrary = nullptr;
    KB_SetSkinDirectoryA(std::string("C:\\no such folder"));
    Add(L"Main.page");
    EXPECT_EQ(Outcome(S_OK, &class_.graphics.object), Call(&Factory::GetScript, 0));
    EXPECT_EQ(S_OK, factory_->SetScript(0, &other_));
    EXPECT_EQ((Texts{L"Main.page", L"", L"", L"", L"Main.page"}), GraphicCalls());
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(&Factory::GetScriptImage, 0, nullptr));
    EXPECT_EQ(Texts{}, GraphicCalls());
    trace_.Expect({"CKivPageFactory::GetScript - Can't get skin directory\n",
                   "CKivPageFactory::SetScript - Can't get skin directory\n",
                   "CKivPageFactory::GetScriptImage - Can't get skin directory\n"});
}

TEST_F(PageFactory, FailsWithoutAGraphicFactory) {
    Add(L"Main.page");
    ::CoRevokeClassObject(std::exchange(cookie_, 0));
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(&Factory::GetScript, 0));
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(&Factory::GetScriptImage, 0, _bstr_t(L"a.gif")));
    EXPECT_EQ(E_FAIL, factory_->SetScript(0, &other_));
    EXPECT_FALSE(KB_CreateGraphicFactory(nullptr));
    IKivGraphicFactory* graphics = &class_.graphics;
    EXPECT_FALSE(KB_CreateGraphicFactory(&graphics));
    EXPECT_EQ(nullptr, graphics);
}

}  // namespace
