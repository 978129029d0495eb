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
    const IID all[] = {IID_IUnknown,          IID_IDispatch,     IID_IKivPageFactory,
                       IID_ISupportErrorInfo, IID_IKivPageOwner, IID_IClassFactory,
                       IID_IClassFactory2,    IID_IMarshal};
    const struct {
        const char* about;
        IUnknown* object;
        const char* answers;  // for each of all
    } rows[] = {{"page factory", factory.Get(), "yyyynnnn"},
                {"page owner", owner.Get(), "ynnnynnn"},
                {"class object", classObject.Get(), "ynnnnynn"}};
    for (const auto& [about, object, answers] : rows) {
        for (std::size_t i = 0; i < std::size(all); ++i) {
            SCOPED_TRACE(testing::Message() << about << ", interface " << i);
            ComPtr<IUnknown> answer, identity, same;
            EXPECT_EQ(
                answers[i] == 'y' ? S_OK : E_NOINTERFACE,
                object->QueryInterface(all[i], reinterpret_cast<void**>(answer.GetAddressOf())));
            EXPECT_EQ(answers[i] == 'y', answer.Get() != nullptr);
            if (!answer) continue;
            object->QueryInterface(IID_PPV_ARGS(&identity));
            answer->QueryInterface(IID_PPV_ARGS(&same));
            EXPECT_EQ(identity.Get(), same.Get()) << "one object has one identity";
        }
        EXPECT_EQ(E_POINTER, object->QueryInterface(IID_IUnknown, nullptr)) << about;
    }
}

void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

TEST_F(ComObject, IsMadeWhereItCanBeHandedOut) {
    Double<> outer;
    const auto create = [&](IUnknown* whole, REFIID id) {
        void* object = &object;
        const HRESULT result = classObject->CreateInstance(whole, id, &object);
        EXPECT_EQ(nullptr, object);
        return result;
    };
    EXPECT_EQ(CLASS_E_NOAGGREGATION, create(&outer, IID_IUnknown)) << "as a part of another";
    EXPECT_EQ(E_NOINTERFACE, create(nullptr, IID_IKivPageOwner));
    EXPECT_EQ(E_POINTER, classObject->CreateInstance(nullptr, IID_IKivPageFactory, nullptr));
    const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemory);
    EXPECT_EQ(E_OUTOFMEMORY, create(nullptr, IID_IUnknown));
}

}  // namespace
