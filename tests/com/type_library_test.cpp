#include <kitbag/pages.h>
#include <tests/com/registration.h>
#include <tests/support/own_process.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;
using Microsoft::WRL::ComPtr;

constexpr char kEntry[] = "Classes\\TypeLib\\{158702B0-E0E4-4270-87FD-658F293BAE5E}\\1.0";
std::wstring libraryFile;
std::vector<std::wstring> asked;

DWORD WINAPI TellLibraryFile(HMODULE, LPWSTR path, DWORD) {
    return static_cast<DWORD>(libraryFile.copy(path, libraryFile.size()));
}
HRESULT WINAPI NoteFile(LPCOLESTR file, REGKIND kind, ITypeLib** library) {
    asked.emplace_back(file);
    return ::LoadTypeLibEx(file, kind, library);
}

/// The library seems to lie in a folder of the test's own.
struct TypeLibrary : Registration {
    TypeLibrary() {
        libraryFile = folder.In("Kitbag.dll");
        asked.clear();
    }

    /// The type library's resource, as a file.
    void WriteBeside() const {
        HMODULE library = ::GetModuleHandleA("Kitbag.dll");
        HRSRC resource = ::FindResourceA(library, MAKEINTRESOURCEA(1), "TYPELIB");
        const auto* data =
            static_cast<const char*>(::LockResource(::LoadResource(library, resource)));
        folder.Write("Kitbag.tlb", {data, ::SizeofResource(library, resource)});
    }

    const Com com;
    const TextFolder<wchar_t> folder;
    const ImportPatch file{"GetModuleFileNameW", TellLibraryFile};
    const ImportPatch load{"LoadTypeLibEx", NoteFile};
};

TEST_F(TypeLibrary, IsTheLibrarysOwnResource) {
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(::GetModuleHandleA("Kitbag.dll"), path, MAX_PATH);
    libraryFile = path;
    EXPECT_EQ(S_OK, ::DllRegisterServer());
    EXPECT_EQ(libraryFile, RawKey(std::string(kEntry) + "\\0\\win32").TextOf(nullptr));
    EXPECT_EQ(std::vector{libraryFile}, asked);
    EXPECT_EQ(S_OK, ::DllUnregisterServer());
    EXPECT_FALSE(RawKey::Exists(kEntry));
}

TEST_F(TypeLibrary, MayLieBesideTheLibrary) {
    WriteBeside();
    EXPECT_EQ(S_OK, ::DllRegisterServer());
    EXPECT_EQ(folder.In("Kitbag.tlb"), RawKey(std::string(kEntry) + "\\0\\win32").TextOf(nullptr));
    EXPECT_EQ(S_OK, ::DllUnregisterServer());
    EXPECT_FALSE(RawKey::Exists(kEntry));
}

TEST_F(TypeLibrary, IsNotLookedForWhereNoFileLiesBeside) {
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, ::DllUnregisterServer());
    EXPECT_EQ(std::vector{libraryFile}, asked);
    asked.clear();
    create_directory(folder / "Kitbag.tlb");
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, ::DllUnregisterServer());
    EXPECT_EQ(std::vector{libraryFile}, asked) << "a folder of that name";
}

TEST_F(TypeLibrary, IsNotFoundWhereTheLibrarysFileIsUnknown) {
    libraryFile.clear();
    EXPECT_EQ(E_FAIL, ::DllUnregisterServer());
    EXPECT_TRUE(asked.empty());
}

void* WINAPI FindNothing(HMODULE, LPCSTR) { return nullptr; }

TEST_F(TypeLibrary, IsTakenBackByAFunctionThatMayBeMissing) {
    const ImportPatch missing("GetProcAddress", FindNothing);
    EXPECT_EQ(TYPE_E_DLLFUNCTIONNOTFOUND, ::DllUnregisterServer());
}

HRESULT Describe(IKivPageFactory* factory) {
    return factory->GetTypeInfo(0, 0, ComPtr<ITypeInfo>().GetAddressOf());
}
void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

TEST_F(TypeLibrary, DescribesAnInterfaceOnceItIsFound) {
    if (RanInAProcessOfItsOwn()) return;
    ComPtr<IKivPageFactory> factory;
    ASSERT_TRUE(KB_CreateKivPageFactory(&factory));
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, Describe(factory.Get()));
    WriteBeside();
    {
        const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemory);
        EXPECT_EQ(E_OUTOFMEMORY, Describe(factory.Get()));
    }
    EXPECT_EQ(S_OK, Describe(factory.Get()));
    asked.clear();
    EXPECT_EQ(S_OK, Describe(factory.Get()));
    EXPECT_TRUE(asked.empty()) << "it is kept";
}

}  // namespace
