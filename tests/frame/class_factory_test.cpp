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

TEST(ClassFactory, IsOneForItsClassAndKeepsTheLibraryLoadedWithItsObjectsAndLocks) {
    EXPECT_EQ(ClassObject().Get(), ClassObject().Get());
    EXPECT_EQ(S_OK, ::DllCanUnloadNow()) << "the library's own reference does not count";
    ComPtr<IClassFactory> object = ClassObject();
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow()) << "a reference";
    ComPtr<IKivPageFactory> made;
    EXPECT_EQ(S_OK, std::exchange(object, {})->CreateInstance(nullptr, IID_PPV_ARGS(&made)));
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow()) << "an object";
    made.Reset();
    EXPECT_EQ(S_OK, ClassObject()->LockServer(TRUE));
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow()) << "a lock";
    EXPECT_EQ(S_OK, ClassObject()->LockServer(FALSE));
    EXPECT_EQ(S_OK, ::DllCanUnloadNow()) << "nothing any more";
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
