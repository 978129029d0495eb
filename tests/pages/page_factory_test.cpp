#include <kitbag/runtime/com_error.h>
#include <tests/pages/doubles.h>
#include <tests/support/trace_capture.h>

#include <climits>

namespace {

using namespace kitbag::test;

class PageFactory : public testing::Test {
 protected:
    PageFactory() {
        ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory_));
    }
    void Add(const wchar_t* name) { EXPECT_EQ(S_OK, factory_->AddPage(_bstr_t(name), nullptr)); }
    IUnknown* Page(LONG index) {
        ComPtr<IUnknown> page;
        EXPECT_EQ(S_OK, factory_->GetPage(index, &page));
        return page.Get();
    }

    TraceCapture trace_;
    Double<> page_, other_;
    Double<IKivPageOwner> owner_;
    UserInterface userInterface_;
    ComPtr<IKivPageFactory> factory_;
};

TEST_F(PageFactory, RefusesNullAndIndexesOutsideTheList) {
    LONG index = -1;
    EXPECT_EQ(E_INVALIDARG, factory_->AddPage(nullptr, &index));
    EXPECT_EQ(E_INVALIDARG, factory_->AddPage(_bstr_t(L""), &index));
    EXPECT_EQ(-1, index);
    EXPECT_EQ(S_OK, factory_->AddPage(_bstr_t(std::wstring(10000, L'x').c_str()), &index));
    EXPECT_EQ(0, index);
    EXPECT_EQ(E_POINTER, factory_->GetScript(0, nullptr));
    EXPECT_EQ(E_POINTER, factory_->SetScript(0, nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetScriptImage(0, nullptr, nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetScriptImage2(0, nullptr, nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetRegisteredObject(IID_NULL, nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetPageCount(nullptr));
    EXPECT_EQ(E_POINTER, factory_->LoadResourceString(0, 399, nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetPage(0, nullptr));
    for (const LONG wrong : {LONG_MIN, -1L, 1L, LONG_MAX}) {
        IUnknown* out = &other_;
        EXPECT_EQ(E_INVALIDARG, factory_->GetPage(wrong, &out));
        EXPECT_EQ(nullptr, std::exchange(out, &other_));
        EXPECT_EQ(E_INVALIDARG, factory_->GetScript(wrong, &out));
        EXPECT_EQ(nullptr, out);
        EXPECT_EQ(E_INVALIDARG, factory_->SetScript(wrong, &other_));
    }
}

TEST_F(PageFactory, KeepsObjectsAndADefaultForTheOthers) {
    ComPtr<IUnknown> object = &owner_;
    EXPECT_EQ(S_OK, factory_->GetRegisteredObject(IID_IUnknown, &object));
    EXPECT_EQ(nullptr, object);
    factory_->SetDefaultObject(&page_);
    factory_->SetDefaultObject(&other_);
    EXPECT_EQ(0, page_.references);
    factory_->RegisterObject(IID_IUnknown, &page_);
    factory_->RegisterObject(IID_IUnknown, &page_);
    EXPECT_EQ(1, page_.references);
    EXPECT_EQ(S_OK, factory_->GetRegisteredObject(IID_IUnknown, &object));
    EXPECT_EQ(&page_, object.Get());
    EXPECT_EQ(S_OK, factory_->GetRegisteredObject(IID_IDispatch, &object));
    EXPECT_EQ(&other_, object.Get());
    factory_->RegisterObject(IID_IUnknown, nullptr);
    EXPECT_EQ(S_OK, factory_->GetRegisteredObject(IID_IUnknown, &object));
    EXPECT_EQ(&other_, object.Get());
}

TEST_F(PageFactory, ChecksWhatCreatePageIsHandedInOrder) {
    const std::string method = "CKivPageFactory::CreatePage - ";
    IUnknown* out = &page_;
    EXPECT_EQ(E_POINTER, factory_->CreatePage(0, nullptr, nullptr, &out));
    EXPECT_EQ(nullptr, std::exchange(out, &page_));
    trace_.Expect({method + "Invalid IKivUserInterface pointer\n"});
    EXPECT_EQ(E_FAIL, factory_->CreatePage(0, &userInterface_, &owner_, &out));
    EXPECT_EQ(nullptr, std::exchange(out, &page_));
    trace_.Expect({method + "No filenames for pages given\n"});
    Add(L"Main.page");
    EXPECT_EQ(E_INVALIDARG, factory_->CreatePage(1, &userInterface_, nullptr, &out));
    EXPECT_EQ(nullptr, out);
    trace_.Expect({method + "Index invalid\n"});
}

TEST_F(PageFactory, CreatesOnePageAndKeepsIt) {
    Add(L"Main.page");
    Add(L"Other.page");
    HRESULT answer = S_FALSE;
    ComPtr<IUnknown> next = &page_;
    userInterface_.create = [&](IKivPageOwner* owner, IKivPageFactory* factory, LONG index,
                                IUnknown** page) {
        EXPECT_EQ(&owner_, owner);
        EXPECT_EQ(factory_.Get(), factory);
        EXPECT_EQ(1, index);
        next.CopyTo(page);
        KB_SetIErrorInfoW(L"No skin");
        return answer;
    };
    ComPtr<IUnknown> out;
    EXPECT_EQ(S_FALSE, factory_->CreatePage(1, &userInterface_, &owner_, &out));
    EXPECT_EQ(&page_, out.Get());
    EXPECT_EQ(&page_, Page(1));
    EXPECT_EQ(nullptr, Page(0));

    // A failure keeps the page, even one that hands out another; its explanation gets through.
    answer = E_ACCESSDENIED;
    next = &other_;
    EXPECT_EQ(E_ACCESSDENIED, factory_->CreatePage(1, &userInterface_, &owner_, &out));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(&page_, Page(1));
    trace_.Expect(
        {"CKivPageFactory::CreatePage - Failed to create page 'Other.page' "
         "(HRESULT:80070005)\n"});
    ComPtr<IErrorInfo> error;
    EXPECT_EQ(S_OK, ::GetErrorInfo(0, &error));

    answer = S_OK;
    EXPECT_EQ(S_OK, factory_->CreatePage(1, &userInterface_, &owner_, nullptr));
    EXPECT_EQ(&other_, Page(1));
    EXPECT_EQ(0, page_.references);
    next = nullptr;
    EXPECT_EQ(S_OK, factory_->CreatePage(1, &userInterface_, &owner_, &out));
    EXPECT_EQ(nullptr, Page(1));
    EXPECT_EQ(0, other_.references);
}

TEST_F(PageFactory, CreatesAllPagesPastFailures) {
    for (const wchar_t* name : {L"0", L"1", L"2", L"3"}) Add(name);
    ComPtr<IKivPageOwner> kept;
    userInterface_.create = [&](IKivPageOwner* owner, IKivPageFactory* factory, LONG index,
                                IUnknown** page) {
        kept = owner;
        // It may use the factory meanwhile, and even let go of the application's reference.
        if (index == 0) factory->AddPage(_bstr_t(L"4"), nullptr);
        if (index == 0) factory_.Reset();
        if (index == 1) return E_ACCESSDENIED;
        if (index == 3) return E_ABORT;
        if (index == 4) factory_ = factory;
        return page_.QueryInterface(IID_PPV_ARGS(page));
    };
    ComPtr<IUnknown> out = &other_;
    EXPECT_EQ(E_ABORT, factory_->CreatePage(LONG_MIN, &userInterface_, nullptr, &out));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(3, page_.references);
    EXPECT_EQ(nullptr, Page(3));
    EXPECT_EQ(&page_, Page(4));
    trace_.Expect({"CKivPageFactory::CreatePage - Failed to create page '1' (HRESULT:80070005)\n",
                   "CKivPageFactory::CreatePage - Failed to create page '3' (HRESULT:80004004)\n"});
    // All pages got the library's owner, which is the last one's alone by now.
    EXPECT_EQ(0u, kept.Detach()->Release());
    userInterface_.create = [](auto&&...) { return S_FALSE; };
    EXPECT_EQ(S_OK, factory_->CreatePage(-1, &userInterface_, &owner_, nullptr));
}

TEST_F(PageFactory, LoadsStringsFromItsModule) {
    _bstr_t text;
    EXPECT_EQ(S_OK, factory_->LoadResourceString(1, 399, text.GetAddress()));
    EXPECT_EQ(_bstr_t(L"Yes"), text);
    factory_->SetResourceModule(::GetModuleHandleA(nullptr));
    EXPECT_EQ(E_FAIL, factory_->LoadResourceString(1, 399, text.GetAddress()));
    EXPECT_FALSE(text);
    factory_->SetResourceModule(nullptr);
    EXPECT_EQ(S_OK, factory_->LoadResourceString(1, 400, text.GetAddress()));
}

TEST_F(PageFactory, AnswersItsInterfaces) {
    ComPtr<IDispatch> automation;
    ComPtr<ISupportErrorInfo> errors;
    ComPtr<IKivPageFactory> whole;
    ComPtr<IKivPageOwner> none = &owner_;
    ASSERT_EQ(S_OK, factory_.As(&automation));
    ASSERT_EQ(S_OK, automation.As(&errors));
    EXPECT_EQ(S_OK, errors.As(&whole));
    EXPECT_EQ(factory_, whole);
    EXPECT_EQ(E_NOINTERFACE, factory_.As(&none));
    EXPECT_EQ(S_OK, errors->InterfaceSupportsErrorInfo(IID_IKivPageFactory));
    EXPECT_EQ(S_FALSE, errors->InterfaceSupportsErrorInfo(IID_IDispatch));
}

}  // namespace
