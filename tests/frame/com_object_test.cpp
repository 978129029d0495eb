#include <kitbag/pages.h>
#include <olectl.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;

void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

TEST(ComObject, AnswersForItsInterfacesWithOneIdentityAndForNoOther) {
    const Com com;
    ComPtr<IKivPageFactory> factory;
    ASSERT_TRUE(KB_CreateKivPageFactory(&factory));
    ComPtr<IUnknown> object;
    factory.As(&object);
    const auto query = [&](REFIID id) {
        ComPtr<IUnknown> answer, identity;
        const HRESULT result = object.CopyTo(id, reinterpret_cast<void**>(answer.GetAddressOf()));
        if (answer) answer.As(&identity);
        EXPECT_EQ(result == S_OK ? object.Get() : nullptr, identity.Get());
        return result;
    };
    EXPECT_EQ(S_OK, query(IID_IUnknown));
    EXPECT_EQ(S_OK, query(IID_IDispatch));
    EXPECT_EQ(S_OK, query(IID_IKivPageFactory));
    EXPECT_EQ(S_OK, query(IID_ISupportErrorInfo));
    EXPECT_EQ(E_NOINTERFACE, query(IID_IKivPageOwner));
    EXPECT_EQ(E_NOINTERFACE, query(IID_IMarshal));
    EXPECT_EQ(E_POINTER, object->QueryInterface(IID_IUnknown, nullptr));
}

TEST(ComObject, IsMadeWhereItCanBeHandedOut) {
    const Com com;
    ComPtr<IClassFactory> classObject;
    ::DllGetClassObject(CLSID_KivPageFactory, IID_PPV_ARGS(&classObject));
    const auto create = [&](IUnknown* outer, REFIID id) {
        void* object = &object;
        const HRESULT result = classObject->CreateInstance(outer, id, &object);
        EXPECT_EQ(nullptr, object);
        return result;
    };
    Double<> outer;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, create(&outer, IID_IUnknown)) << "as a part of another";
    EXPECT_EQ(E_NOINTERFACE, create(nullptr, IID_IKivPageOwner));
    EXPECT_EQ(E_POINTER, classObject->CreateInstance(nullptr, IID_IKivPageFactory, nullptr));
    const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemory);
    EXPECT_EQ(E_OUTOFMEMORY, create(nullptr, IID_IUnknown));
}

}  // namespace
