#include <kitbag/frame/win_string.h>
#include <tests/pages/doubles.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

#include <filesystem>
#include <thread>

namespace {

using namespace kitbag::test;

/// One load of the library, the process's own or a copy's.
class Library {
 public:
    explicit Library(const char* file = "Kitbag.dll") : module_(::LoadLibraryA(file)) {}
    ~Library() { ::FreeLibrary(module_); }

    std::string File() const {
        char path[MAX_PATH];
        return {path, ::GetModuleFileNameA(module_, path, sizeof path)};
    }
    HRESULT CanUnload() const { return Call<HRESULT WINAPI()>("DllCanUnloadNow"); }
    template <class Interface>
    HRESULT GetClass(REFCLSID id, Interface** object) const {
        return Call<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject", id,
                                                              IID_PPV_ARGS(object));
    }

 private:
    template <class Function, class... Arguments>
    HRESULT Call(const char* name, Arguments&&... arguments) const {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(::GetProcAddress(module_, name)))(arguments...);
    }

    HMODULE module_;
};

TEST(ClassObject, CreatesFactoriesThatKeepTheLibraryLoaded) {
    const Library library;
    ComPtr<IClassFactory> classObject, again;
    ASSERT_EQ(S_OK, library.GetClass(CLSID_KivPageFactory, classObject.GetAddressOf()));
    EXPECT_EQ(S_FALSE, library.CanUnload());
    EXPECT_EQ(S_OK, library.GetClass(CLSID_KivPageFactory, again.GetAddressOf()));
    EXPECT_EQ(classObject, again);
    ComPtr<IKivPageFactory> factory;
    EXPECT_EQ(S_OK, classObject->CreateInstance(nullptr, IID_PPV_ARGS(&factory)));
    classObject->LockServer(TRUE);
    classObject.Reset();
    again.Reset();
    EXPECT_EQ(S_FALSE, library.CanUnload());
    factory.Reset();
    EXPECT_EQ(S_FALSE, library.CanUnload());
    library.GetClass(CLSID_KivPageFactory, again.GetAddressOf());
    again->LockServer(FALSE);
    again.Reset();
    EXPECT_EQ(S_OK, library.CanUnload());
}

TEST(ClassObject, RefusesWhatItCannotCreate) {
    const Library library;
    Double<> outer;
    ComPtr<IUnknown> none = &outer;
    ComPtr<IClassFactory> classObject;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, library.GetClass(IID_NULL, classObject.GetAddressOf()));
    EXPECT_EQ(E_POINTER, library.GetClass<IUnknown>(CLSID_KivPageFactory, nullptr));
    ASSERT_EQ(S_OK, library.GetClass(CLSID_KivPageFactory, classObject.GetAddressOf()));
    EXPECT_EQ(CLASS_E_NOAGGREGATION, classObject->CreateInstance(&outer, IID_PPV_ARGS(&none)));
    EXPECT_EQ(nullptr, none);
    EXPECT_EQ(E_POINTER, classObject->CreateInstance(nullptr, IID_IUnknown, nullptr));
}

TEST(ClassObject, GoesWithTheLibrary) {
    const TemporaryFolder folder;
    const std::string copy = (folder / "Second.dll").string();
    std::filesystem::copy_file(Library().File(), copy);
    TraceCapture trace;
    ComPtr<ITypeLib> typeLibrary;
    {
        const Library library(copy.c_str());
        ComPtr<IClassFactory> classObject;
        ComPtr<IDispatch> factory;
        ComPtr<ITypeInfo> info;
        UINT index = 0;
        ASSERT_EQ(S_OK, library.GetClass(CLSID_KivPageFactory, classObject.GetAddressOf()));
        ASSERT_EQ(S_OK, classObject->CreateInstance(nullptr, IID_PPV_ARGS(&factory)));
        EXPECT_EQ(DISP_E_BADINDEX, factory->GetTypeInfo(1, 0, &info));
        ASSERT_EQ(S_OK, factory->GetTypeInfo(0, 0, &info));
        ASSERT_EQ(S_OK, info->GetContainingTypeLib(&typeLibrary, &index));
        classObject->LockServer(TRUE);
    }
    trace.Expect({"Kitbag attaching to process\n",
                  "Kitbag detaching from process, 1 outstanding references\n"});
    // Up to here the library held the description of its interface.
    EXPECT_EQ(0u, typeLibrary.Detach()->Release());
}

TEST(Creation, ComplainsOnceAboutAThreadWithoutCom) {
    std::thread([] {
        TraceCapture trace;
        TWinString<char> complaint;
        complaint.Format("KB_CreateKivPageFactory - Thread 0x%08X should call CoInitialise\n",
                         static_cast<unsigned>(::GetCurrentThreadId()));
        ComPtr<IKivPageFactory> factory;
        EXPECT_FALSE(KB_CreateKivPageFactory(nullptr));
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory));
        EXPECT_TRUE(KB_CreateKivPageFactory(&factory));
        trace.Expect({complaint});
    }).join();
}

}  // namespace
