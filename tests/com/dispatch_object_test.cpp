#include <comutil.h>
#include <kitbag/pages.h>
#include <kitbag/runtime/com_error.h>
#include <tests/com/registration.h>
#include <tests/support/temporary_folder.h>
#include <wrl/client.h>

namespace {

using namespace kitbag::test;
using Microsoft::WRL::ComPtr;

struct DispatchObject : testing::Test {
    DispatchObject() { EXPECT_TRUE(KB_CreateKivPageFactory(&factory)); }

    /// Calls an operation by its number, without arguments.
    HRESULT Invoke(DISPID member, VARIANT* returned, EXCEPINFO* exception = nullptr) {
        DISPPARAMS none{};
        return factory->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &none, returned, exception,
                               nullptr);
    }

    const Com com;
    ComPtr<IKivPageFactory> factory;
};

TEST_F(DispatchObject, CallsOperationsByTheirNames) {
    wchar_t name[] = L"getpagecount";
    LPOLESTR names[] = {name};
    DISPID member = DISPID_UNKNOWN;
    EXPECT_EQ(S_OK, factory->GetIDsOfNames(IID_NULL, names, 1, 0, &member));
    EXPECT_EQ(7, member);
    factory->AddPage(_bstr_t(L"0"), nullptr);
    _variant_t count;
    EXPECT_EQ(S_OK, Invoke(member, &count));
    EXPECT_EQ(_variant_t(1L), count);
}

TEST_F(DispatchObject, HasTheDescriptionOfItsInterface) {
    UINT count = 7;
    EXPECT_EQ(S_OK, factory->GetTypeInfoCount(&count));
    EXPECT_EQ(1u, count);
    ComPtr<ITypeInfo> info;
    ASSERT_EQ(S_OK, factory->GetTypeInfo(0, 0, &info));
    _bstr_t name;
    info->GetDocumentation(MEMBERID_NIL, name.GetAddress(), nullptr, nullptr, nullptr);
    EXPECT_STREQ(L"IKivPageFactory", name);
}

TEST_F(DispatchObject, RefusesWhatItCannotUse) {
    wchar_t name[] = L"NoSuchName";
    LPOLESTR names[] = {name};
    DISPID member = 0;
    DISPPARAMS none{};
    auto* info = reinterpret_cast<ITypeInfo*>(&none);
    EXPECT_EQ(DISP_E_BADINDEX, factory->GetTypeInfo(1, 0, &info));
    EXPECT_EQ(nullptr, info);
    const auto invoke = [&](REFIID reserved, DISPPARAMS* arguments) {
        return factory->Invoke(7, reserved, 0, DISPATCH_METHOD, arguments, nullptr, nullptr,
                               nullptr);
    };
    const struct {
        const char* about;
        HRESULT expected, answer;
    } rows[] = {
        {"no place for the count", E_POINTER, factory->GetTypeInfoCount(nullptr)},
        {"no place for the description", E_POINTER, factory->GetTypeInfo(0, 0, nullptr)},
        {"names of another interface", DISP_E_UNKNOWNINTERFACE,
         factory->GetIDsOfNames(IID_IUnknown, names, 1, 0, &member)},
        {"no names", E_POINTER, factory->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &member)},
        {"no place for the number", E_POINTER, factory->GetIDsOfNames(IID_NULL, names, 1, 0, {})},
        {"an unknown name", DISP_E_UNKNOWNNAME,
         factory->GetIDsOfNames(IID_NULL, names, 1, 0, &member)},
        {"a call of another interface", DISP_E_UNKNOWNINTERFACE, invoke(IID_IUnknown, &none)},
        {"no arguments", E_POINTER, invoke(IID_NULL, nullptr)},
        {"an unknown operation", DISP_E_MEMBERNOTFOUND, Invoke(77, nullptr)},
    };
    for (const auto& [about, expected, answer] : rows) EXPECT_EQ(expected, answer) << about;
}

TEST_F(DispatchObject, ExplainsNoFailureByAnEarlierOne) {
    KB_SetIErrorInfoA("An earlier failure of another object");
    _variant_t argument(L"");
    DISPPARAMS arguments{&argument, nullptr, 1, 0};
    EXCEPINFO exception{};
    constexpr DISPID addPage = 10;
    EXPECT_EQ(DISP_E_EXCEPTION, factory->Invoke(addPage, IID_NULL, 0, DISPATCH_METHOD, &arguments,
                                                nullptr, &exception, nullptr));
    EXPECT_EQ(E_INVALIDARG, exception.scode);
    EXPECT_EQ(nullptr, exception.bstrDescription);
}

/// Makes an object of a library that has two classes, and calls its one operation by name.
long CallByName(const wchar_t* classId, const wchar_t* operation) {
    CLSID id{};
    ::CLSIDFromString(classId, &id);
    const auto getClassObject =
        reinterpret_cast<decltype(&::DllGetClassObject)>(reinterpret_cast<void*>(
            ::GetProcAddress(::GetModuleHandleA("TwoClasses.dll"), "DllGetClassObject")));
    ComPtr<IClassFactory> classObject;
    ComPtr<IDispatch> object;
    EXPECT_EQ(S_OK, getClassObject(id, IID_PPV_ARGS(&classObject)));
    EXPECT_EQ(S_OK, classObject->CreateInstance(nullptr, IID_PPV_ARGS(&object)));
    auto name = const_cast<LPOLESTR>(operation);
    DISPID member = DISPID_UNKNOWN;
    EXPECT_EQ(S_OK, object->GetIDsOfNames(IID_NULL, &name, 1, 0, &member));
    DISPPARAMS none{};
    _variant_t number;
    EXPECT_EQ(S_OK, object->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &none, &number, nullptr,
                                   nullptr));
    return number;
}

TEST(DispatchObjects, OfOneLibraryHaveTheirOwnDescriptions) {
    const Com com;
    HMODULE library = ::LoadLibraryA("TwoClasses.dll");
    ASSERT_NE(nullptr, library);
    EXPECT_EQ(1, CallByName(L"{5F0B7C7E-6A1D-4B9E-9F3A-2D1C5B8E0A04}", L"GetFirst"));
    EXPECT_EQ(2, CallByName(L"{5F0B7C7E-6A1D-4B9E-9F3A-2D1C5B8E0A05}", L"GetSecond"));
    ::FreeLibrary(library);
}

}  // namespace
