#include <kitbag/frame/win_string.h>
#include <tests/pages/doubles.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

namespace {

using namespace kitbag::test;

ComPtr<IClassFactory> ClassObject() {
    ComPtr<IClassFactory> object;
    EXPECT_EQ(S_OK, ::DllGetClassObject(CLSID_KivPageFactory, IID_PPV_ARGS(&object)));
    return object;
}

TEST(ClassObject, KeepsTheLibraryLoadedAsFactoriesAndLocksDo) {
    auto classObject = ClassObject();
    EXPECT_EQ(classObject, ClassObject());
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    ComPtr<IKivPageFactory> factory;
    EXPECT_EQ(S_OK, classObject->CreateInstance(nullptr, IID_PPV_ARGS(&factory)));
    classObject.Reset();
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    ClassObject()->LockServer(TRUE);
    factory.Reset();
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    ClassObject()->LockServer(FALSE);
    EXPECT_EQ(S_OK, ::DllCanUnloadNow());
}

TEST(ClassObject, RefusesWhatItCannotCreate) {
    Double<> outer;
    void* out = &outer;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, ::DllGetClassObject(IID_NULL, IID_IUnknown, &out));
    EXPECT_EQ(nullptr, std::exchange(out, &outer));
    EXPECT_EQ(CLASS_E_NOAGGREGATION, ClassObject()->CreateInstance(&outer, IID_IUnknown, &out));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(E_POINTER, ::DllGetClassObject(CLSID_KivPageFactory, IID_IUnknown, nullptr));
    EXPECT_EQ(E_POINTER, ClassObject()->CreateInstance(nullptr, IID_IUnknown, nullptr));
}

TEST(ClassObject, GoesWithTheLibrary) {
    const TemporaryFolder folder;
    const std::string copy = (folder / "Second.dll").string();
    char file[MAX_PATH];
    ::GetModuleFileNameA(::GetModuleHandleA("Kitbag.dll"), file, sizeof file);
    ::CopyFileA(file, copy.c_str(), TRUE);
    TraceCapture trace;
    HMODULE library = ::LoadLibraryA(copy.c_str());
    const auto getClass = reinterpret_cast<decltype(&::DllGetClassObject)>(
        reinterpret_cast<void*>(::GetProcAddress(library, "DllGetClassObject")));
    ComPtr<IClassFactory> classObject;
    ComPtr<ITypeInfo> info;
    IDispatch* living = nullptr;
    ASSERT_EQ(S_OK, getClass(CLSID_KivPageFactory, IID_PPV_ARGS(&classObject)));
    ASSERT_EQ(S_OK, classObject->CreateInstance(nullptr, IID_PPV_ARGS(&living)));
    EXPECT_EQ(DISP_E_BADINDEX, living->GetTypeInfo(1, 0, &info));
    ASSERT_EQ(S_OK, living->GetTypeInfo(0, 0, &info));
    classObject.Reset();
    ::FreeLibrary(library);
    trace.Expect({"Kitbag attaching to process\n",
                  "Kitbag detaching from process, 1 outstanding references\n"});
    // Up to here the library held the description of its interface.
    EXPECT_EQ(0u, info.Detach()->Release());
}

TEST(Creation, ComplainsOnceAboutAThreadWithoutCom) {
    TraceCapture trace;
    ComPtr<IKivPageFactory> factory;
    EXPECT_FALSE(KB_CreateKivPageFactory(nullptr));
    EXPECT_TRUE(KB_CreateKivPageFactory(&factory));
    EXPECT_TRUE(KB_CreateKivPageFactory(&factory));
    TWinString<char> complaint;
    complaint.Format("KB_CreateKivPageFactory - Thread 0x%08X should call CoInitialise\n",
                     ::GetCurrentThreadId());
    trace.Expect({complaint});
}

}  // namespace
