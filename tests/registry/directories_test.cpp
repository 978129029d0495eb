// First calls do what later calls do not: each test is a process of its own.

#include <kitbag/registry/directories.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/shell_links.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/text_forms.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

using kitbag::test::ImportPatch;
using kitbag::test::Pick;
using kitbag::test::RawKey;
using kitbag::test::Text;

/// What the faked system functions answer, and what they were asked.
struct World {
    std::wstring executable;
    std::wstring library;
    std::wstring chosen;
    std::wstring prompt;
    int dialogs = 0;
};
World world;

template <class Ch>
DWORD WINAPI FakeModuleFile(HMODULE module, Ch* path, DWORD size) {
    const std::wstring& file = module ? world.library : world.executable;
    EXPECT_TRUE(!module || module == ::GetModuleHandleA("Kitbag.dll"));
    EXPECT_EQ(DWORD{MAX_PATH}, size);
    // As the system does it: a path that does not fit is cut off.
    const auto text = (file + L'\0').substr(0, size);
    std::transform(text.begin(), text.end(), path, [](wchar_t c) { return static_cast<Ch>(c); });
    return static_cast<DWORD>(std::min<std::size_t>(file.size(), size));
}

template <class Ch, class Dialog>
ITEMIDLIST* WINAPI FakeDialog(Dialog* dialog) {
    ++world.dialogs;
    const std::basic_string<Ch> title(dialog->lpszTitle);
    world.prompt.assign(title.begin(), title.end());
    return world.chosen.empty() ? nullptr : ::ILCreateFromPathW(world.chosen.c_str());
}

/// An executable at bin\sub\app.exe and the library at lib\Kitbag.dll, in a temporary folder.
template <class Ch>
class Directories : public testing::Test {
 protected:
    Directories() { world = {In("bin\\sub\\app.exe"), In("lib\\Kitbag.dll"), {}, {}}; }

    std::wstring In(const std::string& name) const { return (folder.Path() / name).wstring(); }
    std::wstring Add(const std::string& name) const {
        std::filesystem::create_directories(folder.Path() / name);
        return In(name);
    }
    std::wstring AddFile(const std::string& name) const {
        std::ofstream(folder.Path() / name) << "x";
        return In(name);
    }

    using Text = kitbag::test::Text<Ch>;
    /// What a getter answers; "none" where it answers false.
    static std::wstring Ask(bool (*get)(Text&)) {
        Text directory;
        if (!get(directory)) return L"none";
        return {directory.begin(), directory.end()};
    }

    kitbag::test::Com com;
    kitbag::test::TemporaryFolder folder;
    RawKey settings{"Directories"};
    ImportPatch moduleFile{Pick<Ch>("GetModuleFileNameA", "GetModuleFileNameW"),
                           FakeModuleFile<Ch>};
    ImportPatch dialog{Pick<Ch>("SHBrowseForFolderA", "SHBrowseForFolderW"),
                       Pick<Ch>(FakeDialog<char, BROWSEINFOA>, FakeDialog<wchar_t, BROWSEINFOW>)};
};
TYPED_TEST_SUITE(Directories, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(Directories, AreRememberedUntilTheyAreGone) {
    using Ch = TypeParam;
    const auto films = this->Add("films");
    for (const auto& stored : {films, films + L"\\"}) {
        this->settings.Set(L"Docs Directory", stored);
        EXPECT_EQ(films + L"\\", this->Ask(KB(GetDocDirectory)));
    }
    for (const auto& stored : {this->In("gone"), this->AddFile("file"), std::wstring()}) {
        this->settings.Set(L"Docs Directory", stored);
        EXPECT_EQ(L"none", this->Ask(KB(GetDocDirectory)));
        EXPECT_FALSE(this->settings.Has(L"Docs Directory"));
    }
    EXPECT_EQ(0, world.dialogs);
}

TYPED_TEST(Directories, AreFoundAboveTheExecutable) {
    using Ch = TypeParam;
    this->settings.Set(L"Config Directory", this->AddFile("file"));
    const auto high = this->Add("Config");
    EXPECT_EQ(high + L"\\", this->Ask(KB(GetConfigDirectory)));
    const auto low = this->Add("bin\\Config");
    EXPECT_EQ(low + L"\\", this->Ask(KB(GetConfigDirectory)));
    EXPECT_FALSE(this->settings.Has(L"Config Directory"));

    EXPECT_EQ(low + L"\\", this->Ask(KB(GetSkinDirectory)));
    const auto skins = this->Add("Skin");
    EXPECT_EQ(skins + L"\\", this->Ask(KB(GetSkinDirectory)));

    for (const auto& executable :
         {std::wstring(L"app.exe"), this->In("bin\\" + std::string(260, 'x'))}) {
        world.executable = executable;
        EXPECT_EQ(L"none", this->Ask(KB(GetConfigDirectory)));
    }
}

TYPED_TEST(Directories, AreFoundThroughLinks) {
    using Ch = TypeParam;
    const auto films = this->Add("films");
    const auto target = (this->folder / "films").string();
    this->Add("bin");
    kitbag::test::MakeLink(this->folder / "bin\\Docs.lnk", target.c_str(), "");
    EXPECT_EQ(L"none", this->Ask(KB(GetDocDirectory)));
    kitbag::test::MakeLink(this->folder / "bin\\DocsDocs.lnk", target.c_str(), "");
    // The 16-bit form cannot follow: it is handed 8-bit text.
    EXPECT_EQ(Pick<Ch>(films + L"\\", std::wstring(L"none")), this->Ask(KB(GetDocDirectory)));
    std::filesystem::remove(this->folder / "films");
    EXPECT_EQ(L"none", this->Ask(KB(GetDocDirectory)));
}

TYPED_TEST(Directories, AreAskedForOnce) {
    using Ch = TypeParam;
    world.chosen = this->Add("films");
    EXPECT_EQ(world.chosen + L"\\", this->Ask(KB(GetDocDirectory)));
    EXPECT_EQ(L"Point me at the docs directory please", world.prompt);
    EXPECT_EQ(world.chosen + L"\\", this->settings.TextOf(L"Docs Directory"));
    ::RegDeleteValueA(this->settings.Get(), "Docs Directory");
    EXPECT_EQ(L"none", this->Ask(KB(GetDocDirectory)));
    EXPECT_EQ(1, world.dialogs);

    world.chosen.clear();  // cancelled
    EXPECT_EQ(L"none", this->Ask(KB(GetConfigDirectory)));
    EXPECT_EQ(L"Point me at the config directory please", world.prompt);
    EXPECT_EQ(L"none", this->Ask(KB(GetSkinDirectory)));
    EXPECT_EQ(2, world.dialogs);
}

TYPED_TEST(Directories, OfDataAreCreatedBesideTheLibrary) {
    using Ch = TypeParam;
    this->settings.Set(L"Data Directory", this->AddFile("file"));
    EXPECT_EQ(this->In("lib\\Data\\"), this->Ask(KB(GetDataDirectory)));
    EXPECT_TRUE(std::filesystem::is_directory(this->In("lib\\Data")));
    EXPECT_EQ(this->In("lib\\Data\\"), this->settings.TextOf(L"Data Directory"));
    EXPECT_EQ(this->In("lib\\Data\\"), this->Ask(KB(GetDataDirectory)));

    for (const auto& stored : {this->In("gone"), this->In("gone\\")}) {
        this->settings.Set(L"Data Directory", stored);
        EXPECT_EQ(L"none", this->Ask(KB(GetDataDirectory)));
        EXPECT_FALSE(std::filesystem::exists(this->In("gone")));
    }
    EXPECT_EQ(0, world.dialogs);
}

TYPED_TEST(Directories, OfDataAreCreatedWhereTheyAreRemembered) {
    using Ch = TypeParam;
    this->settings.Set(L"Data Directory", this->In("films\\old"));
    EXPECT_EQ(this->In("films\\old\\"), this->Ask(KB(GetDataDirectory)));
    EXPECT_TRUE(std::filesystem::is_directory(this->In("films\\old")));
}

TYPED_TEST(Directories, AreSetAsTheyStand) {
    using Ch = TypeParam;
    EXPECT_TRUE(KB(SetConfigDirectory)(T("C:\\1")));
    EXPECT_TRUE(KB(SetSkinDirectory)(T("C:\\2\\")));
    EXPECT_TRUE(KB(SetDataDirectory)(T("3")));
    EXPECT_TRUE(KB(SetDocDirectory)(T("4")));
    EXPECT_EQ(L"C:\\1", this->settings.TextOf(L"Config Directory"));
    EXPECT_EQ(L"C:\\2\\", this->settings.TextOf(L"Skin Directory"));
    EXPECT_EQ(L"3", this->settings.TextOf(L"Data Directory"));
    EXPECT_EQ(L"4", this->settings.TextOf(L"Docs Directory"));
}

}  // namespace
