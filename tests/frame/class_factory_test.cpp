#include <kitbag/pages.h>
#include <olectl.h>
#include <tests/support/import_patch.h>
#include <tests/support/own_process.h>
#include <wrl/client.h>

namespace {

using namespace kitbag::test;
using Microsoft::WRL::ComPtr;

ComPtr<IClassFactory> ClassObject() {
    ComPtr<IClassFactory> object;
    EXPECT_EQ(S_OK, ::DllGetClassObject(CLSID_KivPageFactory, IID_PPV_ARGS(&object)));
    return object;
}

TEST(ClassFactory, IsTheSameAtEveryRequest) { EXPECT_EQ(ClassObject().Get(), ClassObject().Get()); }

TEST(ClassFactory, KeepsTheLibraryLoadedWhileItIsReferred) {
    EXPECT_EQ(S_OK, ::DllCanUnloadNow());
    {
        const auto object = ClassObject();
        EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
        const auto another = object;
        EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    }
    EXPECT_EQ(S_OK, ::DllCanUnloadNow()) << "the library's own reference does not count";
}

TEST(ClassFactory, KeepsTheLibraryLoadedThroughItsObjectsAndLocks) {
    ComPtr<IKivPageFactory> made;
    EXPECT_EQ(S_OK, ClassObject()->CreateInstance(nullptr, IID_PPV_ARGS(&made)));
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    made.Reset();
    EXPECT_EQ(S_OK, ::DllCanUnloadNow());
    EXPECT_EQ(S_OK, ClassObject()->LockServer(TRUE));
    EXPECT_EQ(S_OK, ClassObject()->LockServer(TRUE));
    EXPECT_EQ(S_OK, ClassObject()->LockServer(FALSE));
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    EXPECT_EQ(S_OK, ClassObject()->LockServer(FALSE));
    EXPECT_EQ(S_OK, ::DllCanUnloadNow());
}

TEST(ClassFactory, IsThereForClassesOfTheLibraryOnly) {
    void* object = &object;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE,
              ::DllGetClassObject(CLSID_KivGraphicFactory, IID_IUnknown, &object));
    EXPECT_EQ(nullptr, object);
    object = &object;
    EXPECT_EQ(E_NOINTERFACE, ::DllGetClassObject(CLSID_KivPageFactory, IID_IDispatch, &object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(E_POINTER, ::DllGetClassObject(CLSID_KivPageFactory, IID_IUnknown, nullptr));
}

void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

TEST(ClassFactory, IsMadeWhenMemoryIsThereAgain) {
    if (RanInAProcessOfItsOwn()) return;
    {
        const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemory);
        void* object = &object;
        EXPECT_EQ(E_OUTOFMEMORY,
                  ::DllGetClassObject(CLSID_KivPageFactory, IID_IClassFactory, &object));
        EXPECT_EQ(nullptr, object);
    }
    EXPECT_NE(nullptr, ClassObject().Get());
}

}  // namespace
