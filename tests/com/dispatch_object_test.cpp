#include <comutil.h>
#include <kitbag/pages.h>
#include <tests/com/registration.h>
#include <tests/support/temporary_folder.h>
#include <wrl/client.h>

namespace {

using namespace kitbag::test;
using Microsoft::WRL::ComPtr;

struct DispatchObject : testing::Test {
    DispatchObject() { EXPECT_TRUE(KB_CreateKivPageFactory(&factory)); }

    const Com com;
    ComPtr<IKivPageFactory> factory;
};

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
    const auto getId = [&](REFIID reserved, DISPID* to) {
        return factory->GetIDsOfNames(reserved, names, 1, 0, to);
    };
    const auto invoke = [&](REFIID reserved) {
        return factory->Invoke(77, reserved, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr);
    };
    const struct {
        const char* about;
        HRESULT expected, answer;
    } rows[] = {
        {"a second description", DISP_E_BADINDEX, factory->GetTypeInfo(1, 0, &info)},
        {"names of another interface", DISP_E_UNKNOWNINTERFACE, getId(IID_IUnknown, &member)},
        {"no place for the number", E_POINTER, getId(IID_NULL, nullptr)},
        {"an unknown name", DISP_E_UNKNOWNNAME, getId(IID_NULL, &member)},
        {"a call of another interface", DISP_E_UNKNOWNINTERFACE, invoke(IID_IUnknown)},
        {"an unknown operation", DISP_E_MEMBERNOTFOUND, invoke(IID_NULL)},
    };
    for (const auto& [about, expected, answer] : rows) EXPECT_EQ(expected, answer) << about;
    EXPECT_EQ(nullptr, info);
}

TEST_F(DispatchObject, CallsOperationsByTheirNames) {
    // Those of two classes of one library show that each has its own description.
    const auto library = ::LoadLibraryA("TwoClasses.dll");
    ASSERT_NE(nullptr, library);
    const auto getClassObject = reinterpret_cast<decltype(&::DllGetClassObject)>(
        reinterpret_cast<void*>(::GetProcAddress(library, "DllGetClassObject")));
    const auto objectOf = [&](const wchar_t* classId) {
        CLSID id{};
        ::CLSIDFromString(classId, &id);
        ComPtr<IClassFactory> classObject;
        ComPtr<IDispatch> object;
        EXPECT_EQ(S_OK, getClassObject(id, IID_PPV_ARGS(&classObject)));
        EXPECT_EQ(S_OK, classObject->CreateInstance(nullptr, IID_PPV_ARGS(&object)));
        return object;
    };
    const std::tuple<ComPtr<IDispatch>, std::wstring, DISPID, long> rows[] = {
        {factory, L"getpagecount", 7, 1},
        {objectOf(L"{5F0B7C7E-6A1D-4B9E-9F3A-2D1C5B8E0A04}"), L"GetFirst", 1, 1},
        {objectOf(L"{5F0B7C7E-6A1D-4B9E-9F3A-2D1C5B8E0A05}"), L"GetSecond", 1, 2}};
    factory->AddPage(_bstr_t(L"0"), nullptr);
    for (auto [object, name, identifier, number] : rows) {
        SCOPED_TRACE(testing::PrintToString(name));
        LPOLESTR names[] = {name.data()};
        DISPID member = DISPID_UNKNOWN;
        DISPPARAMS none{};
        _variant_t answer;
        EXPECT_EQ(S_OK, object->GetIDsOfNames(IID_NULL, names, 1, 0, &member));
        EXPECT_EQ(identifier, member);
        EXPECT_EQ(S_OK,
                  object->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &none, &answer, {}, {}));
        EXPECT_EQ(number, static_cast<long>(answer));
    }
}

}  // namespace
