// First calls do what later calls do not: each test is a process of its own.

#include <kitbag/registry/directories.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/text_folder.h>

namespace {

using kitbag::test::Pick;
using kitbag::test::Text;

/// What the faked system functions answer, and the title of the last dialog.
std::wstring executable, library, chosen, prompt;

template <class Ch>
DWORD WINAPI FakeModuleFile(HMODULE module, Ch* path, DWORD size) {
    const std::wstring& file = module ? library : executable;
    // As the system does it: a path that does not fit is cut off.
    std::copy_n(Text<Ch>(file.begin(), file.end()).c_str(),
                std::min<std::size_t>(file.size() + 1, size), path);
    return std::min(static_cast<DWORD>(file.size()), size);
}

template <class Ch, class Dialog>
ITEMIDLIST* WINAPI FakeDialog(Dialog* dialog) {
    const Text<Ch> title = dialog->lpszTitle;
    prompt.assign(title.begin(), title.end());
    return chosen.empty() ? nullptr : ::ILCreateFromPathW(chosen.c_str());
}

/// An executable at bin\sub\app.exe and the library at lib\Kitbag.dll, in a temporary folder.
template <class Ch>
struct Directories : testing::Test, kitbag::test::Com, kitbag::test::TextFolder<Ch> {
    Directories() {
        executable = (*this / "bin\\sub\\app.exe").wstring();
        library = (*this / "lib\\Kitbag.dll").wstring();
        for (const char* file : {"file", "films\\file", "bin\\file"}) this->Write(file);
    }
    /// What a getter answers; nothing where it answers false.
    static Text<Ch> Ask(bool (*get)(Text<Ch>&)) {
        Text<Ch> directory;
        return get(directory) ? directory : Text<Ch>();
    }

    kitbag::test::RawKey settings{"Directories"};
    kitbag::test::ImportPatch moduleFile{Pick<Ch>("GetModuleFileNameA", "GetModuleFileNameW"),
                                         FakeModuleFile<Ch>};
    kitbag::test::ImportPatch dialog{
        Pick<Ch>("SHBrowseForFolderA", "SHBrowseForFolderW"),
        Pick<Ch>(FakeDialog<char, BROWSEINFOA>, FakeDialog<wchar_t, BROWSEINFOW>)};
};
TYPED_TEST_SUITE(Directories, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(Directories, AreRememberedOrFoundAboveTheExecutable) {
    using Ch = TypeParam;
    for (const char* stored : {"films", "films\\"}) {
        KB(SetConfigDirectory)(this->In(stored));
        EXPECT_EQ(this->In("films\\"), this->Ask(KB(GetConfigDirectory)));
    }
    for (const char* found : {"Config", "bin\\Config"}) {
        KB(SetConfigDirectory)(this->In("file"));
        this->Write(std::string(found) + "\\file");
        EXPECT_EQ(this->In(found) + T("\\"), this->Ask(KB(GetConfigDirectory)));
        EXPECT_FALSE(this->settings.Has(L"Config Directory"));
    }
    EXPECT_EQ(this->In("bin\\Config\\"), this->Ask(KB(GetSkinDirectory)));
    this->Write("Skin\\file");
    EXPECT_EQ(this->In("Skin\\"), this->Ask(KB(GetSkinDirectory)));
    executable.insert(executable.rfind(L'\\') + 1, 260, L'x');
    EXPECT_EQ(T(""), this->Ask(KB(GetSkinDirectory)));
}

TYPED_TEST(Directories, AreFoundThroughLinks) {
    using Ch = TypeParam;
    this->WriteLink("bin\\Docs.lnk", (*this / "films").string());
    EXPECT_EQ(T(""), this->Ask(KB(GetDocDirectory)));
    this->WriteLink("bin\\DocsDocs.lnk", (*this / "films").string());
    // The 16-bit form cannot follow: it is handed 8-bit text.
    EXPECT_EQ(Pick<Ch>(this->In("films\\"), Text<Ch>()), this->Ask(KB(GetDocDirectory)));
}

TYPED_TEST(Directories, AreAskedForOnce) {
    using Ch = TypeParam;
    chosen = (*this / "films").wstring();
    EXPECT_EQ(this->In("films\\"), this->Ask(KB(GetDocDirectory)));
    EXPECT_EQ(L"Point me at the docs directory please", std::exchange(prompt, L""));
    EXPECT_EQ(chosen + L'\\', this->settings.TextOf(L"Docs Directory"));
    KB(SetDocDirectory)(this->In("gone"));
    EXPECT_EQ(T(""), this->Ask(KB(GetDocDirectory)));
    EXPECT_EQ(L"", prompt);
    chosen.clear();  // the user cancels
    EXPECT_EQ(T(""), this->Ask(KB(GetConfigDirectory)));
    EXPECT_EQ(L"Point me at the config directory please", prompt);
}

TYPED_TEST(Directories, OfDataAreCreatedOnceBesideTheLibrary) {
    using Ch = TypeParam;
    KB(SetDataDirectory)(this->In("file"));
    EXPECT_EQ(this->In("lib\\Data\\"), this->Ask(KB(GetDataDirectory)));
    EXPECT_EQ((*this / "lib\\Data\\").wstring(), this->settings.TextOf(L"Data Directory"));
    KB(SetDataDirectory)(this->In("gone\\"));
    EXPECT_EQ(T(""), this->Ask(KB(GetDataDirectory)));
    EXPECT_FALSE(this->Has("gone"));
}

TYPED_TEST(Directories, OfDataAreCreatedWhereTheyAreRemembered) {
    using Ch = TypeParam;
    KB(SetDataDirectory)(this->In("films\\old"));
    EXPECT_EQ(this->In("films\\old\\"), this->Ask(KB(GetDataDirectory)));
    EXPECT_TRUE(this->Has("films\\old\\"));
}

}  // namespace
