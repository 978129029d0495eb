#include <kitbag/registry/directories.h>
#include <kitbag/runtime/com_error.h>
#include <shlobj.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

#include <climits>
#include <cstring>

/// The locale library's functions; this program stands in for that library.
extern "C" __declspec(dllexport) int GetLocaleLanguageDirectoryA(char* buffer, unsigned long size) {
    return std::strcpy(buffer, size == 260 ? "L:\\de" : "") != nullptr;
}
extern "C" __declspec(dllexport) int GetLocaleSubLanguageDirectoryA(char* buffer,
                                                                    unsigned long size) {
    return std::strcpy(buffer, size == 260 ? "L:\\de-AT\\" : "") != nullptr;
}

namespace {

using namespace kitbag::test;
using Texts = std::vector<std::wstring>;
using Factory = IKivPageFactory;

HMODULE localeLibrary = ::GetModuleHandleA(nullptr);

HMODULE WINAPI LoadLocaleLibrary(LPCSTR name) {
    EXPECT_STREQ("Lingrel.dll", name);
    return localeLibrary;
}

LPITEMIDLIST WINAPI Cancel(LPBROWSEINFOA) { return nullptr; }

/// A factory with the application around it.
class PageFactory : public testing::Test {
 protected:
    /// What an operation answers and what it leaves in its out pointer.
    using Outcome = std::pair<HRESULT, IUnknown*>;

    PageFactory() {
        ::CoInitialize(nullptr);
        ::CoRegisterClassObject(CLSID_KivGraphicFactory, &class_, CLSCTX_INPROC_SERVER,
                                REGCLS_MULTIPLEUSE, &cookie_);
        KB_SetSkinDirectoryA(skin_.Path().string());
        RawKey("Skins").Set(L"Renamed", L"New.page");
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory_));
    }
    ~PageFactory() override { ::CoRevokeClassObject(cookie_); }

    void Add(std::initializer_list<const wchar_t*> names) {
        for (const auto* name : names) EXPECT_EQ(S_OK, factory_->AddPage(_bstr_t(name), nullptr));
    }
    template <class Operation, class... Arguments>
    Outcome Call(Operation operation, Arguments... arguments) {
        IUnknown* out = &overwritten_;
        const HRESULT result = (factory_.Get()->*operation)(arguments..., &out);
        if (out) out->Release();
        return {result, out};
    }
    /// The full path of a file in the skin directory.
    std::wstring InSkin(const wchar_t* name) { return (skin_.Path() / name).wstring(); }
    Texts Calls() { return std::exchange(graphics_.calls, {}); }

    TemporaryFolder skin_;
    GraphicClass class_;
    GraphicFactory& graphics_ = class_.graphics;
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
    ComPtr<IDispatch> automation;
    ComPtr<ISupportErrorInfo> errors;
    ComPtr<Factory> whole;
    ASSERT_EQ(S_OK, factory_.As(&automation));
    ASSERT_EQ(S_OK, automation.As(&errors));
    EXPECT_EQ(S_OK, errors.As(&whole));
    EXPECT_EQ(factory_, whole);
    EXPECT_EQ(S_OK, errors->InterfaceSupportsErrorInfo(IID_IKivPageFactory));
    EXPECT_EQ(S_FALSE, errors->InterfaceSupportsErrorInfo(IID_IDispatch));
    void* out = &owner_;
    EXPECT_EQ(E_NOINTERFACE, factory_->QueryInterface(IID_IKivPageOwner, &out));
    EXPECT_EQ(nullptr, out);
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(DISP_E_BADINDEX, automation->GetTypeInfo(1, 0, &info));
}

TEST_F(PageFactory, RefusesNullAndIndexesOutsideTheList) {
    LONG index = -1;
    EXPECT_EQ(E_INVALIDARG, factory_->AddPage(nullptr, &index));
    EXPECT_EQ(E_INVALIDARG, factory_->AddPage(_bstr_t(L""), &index));
    EXPECT_EQ(-1, index);
    EXPECT_EQ(S_OK, factory_->AddPage(_bstr_t(std::wstring(10000, L'x').c_str()), &index));
    EXPECT_EQ(0, index);
    const std::vector<HRESULT> answers = {factory_->GetScript(0, nullptr),
                                          factory_->SetScript(0, nullptr),
                                          factory_->GetScriptImage(0, nullptr, nullptr),
                                          factory_->GetScriptImage2(0, nullptr, nullptr),
                                          factory_->GetRegisteredObject(IID_NULL, nullptr),
                                          factory_->GetPageCount(nullptr),
                                          factory_->LoadResourceString(0, 399, nullptr),
                                          factory_->GetPage(0, nullptr),
                                          factory_->QueryInterface(IID_IUnknown, nullptr),
                                          factory_->GetTypeInfo(0, 0, nullptr)};
    EXPECT_THAT(answers, testing::Each(E_POINTER));
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
    wchar_t before[] = L"";
    BSTR text = before;
    factory_->SetResourceModule(::GetModuleHandleA(nullptr));
    EXPECT_EQ(E_FAIL, factory_->LoadResourceString(1, 399, &text));
    EXPECT_EQ(nullptr, text);
    factory_->SetResourceModule(nullptr);
    EXPECT_EQ(S_OK, factory_->LoadResourceString(1, 399, &text));
    EXPECT_STREQ(L"Yes", _bstr_t(text, false));
}

TEST_F(PageFactory, ChecksWhatCreatePageIsHandedInOrder) {
    const auto create = &Factory::CreatePage;
    EXPECT_EQ(Outcome(E_POINTER, nullptr), Call(create, 0, nullptr, nullptr));
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(create, 0, &userInterface_, &owner_));
    Add({L"Main.page"});
    EXPECT_EQ(Outcome(E_INVALIDARG, nullptr), Call(create, 1, &userInterface_, nullptr));
    const std::string operation = "CKivPageFactory::CreatePage - ";
    trace_.Expect({operation + "Invalid IKivUserInterface pointer\n",
                   operation + "No filenames for pages given\n", operation + "Index invalid\n"});
}

TEST_F(PageFactory, CreatesOnePageAndKeepsIt) {
    struct {
        HRESULT answer;
        IUnknown* created;
        IUnknown* kept;
    } const cases[] = {
        {S_FALSE, &page_, &page_},
        // A failure keeps the page, even one that hands out another.
        {E_ACCESSDENIED, &other_, &page_},
        {S_OK, &other_, &other_},
        {S_OK, nullptr, nullptr},
    };
    Add({L"Main.page", L"Other.page"});
    for (const auto& each : cases) {
        userInterface_.create = [&](auto* owner, auto* factory, LONG index, IUnknown** page) {
            EXPECT_EQ(&owner_, owner);
            EXPECT_EQ(factory_.Get(), factory);
            EXPECT_EQ(1, index);
            ComPtr<IUnknown>(each.created).CopyTo(page);
            KB_SetIErrorInfoW(L"No skin");
            return each.answer;
        };
        const Outcome outcome(each.answer, FAILED(each.answer) ? nullptr : each.created);
        EXPECT_EQ(outcome, Call(&Factory::CreatePage, 1, &userInterface_, &owner_));
        // The application's explanation gets through.
        ComPtr<IErrorInfo> error;
        EXPECT_EQ(S_OK, ::GetErrorInfo(0, &error));
        EXPECT_EQ(Outcome(S_OK, nullptr), Call(&Factory::GetPage, 0));
        EXPECT_EQ(Outcome(S_OK, each.kept), Call(&Factory::GetPage, 1));
        EXPECT_EQ(each.kept == &page_, page_.references);
        EXPECT_EQ(each.kept == &other_, other_.references);
    }
    trace_.Expect(
        {"CKivPageFactory::CreatePage - Failed to create page 'Other.page' "
         "(HRESULT:80070005)\n"});
}

TEST_F(PageFactory, CreatesAllPagesPastFailures) {
    Add({L"0", L"1", L"2", L"3"});
    ComPtr<IKivPageOwner> kept;
    userInterface_.create = [&](auto* owner, auto* factory, LONG index, IUnknown** page) {
        kept = owner;
        // It may use the factory meanwhile, and even let go of the application's reference.
        if (index == 0) factory->AddPage(_bstr_t(L"4"), nullptr);
        if (index == 0) factory_.Reset();
        if (index == 1) return E_ACCESSDENIED;
        if (index == 3) return E_ABORT;
        if (index == 4) factory_ = factory;
        return page_.QueryInterface(IID_PPV_ARGS(page));
    };
    EXPECT_EQ(Outcome(E_ABORT, nullptr),
              Call(&Factory::CreatePage, LONG_MIN, &userInterface_, nullptr));
    EXPECT_EQ(3, page_.references);
    EXPECT_EQ(Outcome(S_OK, nullptr), Call(&Factory::GetPage, 3));
    EXPECT_EQ(Outcome(S_OK, &page_), Call(&Factory::GetPage, 4));
    trace_.Expect({"CKivPageFactory::CreatePage - Failed to create page '1' (HRESULT:80070005)\n",
                   "CKivPageFactory::CreatePage - Failed to create page '3' (HRESULT:80004004)\n"});
    // All pages got the library's owner, which is the last one's alone by now.
    EXPECT_EQ(0u, kept.Detach()->Release());
    userInterface_.create = [](auto&&...) { return S_FALSE; };
    EXPECT_EQ(S_OK, factory_->CreatePage(-1, &userInterface_, &owner_, nullptr));
}

TEST_F(PageFactory, FindsScriptsInTheSkinDirectoryOrTheirOwn) {
    Add({L"Main.page", L"sub\\Main.page", L"c:Main.page", L"Renamed"});
    const Texts filesAndDirectories[] = {
        {InSkin(L"Main.page"), InSkin(L"")},
        {L"sub\\Main.page", L"sub\\"},
        {L"c:Main.page", L""},
        {InSkin(L"New.page"), InSkin(L"")},
    };
    LONG index = 0;
    for (const Texts& each : filesAndDirectories) {
        EXPECT_EQ(Outcome(S_OK, &graphics_.object), Call(&Factory::GetScript, index));
        EXPECT_EQ((Texts{each[0], each[1], L"L:\\de", L"L:\\de-AT\\"}), Calls());
        EXPECT_EQ(S_OK, factory_->SetScript(index++, &other_));
        EXPECT_EQ(Texts{each[0]}, Calls());
    }
    graphics_.refusals = 2;
    EXPECT_EQ(STG_E_FILENOTFOUND, factory_->SetScript(0, &other_));
    EXPECT_EQ(Outcome(STG_E_FILENOTFOUND, nullptr), Call(&Factory::GetScript, 0));
}

TEST_F(PageFactory, TakesImagesFromTheMostParticularDirectory) {
    Add({L"Main.page"});
    const _bstr_t name(L"a.gif");
    const Texts all = {L"L:\\de-AT\\a.gif", L"L:\\de\\a.gif", InSkin(L"a.gif")};
    // The languages' directories are known once a script was asked for.
    Call(&Factory::GetScriptImage, 7, name);
    EXPECT_EQ(Texts{all[2]}, Calls());
    Call(&Factory::GetScript, 0);
    Calls();
    for (const auto get : {&Factory::GetScriptImage, &Factory::GetScriptImage2})
        for (const int refusals : {0, 1, 2, 3}) {
            graphics_.refusals = refusals;
            const bool found = refusals < 3;
            EXPECT_EQ(found ? Outcome(S_OK, &graphics_.object) : Outcome(E_FAIL, nullptr),
                      Call(get, 7, name));
            EXPECT_EQ(Texts(all.begin(), all.begin() + (found ? refusals + 1 : 3)), Calls());
        }
    trace_.Expect({});
}

TEST_F(PageFactory, DoesWithoutALocaleLibraryAndASkinDirectory) {
    localeLibrary = nullptr;
    KB_SetSkinDirectoryA(std::string("C:\\no such folder"));
    Add({L"Main.page"});
    EXPECT_EQ(Outcome(S_OK, &graphics_.object), Call(&Factory::GetScript, 0));
    EXPECT_EQ(S_OK, factory_->SetScript(0, &other_));
    EXPECT_EQ((Texts{L"Main.page", L"", L"", L"", L"Main.page"}), Calls());
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(&Factory::GetScriptImage2, 0, nullptr));
    EXPECT_EQ(Texts{}, Calls());
    trace_.Expect({"CKivPageFactory::GetScript - Can't get skin directory\n",
                   "CKivPageFactory::SetScript - Can't get skin directory\n",
                   "CKivPageFactory::GetScriptImage - Can't get skin directory\n"});
}

TEST_F(PageFactory, FailsWithoutAGraphicFactory) {
    ::CoRevokeClassObject(std::exchange(cookie_, 0));
    Add({L"Main.page"});
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(&Factory::GetScript, 0));
    EXPECT_EQ(Outcome(E_FAIL, nullptr), Call(&Factory::GetScriptImage, 0, _bstr_t(L"a.gif")));
    EXPECT_EQ(E_FAIL, factory_->SetScript(0, &other_));
    IKivGraphicFactory* graphics = &graphics_;
    EXPECT_FALSE(KB_CreateGraphicFactory(&graphics));
    EXPECT_EQ(nullptr, graphics);
}

}  // namespace
