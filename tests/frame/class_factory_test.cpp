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

TEST(ClassFactory, IsOneForAClassAndKeepsTheLibraryLoaded) {
    {
        const auto object = ClassObject();
        EXPECT_EQ(object.Get(), ClassObject().Get());
        EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    }
    EXPECT_EQ(S_OK, ::DllCanUnloadNow()) << "the library's own reference does not count";
}

TEST(ClassFactory, KeepsTheLibraryLoadedThroughItsObjectsAndLocks) {
    ComPtr<IKivPageFactory> made;
    EXPECT_EQ(S_OK, ClassObject()->CreateInstance(nullptr, IID_PPV_ARGS(&made)));
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    EXPECT_EQ(S_OK, ClassObject()->LockServer(TRUE));
    made.Reset();
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    EXPECT_EQ(S_OK, ClassObject()->LockServer(FALSE));
    EXPECT_EQ(S_OK, ::DllCanUnloadNow());
}

void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

TEST(ClassFactory, IsThereForClassesOfTheLibraryOnly) {
    if (RanInAProcessOfItsOwn()) return;
    const auto request = [](REFCLSID classId, REFIID interfaceId) {
        void* object = &object;
        const HRESULT result = ::DllGetClassObject(classId, interfaceId, &object);
        EXPECT_EQ(nullptr, object);
        return result;
    };
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, request(CLSID_KivGraphicFactory, IID_IUnknown));
    {
        const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemory);
        EXPECT_EQ(E_OUTOFMEMORY, request(CLSID_KivPageFactory, IID_IClassFactory));
    }
    EXPECT_EQ(E_NOINTERFACE, request(CLSID_KivPageFactory, IID_IDispatch));
    EXPECT_EQ(E_POINTER, ::DllGetClassObject(CLSID_KivPageFactory, IID_IUnknown, nullptr));
}

}  // namespace
