// First calls do what later calls do not: each test is a process of its own.

#include <kitbag/registry/directories.h>
#include <tests/support/import_patch.h>
#include <tests/support/own_process.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

#include <cstring>

namespace {

using namespace kitbag::test;

/// Where the modules lie, and the title of the last folder dialog.
std::wstring folder, prompt;
int dialogs = 0;
bool isCancelled = false;

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
    ++dialogs;
    return isCancelled ? nullptr : ::ILCreateFromPathW((folder + L"\\films").c_str());
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

TYPED_TEST(Directories, AreHandedOutWithExactlyOneBackslash) {
    using Kb = Exports<TypeParam>;
    if (RanInAProcessOfItsOwn()) return;
    for (const char* stored : {"films", "films\\", "films\\\\", "films\\\\\\"}) {
        SCOPED_TRACE(stored);
        EXPECT_TRUE(Kb::SetSkinDirectory(this->In(stored)));
        EXPECT_EQ(this->In("films\\"), this->Ask(Kb::GetSkinDirectory));
    }
    // Another program stored a second terminator.
    const std::wstring stored = folder + L"\\films";
    RawKey("Directories")
        .Set(L"Skin Directory", REG_SZ, (stored + L'\0').c_str(),
             static_cast<DWORD>((stored.size() + 2) * sizeof(wchar_t)));
    EXPECT_EQ(this->In("films\\"), this->Ask(Kb::GetSkinDirectory));
}

TYPED_TEST(Directories, AreRememberedInAValueEach) {
    using Kb = Exports<TypeParam>;
    Kb::SetConfigDirectory(this->In("config"));
    Kb::SetSkinDirectory(this->In("skins\\"));
    Kb::SetDataDirectory(this->In("data"));
    Kb::SetDocDirectory(this->In("docs"));
    const RawKey stored("Directories");
    EXPECT_EQ(folder + L"\\config", stored.TextOf(L"Config Directory"));
    EXPECT_EQ(folder + L"\\skins\\", stored.TextOf(L"Skin Directory"));
    EXPECT_EQ(folder + L"\\data", stored.TextOf(L"Data Directory"));
    EXPECT_EQ(folder + L"\\docs", stored.TextOf(L"Docs Directory"));
}

TYPED_TEST(Directories, AreForgottenWhereTheyAreNoDirectories) {
    using Kb = Exports<TypeParam>;
    for (const char* stored : {"file", "missing"}) {
        SCOPED_TRACE(stored);
        Kb::SetSkinDirectory(this->In(stored));
        this->Write("Skin\\file");
        EXPECT_EQ(this->In("Skin\\"), this->Ask(Kb::GetSkinDirectory));
        EXPECT_FALSE(RawKey("Directories").Has(L"Skin Directory"));
    }
}

TYPED_TEST(Directories, AreAskedForOnce) {
    using Kb = Exports<TypeParam>;
    if (RanInAProcessOfItsOwn()) return;
    const struct {
        bool (*get)(Text<TypeParam>&);
        const wchar_t *prompt, *value;
        bool isCancelled;
    } rows[] = {
        {Kb::GetConfigDirectory, L"Point me at the config directory please", L"Config Directory",
         true},
        {Kb::GetDocDirectory, L"Point me at the docs directory please", L"Docs Directory", false}};
    for (const auto& [get, title, value, cancels] : rows) {
        SCOPED_TRACE(testing::PrintToString(title));
        dialogs = 0;
        isCancelled = cancels;
        EXPECT_EQ(cancels ? Text<TypeParam>() : this->In("films\\"), this->Ask(get));
        EXPECT_EQ(title, prompt);
        EXPECT_EQ(!cancels, RawKey("Directories").Has(value));
        Kb::DeleteSection("Directories"_t);
        EXPECT_EQ(""_t, this->Ask(get));
        EXPECT_EQ(1, dialogs);
    }
}

TYPED_TEST(Directories, AreNotSoughtWhereTheModulesFileIsNotKnown) {
    using Kb = Exports<TypeParam>;
    if (RanInAProcessOfItsOwn()) return;
    const ImportPatch unknown(
        Pick<TypeParam>("GetModuleFileNameA", "GetModuleFileNameW"),
        +[](HMODULE, void*, DWORD) WINAPI { return DWORD{0}; });
    this->Write("Data\\file");
    const auto before = std::filesystem::current_path();
    current_path(this->Path());
    EXPECT_EQ(""_t, this->Ask(Kb::GetDataDirectory)) << "a folder Data in the current directory";
    std::filesystem::current_path(before);
    EXPECT_FALSE(RawKey("Directories").Has(L"Data Directory"));
}

DWORD WINAPI FileInDoubleBytes(HMODULE, char* path, DWORD) {
    return static_cast<DWORD>(std::strlen(std::strcpy(path, "K:\\\x95\\\\app.exe")));
}

std::vector<std::string> asked;

// 95 5C is one character of code page 932; the second byte is that of a backslash.
TEST(DirectoriesOf8Bits, TakeNoHalfOfACharacterForABackslash) {
    const ImportPatch lead(
        "IsDBCSLeadByte", +[](BYTE byte) WINAPI -> BOOL { return byte == 0x95; });
    const ImportPatch module("GetModuleFileNameA", FileInDoubleBytes);
    const ImportPatch attributes(
        "GetFileAttributesA", +[](LPCSTR path) WINAPI {
            asked.emplace_back(path);
            return asked.size() == 1 ? DWORD{FILE_ATTRIBUTE_DIRECTORY} : INVALID_FILE_ATTRIBUTES;
        });
    TWinString<char> skins;
    KB_SetSkinDirectoryA("K:\\\x95\\");
    EXPECT_TRUE(KB_GetSkinDirectoryA(skins));
    EXPECT_EQ("K:\\\x95\\\\", skins);

    KB_DeleteSectionA("Directories");
    asked = {"before"};
    KB_GetDataDirectoryA(skins);
    asked.resize(5);
    const std::vector<std::string> expected = {
        "before", "K:\\\x95\\\\Data", "K:\\\x95\\\\DataData.lnk", "K:\\Data", "K:\\DataData.lnk"};
    EXPECT_EQ(expected, asked);
}

TYPED_TEST(Directories, AreFoundAboveTheExecutable) {
    using Ch = TypeParam;
    if (RanInAProcessOfItsOwn()) return;
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
    if (RanInAProcessOfItsOwn()) return;
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
