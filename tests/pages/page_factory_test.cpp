#include <comdef.h>
#include <comutil.h>
#include <kitbag/registry/values.h>
#include <kitbag/runtime/com_error.h>
#include <tests/pages/doubles.h>
#include <tests/support/trace_capture.h>

#include <climits>
#include <memory>

namespace {

using namespace kitbag::test;

constexpr GUID kOne = {1, 0, 0, {}};
constexpr GUID kTwo = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};

class PageFactory : public testing::Test {
 protected:
    LONG Add(const wchar_t* name) {
        LONG index = -1;
        EXPECT_EQ(S_OK, factory_->AddPage(_bstr_t(name), &index));
        return index;
    }
    IUnknown* Page(LONG index) {
        ComPtr<IUnknown> page;
        EXPECT_EQ(S_OK, factory_->GetPage(index, &page));
        return page.Get();
    }

    Apartment apartment_;
    TraceCapture trace_;
    Double<> page_, other_;
    Double<IKivPageOwner> owner_;
    UserInterface userInterface_;
    ComPtr<IKivPageFactory> factory_ = NewPageFactory();
};

TEST_F(PageFactory, ListsPagesInTheOrderTheyCame) {
    LONG count = -1;
    EXPECT_EQ(E_INVALIDARG, factory_->AddPage(nullptr, &count));
    EXPECT_EQ(E_INVALIDARG, factory_->AddPage(_bstr_t(L""), &count));
    EXPECT_EQ(-1, count);
    EXPECT_EQ(0, Add(L"Main.page"));
    EXPECT_EQ(1, Add(std::wstring(10000, L'x').c_str()));
    EXPECT_EQ(S_OK, factory_->AddPage(_bstr_t(L"Main.page"), nullptr));
    EXPECT_EQ(S_OK, factory_->GetPageCount(&count));
    EXPECT_EQ(3, count);
    EXPECT_EQ(nullptr, Page(2));
}

TEST_F(PageFactory, RefusesNullAndIndexesOutsideTheList) {
    Add(L"Main.page");
    EXPECT_EQ(E_POINTER, factory_->GetScript(0, nullptr));
    EXPECT_EQ(E_POINTER, factory_->SetScript(0, nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetScriptImage(0, _bstr_t(L"a.png"), nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetScriptImage2(0, _bstr_t(L"a.png"), nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetRegisteredObject(kOne, nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetPageCount(nullptr));
    EXPECT_EQ(E_POINTER, factory_->LoadResourceString(0, 399, nullptr));
    EXPECT_EQ(E_POINTER, factory_->GetPage(0, nullptr));
    for (const LONG index : {LONG_MIN, -1L, 1L, LONG_MAX}) {
        IUnknown* out = &other_;
        EXPECT_EQ(E_INVALIDARG, factory_->GetPage(index, &out));
        EXPECT_EQ(nullptr, std::exchange(out, &other_));
        EXPECT_EQ(E_INVALIDARG, factory_->GetScript(index, &out));
        EXPECT_EQ(nullptr, out);
        EXPECT_EQ(E_INVALIDARG, factory_->SetScript(index, &other_));
    }
    trace_.Expect({});
}

TEST_F(PageFactory, KeepsObjectsAndADefaultForTheOthers) {
    const auto registered = [&](const GUID& identifier) {
        IUnknown* object = &page_;
        EXPECT_EQ(S_OK, factory_->GetRegisteredObject(identifier, &object));
        if (object) object->Release();
        return object;
    };
    EXPECT_EQ(nullptr, registered(kOne));
    factory_->SetDefaultObject(&other_);
    factory_->SetDefaultObject(&other_);
    EXPECT_EQ(1, other_.references);
    factory_->RegisterObject(kOne, &page_);
    EXPECT_EQ(&page_, registered(kOne));
    EXPECT_EQ(&other_, registered(kTwo));
    factory_->RegisterObject(kTwo, &page_);
    EXPECT_EQ(2, page_.references);
    factory_->RegisterObject(kOne, nullptr);
    EXPECT_EQ(&other_, registered(kOne));
    factory_->SetDefaultObject(nullptr);
    EXPECT_EQ(nullptr, registered(kOne));
    EXPECT_EQ(0, other_.references);
    EXPECT_EQ(1, page_.references);
}

TEST_F(PageFactory, ChecksWhatCreatePageIsHandedInOrder) {
    IUnknown* out = &page_;
    EXPECT_EQ(E_POINTER, factory_->CreatePage(0, nullptr, nullptr, &out));
    EXPECT_EQ(nullptr, std::exchange(out, &page_));
    trace_.Expect({"CKivPageFactory::CreatePage - Invalid IKivUserInterface pointer\n"});
    EXPECT_EQ(E_FAIL, factory_->CreatePage(0, &userInterface_, &owner_, &out));
    EXPECT_EQ(nullptr, std::exchange(out, &page_));
    trace_.Expect({"CKivPageFactory::CreatePage - No filenames for pages given\n"});
    Add(L"Main.page");
    for (const LONG index : {1L, LONG_MAX})
        EXPECT_EQ(E_INVALIDARG, factory_->CreatePage(index, &userInterface_, nullptr, &out));
    EXPECT_EQ(nullptr, out);
    trace_.Expect({2, "CKivPageFactory::CreatePage - Index invalid\n"});
    EXPECT_TRUE(userInterface_.created.empty());
}

TEST_F(PageFactory, CreatesOnePageAndKeepsIt) {
    Add(L"Main.page");
    Add(L"Other.page");
    HRESULT answer = S_FALSE;
    IUnknown* next = &page_;
    userInterface_.create = [&](IKivPageOwner* owner, IKivPageFactory* factory, LONG,
                                IUnknown** page) {
        EXPECT_EQ(&owner_, owner);
        EXPECT_EQ(factory_.Get(), factory);
        *page = next;
        if (next) next->AddRef();
        return answer;
    };
    ComPtr<IUnknown> created;
    EXPECT_EQ(S_FALSE, factory_->CreatePage(1, &userInterface_, &owner_, &created));
    EXPECT_EQ(&page_, created.Get());
    EXPECT_EQ(&page_, Page(1));
    EXPECT_EQ(nullptr, Page(0));
    EXPECT_EQ(2, page_.references);

    // A failure keeps the page, even one that hands out another.
    answer = E_ACCESSDENIED;
    next = &other_;
    EXPECT_EQ(E_ACCESSDENIED, factory_->CreatePage(1, &userInterface_, &owner_, &created));
    EXPECT_EQ(nullptr, created);
    EXPECT_EQ(&page_, Page(1));
    trace_.Expect(
        {"CKivPageFactory::CreatePage - Failed to create page 'Other.page' "
         "(HRESULT:80070005)\n"});

    answer = S_OK;
    EXPECT_EQ(S_OK, factory_->CreatePage(1, &userInterface_, &owner_, nullptr));
    EXPECT_EQ(&other_, Page(1));
    EXPECT_EQ(0, page_.references);
    next = nullptr;
    EXPECT_EQ(S_OK, factory_->CreatePage(1, &userInterface_, &owner_, &created));
    EXPECT_EQ(nullptr, created);
    EXPECT_EQ(nullptr, Page(1));
    EXPECT_EQ(0, other_.references);
}

TEST_F(PageFactory, CreatesAllPagesPastFailures) {
    for (const wchar_t* name : {L"0", L"1", L"2", L"3"}) Add(name);
    userInterface_.create = [&](IKivPageOwner*, IKivPageFactory* factory, LONG index,
                                IUnknown** page) {
        // It may use the factory meanwhile, and even let go of the application's reference.
        if (index == 0) factory->AddPage(_bstr_t(L"4"), nullptr);
        if (index == 0) factory_.Reset();
        if (index == 1) return E_ACCESSDENIED;
        if (index == 3) return E_ABORT;
        if (index == 4) factory_ = factory;
        return page_.QueryInterface(IID_PPV_ARGS(page));
    };
    ComPtr<IUnknown> out = &other_;
    EXPECT_EQ(E_ABORT, factory_->CreatePage(LONG_MIN, &userInterface_, &owner_, &out));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ((std::vector<LONG>{0, 1, 2, 3, 4}), userInterface_.created);
    EXPECT_EQ(3, page_.references);
    EXPECT_EQ(nullptr, Page(3));
    trace_.Expect({"CKivPageFactory::CreatePage - Failed to create page '1' (HRESULT:80070005)\n",
                   "CKivPageFactory::CreatePage - Failed to create page '3' (HRESULT:80004004)\n"});
    userInterface_.create = [](auto&&...) { return S_FALSE; };
    EXPECT_EQ(S_OK, factory_->CreatePage(-1, &userInterface_, &owner_, nullptr));
    EXPECT_EQ(0, page_.references);
}

TEST_F(PageFactory, GivesPagesAnOwnerWhereTheCallerHasNone) {
    Add(L"Main.page");
    ComPtr<IKivPageOwner> kept;
    userInterface_.create = [&](IKivPageOwner* owner, auto&&...) {
        kept = owner;
        return S_OK;
    };
    EXPECT_EQ(S_OK, factory_->CreatePage(0, &userInterface_, nullptr, nullptr));
    ASSERT_NE(nullptr, kept);
    ComPtr<IKivPageFactory> no;
    EXPECT_EQ(E_NOINTERFACE, kept.As(&no));
    EXPECT_EQ(0u, kept.Detach()->Release());
}

TEST_F(PageFactory, LoadsStringsFromItsModule) {
    const auto load = [&](LONG identifier) {
        BSTR text = nullptr;
        const HRESULT result = factory_->LoadResourceString(1, identifier, &text);
        EXPECT_EQ(result, text ? S_OK : E_FAIL);
        return _bstr_t(text, false);
    };
    EXPECT_EQ(_bstr_t(L"Yes"), load(399));
    EXPECT_FALSE(load(396));
    EXPECT_EQ(S_OK, factory_->SetResourceModule(::GetModuleHandleA(nullptr)));
    EXPECT_FALSE(load(399));
    EXPECT_EQ(S_OK, factory_->SetResourceModule(nullptr));
    EXPECT_EQ(_bstr_t(L"No"), load(400));
}

TEST_F(PageFactory, AnswersItsInterfacesOnly) {
    ComPtr<IUnknown> identity;
    ASSERT_EQ(S_OK, factory_.As(&identity));
    for (const IID& id : {IID_IDispatch, IID_ISupportErrorInfo, IID_IKivPageFactory}) {
        ComPtr<IUnknown> part, whole;
        ASSERT_EQ(S_OK, identity->QueryInterface(id, &part));
        EXPECT_EQ(S_OK, part.As(&whole));
        EXPECT_EQ(identity, whole);
    }
    IUnknown* none = &page_;
    EXPECT_EQ(E_NOINTERFACE,
              factory_->QueryInterface(IID_IKivPageOwner, IID_PPV_ARGS_Helper(&none)));
    EXPECT_EQ(nullptr, none);
    EXPECT_EQ(E_POINTER, factory_->QueryInterface(IID_IUnknown, nullptr));

    ComPtr<ISupportErrorInfo> errors;
    ASSERT_EQ(S_OK, factory_.As(&errors));
    EXPECT_EQ(S_OK, errors->InterfaceSupportsErrorInfo(IID_IKivPageFactory));
    EXPECT_EQ(S_FALSE, errors->InterfaceSupportsErrorInfo(IID_IDispatch));
}

TEST_F(PageFactory, IsCalledByNameThroughItsTypeLibrary) {
    ComPtr<ITypeInfo> info;
    EXPECT_EQ(DISP_E_BADINDEX, factory_->GetTypeInfo(1, 0, &info));
    EXPECT_EQ(S_OK, factory_->GetTypeInfo(0, 0, &info));
    const auto invoke = [&](const wchar_t* name, std::vector<_variant_t> arguments,
                            _variant_t& result) {
        auto* text = const_cast<wchar_t*>(name);
        DISPID member = DISPID_UNKNOWN;
        EXPECT_EQ(S_OK, factory_->GetIDsOfNames(IID_NULL, &text, 1, 0, &member));
        DISPPARAMS parameters = {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
        return factory_->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &parameters, &result, nullptr,
                                nullptr);
    };
    _variant_t result;
    EXPECT_EQ(S_OK, invoke(L"addpage", {L"Main.page"}, result));
    EXPECT_EQ(S_OK, invoke(L"GetPageCount", {}, result));
    EXPECT_EQ(_variant_t(1L), result);
    EXPECT_EQ(DISP_E_BADPARAMCOUNT, invoke(L"GetPageCount", {1L}, result));

    // What the user interface said about its failure reaches the caller.
    userInterface_.create = [](auto&&...) { return KB_SetIErrorInfoW(L"No skin") ? E_FAIL : S_OK; };
    EXPECT_EQ(E_FAIL, factory_->CreatePage(0, &userInterface_, nullptr, nullptr));
    ComPtr<IErrorInfo> error;
    EXPECT_EQ(S_OK, ::GetErrorInfo(0, &error));
}

}  // namespace
