// First calls do what later calls do not: each test is a process of its own.

#include <kitbag/registry/directories.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;

/// Where the modules lie, and the title of the last folder dialog.
std::wstring folder, prompt;

template <class Ch>
DWORD WINAPI FakeModuleFile(HMODULE module, Ch* path, DWORD) {
    const auto file = folder + (module ? L"\\lib\\Kitbag.dll" : L"\\bin\\sub\\app.exe");
    *std::copy(file.begin(), file.end(), path) = Ch{};
    return file.size();
}

template <class Dialog>
ITEMIDLIST* WINAPI FakeDialog(Dialog* dialog) {
    const std::basic_string title(dialog->lpszTitle);
    prompt.assign(title.begin(), title.end());
    return ::ILCreateFromPathW((folder + L"\\films").c_str());
}

/// Some files, and none of the directories that the library looks for.
template <class Ch>
struct Directories : testing::Test, Com, TextFolder<Ch> {
    Directories() {
        folder = this->Path().wstring();
        for (const char* file : {"file", "films\\file", "bin\\file"}) this->Write(file);
    }
    /// What a getter answers; nothing where it answers false.
    static Text<Ch> Ask(bool (*get)(Text<Ch>&)) {
        Text<Ch> directory;
        return get(directory) ? directory : Text<Ch>();
    }

    ImportPatch files{Pick<Ch>("GetModuleFileNameA", "GetModuleFileNameW"), FakeModuleFile<Ch>};
    ImportPatch dialog{Pick<Ch>("SHBrowseForFolderA", "SHBrowseForFolderW"),
                       Pick<Ch>(FakeDialog<BROWSEINFOA>, FakeDialog<BROWSEINFOW>)};
};
TYPED_TEST_SUITE(Directories, TextForms, TextFormName);

TYPED_TEST(Directories, AreFoundAboveTheExecutable) {
    using Ch = TypeParam;
    Exports<Ch>::SetConfigDirectory(this->In("file"));
    this->Write("bin\\Config\\file");
    EXPECT_EQ(this->In("bin\\Config\\"), this->Ask(Exports<Ch>::GetConfigDirectory));
    EXPECT_FALSE(RawKey("Directories").Has(L"Config Directory"));
    EXPECT_EQ(this->In("bin\\Config\\"), this->Ask(Exports<Ch>::GetSkinDirectory));
    this->Write("Skin\\file");
    EXPECT_EQ(this->In("Skin\\"), this->Ask(Exports<Ch>::GetSkinDirectory));
}

TYPED_TEST(Directories, AreCreatedOrAskedForOnceAndRemembered) {
    using Ch = TypeParam;
    EXPECT_EQ(this->In("lib\\Data\\"), this->Ask(Exports<Ch>::GetDataDirectory));
    EXPECT_EQ(this->In("lib\\Data\\"), this->Ask(Exports<Ch>::GetDataDirectory));
    EXPECT_EQ(folder + L"\\lib\\Data\\", RawKey("Directories").TextOf(L"Data Directory"));
    Exports<Ch>::SetDataDirectory(this->In("gone\\"));
    EXPECT_EQ(""_t, this->Ask(Exports<Ch>::GetDataDirectory));

    EXPECT_EQ(this->In("films\\"), this->Ask(Exports<Ch>::GetDocDirectory));
    EXPECT_EQ(L"Point me at the docs directory please", prompt);
    EXPECT_EQ(folder + L"\\films\\", RawKey("Directories").TextOf(L"Docs Directory"));
    Exports<Ch>::SetDocDirectory(this->In("gone"));
    this->WriteLink("bin\\Docs.lnk", (*this / "films").string());
    EXPECT_EQ(""_t, this->Ask(Exports<Ch>::GetDocDirectory));
    this->WriteLink("bin\\DocsDocs.lnk", (*this / "films").string());
    // The 16-bit form cannot follow: it is handed 8-bit text.
    EXPECT_EQ(Pick<Ch>(this->In("films\\"), Text<Ch>()), this->Ask(Exports<Ch>::GetDocDirectory));
}

}  // namespace
