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
    EXPECT_EQ(S_OK, object->CreateInstance(nullptr, IID_PPV_ARGS(&made)));
    object.Reset();
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow()) << "an object";
    made.Reset();
    EXPECT_EQ(S_OK, ClassObject()->LockServer(TRUE));
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow()) << "a lock";
    EXPECT_EQ(S_OK, ClassObject()->LockServer(FALSE));
    EXPECT_EQ(S_OK, ::DllCanUnloadNow()) << "nothing any more";
}

void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

/// What is refused must leave null.
HRESULT Refused(auto call) {
    void* object = &object;
    const HRESULT result = call(&object);
    EXPECT_EQ(nullptr, object);
    return result;
}
HRESULT Ask(REFCLSID classId, REFIID id) {
    return Refused([&](void** object) { return ::DllGetClassObject(classId, id, object); });
}
HRESULT Make(IUnknown* outer, REFIID id) {
    return Refused([&](void** to) { return ClassObject()->CreateInstance(outer, id, to); });
}

TEST(ClassFactory, IsThereForClassesOfTheLibraryOnly) {
    if (RanInAProcessOfItsOwn()) return;
    {
        const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemory);
        EXPECT_EQ(E_OUTOFMEMORY, Ask(CLSID_KivPageFactory, IID_IClassFactory));
    }
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, Ask(CLSID_KivGraphicFactory, IID_IUnknown));
    EXPECT_EQ(E_NOINTERFACE, Ask(CLSID_KivPageFactory, IID_IDispatch));
    EXPECT_EQ(E_POINTER, ::DllGetClassObject(CLSID_KivPageFactory, IID_IUnknown, nullptr));
}

TEST(ClassFactory, MakesWhatCanBeHandedOut) {
    EXPECT_EQ(CLASS_E_NOAGGREGATION, Make(ClassObject().Get(), IID_IUnknown));
    EXPECT_EQ(E_NOINTERFACE, Make(nullptr, IID_IKivPageOwner));
    EXPECT_EQ(E_POINTER, ClassObject()->CreateInstance(nullptr, IID_IKivPageFactory, nullptr));
    EXPECT_EQ(E_POINTER, ClassObject()->QueryInterface(IID_IUnknown, nullptr));
    const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemory);
    EXPECT_EQ(E_OUTOFMEMORY, Make(nullptr, IID_IUnknown));
}

}  // namespace
