#include <tests/pages/doubles.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

#include <cstdio>
#include <thread>

namespace {

using namespace kitbag::test;

/// One load of the library, the process's own or a copy's.
class Library {
 public:
    explicit Library(const std::string& file = "Kitbag.dll")
        : module_(::LoadLibraryA(file.c_str())) {}
    ~Library() { ::FreeLibrary(module_); }

    std::string File() const {
        char path[MAX_PATH];
        ::GetModuleFileNameA(module_, path, sizeof path);
        return path;
    }
    template <class Function>
    Function* Find(const char* name) const {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(::GetProcAddress(module_, name)));
    }
    bool CanUnload() const {
        const HRESULT result = Find<HRESULT WINAPI()>("DllCanUnloadNow")();
        EXPECT_TRUE(result == S_OK || result == S_FALSE);
        return result == S_OK;
    }
    template <class Interface>
    HRESULT GetClass(REFCLSID id, Interface** object) const {
        return Find<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject")(
            id, IID_PPV_ARGS(object));
    }

 private:
    HMODULE module_;
};

TEST(ClassObject, CreatesFactoriesThatKeepTheLibraryLoaded) {
    const Library library;
    ComPtr<IClassFactory> classObject, again;
    ASSERT_EQ(S_OK, library.GetClass(CLSID_KivPageFactory, classObject.GetAddressOf()));
    EXPECT_FALSE(library.CanUnload());
    EXPECT_EQ(S_OK, library.GetClass(CLSID_KivPageFactory, again.GetAddressOf()));
    EXPECT_EQ(classObject, again);

    ComPtr<IKivPageFactory> factory;
    EXPECT_EQ(S_OK, classObject->CreateInstance(nullptr, IID_PPV_ARGS(&factory)));
    Double<> outer;
    void* none = &outer;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, classObject->CreateInstance(&outer, IID_IUnknown, &none));
    EXPECT_EQ(nullptr, std::exchange(none, &outer));
    EXPECT_EQ(E_NOINTERFACE, classObject->CreateInstance(nullptr, IID_IStream, &none));
    EXPECT_EQ(nullptr, none);
    EXPECT_EQ(E_POINTER, classObject->CreateInstance(nullptr, IID_IUnknown, nullptr));

    classObject.Reset();
    EXPECT_FALSE(library.CanUnload());
    again->LockServer(TRUE);
    factory.Reset();
    again.Reset();
    EXPECT_FALSE(library.CanUnload());
    // The map still holds the class object.
    library.GetClass(CLSID_KivPageFactory, again.GetAddressOf());
    again->LockServer(FALSE);
    again.Reset();
    EXPECT_TRUE(library.CanUnload());
}

TEST(ClassObject, IsThereForTheLibrarysOwnClassesOnly) {
    const Library library;
    Double<> object;
    auto* out = static_cast<IClassFactory*>(static_cast<void*>(&object));
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, library.GetClass(CLSID_KivGraphicFactory, &out));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(E_POINTER, library.GetClass<IClassFactory>(CLSID_KivPageFactory, nullptr));
    IStream* wrong = nullptr;
    EXPECT_EQ(E_NOINTERFACE, library.GetClass(CLSID_KivPageFactory, &wrong));
    EXPECT_TRUE(library.CanUnload());
}

TEST(ClassObject, GoesWithTheLibrary) {
    const TemporaryFolder folder;
    const std::string copy = (folder / "Second.dll").string();
    ASSERT_TRUE(::CopyFileA(Library().File().c_str(), copy.c_str(), TRUE));
    TraceCapture trace;
    ComPtr<ITypeLib> typeLibrary;
    {
        const Library library(copy);
        ComPtr<IClassFactory> classObject;
        ComPtr<IKivPageFactory> factory;
        ASSERT_EQ(S_OK, library.GetClass(CLSID_KivPageFactory, classObject.GetAddressOf()));
        ASSERT_EQ(S_OK, classObject->CreateInstance(nullptr, IID_PPV_ARGS(&factory)));
        ComPtr<ITypeInfo> info;
        UINT index = 0;
        ASSERT_EQ(S_OK, factory->GetTypeInfo(0, 0, &info));
        ASSERT_EQ(S_OK, info->GetContainingTypeLib(&typeLibrary, &index));
        classObject->LockServer(TRUE);
    }
    trace.Expect({"Kitbag attaching to process\n",
                  "Kitbag detaching from process, 1 outstanding references\n"});
    // The library held the description of its interface until it was unloaded.
    EXPECT_EQ(0u, typeLibrary.Detach()->Release());
}

/// What one of the creation functions traces on a thread of its own.
template <class Interface>
std::vector<std::string> TraceOf(bool (*create)(Interface**), DWORD apartment) {
    TraceCapture trace;
    char message[100] = "";
    std::thread([&] {
        if (apartment) ::CoInitializeEx(nullptr, apartment);
        std::sprintf(message, " - Thread 0x%08X should call CoInitialise\n",
                     static_cast<unsigned>(::GetCurrentThreadId()));
        ComPtr<Interface> object;
        create(object.GetAddressOf());
        object.Reset();
        if (apartment) ::CoUninitialize();
        // Balanced where the thread had its apartment, left initialised otherwise.
        EXPECT_EQ(apartment ? S_OK : S_FALSE, ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    }).join();
    std::vector<std::string> lines = trace.Lines();
    for (std::string& line : lines)
        if (const auto at = line.find(message); at != line.npos) line.resize(at);
    return lines;
}

TEST(Creation, InitialisesComForThreadsThatDidNot) {
    using Lines = std::vector<std::string>;
    const auto expected = [](const char* line) { return kDiagnostic ? Lines{line} : Lines{}; };
    EXPECT_EQ(expected("KB_CreateKivPageFactory"), TraceOf(KB_CreateKivPageFactory, 0));
    EXPECT_EQ(expected("CKitbag::KB_CreateGraphicFactory"), TraceOf(KB_CreateGraphicFactory, 0));
    EXPECT_EQ(Lines{}, TraceOf(KB_CreateKivPageFactory, COINIT_APARTMENTTHREADED));
    EXPECT_EQ(Lines{}, TraceOf(KB_CreateGraphicFactory, COINIT_APARTMENTTHREADED));
    EXPECT_FALSE(KB_CreateKivPageFactory(nullptr));
}

}  // namespace
