#include <kitbag/pages.h>
#include <olectl.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;

struct ComObject : testing::Test {
    ComObject() {
        EXPECT_EQ(S_OK, ::DllGetClassObject(CLSID_KivPageFactory, IID_PPV_ARGS(&classObject)));
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory));
        factory->AddPage(_bstr_t(L"0"), nullptr);
        userInterface.create = [this](IKivPageOwner* given, auto...) {
            return owner = given, S_OK;
        };
        EXPECT_EQ(S_OK, factory->CreatePage(0, &userInterface, nullptr, nullptr));
    }

    const Com com;
    ComPtr<IClassFactory> classObject;
    ComPtr<IKivPageFactory> factory;
    UserInterface userInterface;
    ComPtr<IKivPageOwner> owner;
};

TEST_F(ComObject, AnswersForItsInterfacesAndForNoOther) {
    struct {
        const char* about;
        IUnknown* object;
        std::vector<IID> expected;
    } const rows[] = {
        {"page factory",
         factory.Get(),
         {IID_IUnknown, IID_IDispatch, IID_IKivPageFactory, IID_ISupportErrorInfo}},
        {"page owner", owner.Get(), {IID_IUnknown, IID_IKivPageOwner}},
        {"class object", classObject.Get(), {IID_IUnknown, IID_IClassFactory}},
    };
    const IID all[] = {IID_IUnknown,          IID_IDispatch,      IID_IKivPageFactory,
                       IID_ISupportErrorInfo, IID_IKivPageOwner,  IID_IKivUserInterface,
                       IID_IClassFactory,     IID_IClassFactory2, IID_IMarshal};
    for (const auto& [about, object, expected] : rows) {
        ComPtr<IUnknown> identity;
        object->QueryInterface(IID_PPV_ARGS(&identity));
        for (const IID& id : all) {
            SCOPED_TRACE(testing::Message() << about << ", interface " << &id - all);
            void* answer = &answer;
            const bool isExpected = std::ranges::find(expected, id) != expected.end();
            EXPECT_EQ(isExpected ? S_OK : E_NOINTERFACE, object->QueryInterface(id, &answer));
            EXPECT_EQ(isExpected, answer != nullptr);
            if (!answer) continue;
            ComPtr<IUnknown> same;
            static_cast<IUnknown*>(answer)->QueryInterface(IID_PPV_ARGS(&same));
            EXPECT_EQ(identity.Get(), same.Get()) << "one object has one identity";
            static_cast<IUnknown*>(answer)->Release();
        }
        EXPECT_EQ(E_POINTER, object->QueryInterface(IID_IUnknown, nullptr)) << about;
    }
}

TEST_F(ComObject, CountsItsReferences) {
    EXPECT_EQ(2u, factory->AddRef());
    EXPECT_EQ(3u, factory->AddRef());
    EXPECT_EQ(2u, factory->Release());
    EXPECT_EQ(1u, factory->Release());
    EXPECT_EQ(0u, factory.Detach()->Release());
}

TEST_F(ComObject, IsNoPartOfAnotherObject) {
    Double<> outer;
    void* object = &object;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, classObject->CreateInstance(&outer, IID_IUnknown, &object));
    EXPECT_EQ(nullptr, object);
}

TEST_F(ComObject, IsNotMadeForNothing) {
    EXPECT_EQ(E_POINTER, classObject->CreateInstance(nullptr, IID_IKivPageFactory, nullptr));
    void* object = &object;
    EXPECT_EQ(E_NOINTERFACE, classObject->CreateInstance(nullptr, IID_IKivPageOwner, &object));
    EXPECT_EQ(nullptr, object);
}

void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

TEST_F(ComObject, IsNotMadeWithoutMemory) {
    const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemory);
    void* object = &object;
    EXPECT_EQ(E_OUTOFMEMORY, classObject->CreateInstance(nullptr, IID_IUnknown, &object));
    EXPECT_EQ(nullptr, object);
}

}  // namespace
