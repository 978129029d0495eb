#include <kitbag/pages.h>
#include <tests/com/registration.h>
#include <tests/support/own_process.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;
using Microsoft::WRL::ComPtr;

const auto realFile = std::filesystem::path(_pgmptr).replace_filename("Kitbag.dll");
std::wstring libraryFile;
using Files = std::vector<std::wstring>;
Files asked;

DWORD WINAPI TellLibraryFile(HMODULE, LPWSTR path, DWORD) {
    return static_cast<DWORD>(libraryFile.copy(path, libraryFile.size()));
}
HRESULT WINAPI NoteFile(LPCOLESTR file, REGKIND kind, ITypeLib** library) {
    asked.emplace_back(file);
    return ::LoadTypeLibEx(file, kind, library);
}

/// The library seems to lie in a folder of the test's own.
struct TypeLibrary : Registration {
    TypeLibrary() { libraryFile = folder.In("Kitbag.dll"); }

    static Files Asked() { return std::exchange(asked, {}); }

    const Com com;
    const TextFolder<wchar_t> folder;
    const ImportPatch file{"GetModuleFileNameW", TellLibraryFile};
    const ImportPatch load{"LoadTypeLibEx", NoteFile};
};

TEST_F(TypeLibrary, IsTheLibrarysOwnResourceOrLiesBesideIt) {
    const std::string entry = "Classes\\TypeLib\\{158702B0-E0E4-4270-87FD-658F293BAE5E}\\1.0";
    const std::pair<std::wstring, Files> rows[] = {
        {realFile, {realFile}},
        {libraryFile, {libraryFile, folder.In("Kitbag.tlb")}},
    };
    // The library's file is a file with a type library, too.
    copy_file(realFile, folder / "Kitbag.tlb");
    for (const auto& [from, lookedFor] : rows) {
        libraryFile = from;
        EXPECT_EQ(S_OK, ::DllRegisterServer());
        EXPECT_EQ(lookedFor, Asked());
        EXPECT_EQ(lookedFor.back(), RawKey(entry + "\\0\\win32").TextOf(nullptr));
        EXPECT_EQ(S_OK, ::DllUnregisterServer());
        EXPECT_FALSE(RawKey::Exists(entry)) << entry;
        Asked();
    }
}

void* WINAPI FindNothing(HMODULE, LPCSTR) { return nullptr; }

TEST_F(TypeLibrary, IsNotLookedForWhereItCannotBe) {
    create_directory(folder / "Kitbag.tlb");
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, ::DllUnregisterServer()) << "a folder of that name";
    EXPECT_EQ(Files{libraryFile}, Asked());
    remove(folder / "Kitbag.tlb");
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, ::DllUnregisterServer()) << "no such file";
    EXPECT_EQ(Files{libraryFile}, Asked());
    libraryFile.clear();
    EXPECT_EQ(E_FAIL, ::DllUnregisterServer()) << "the library's file is unknown";
    const ImportPatch missing("GetProcAddress", FindNothing);
    EXPECT_EQ(TYPE_E_DLLFUNCTIONNOTFOUND, ::DllUnregisterServer()) << "no UnRegisterTypeLib";
    EXPECT_EQ(Files(), Asked());
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
    copy_file(realFile, folder / "Kitbag.tlb");
    {
        const ImportPatch memory("_ZnwjRKSt9nothrow_t", NoMemory);
        EXPECT_EQ(E_OUTOFMEMORY, Describe(factory.Get()));
    }
    EXPECT_EQ(S_OK, Describe(factory.Get()));
    Asked();
    EXPECT_EQ(S_OK, Describe(factory.Get()));
    EXPECT_EQ(Files(), Asked()) << "it is kept";
}

}  // namespace
