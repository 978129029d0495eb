#include <kitbag/files/paths.h>
#include <tests/support/code_page_932.h>
#include <tests/support/printing.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;

template <class Ch>
using String = std::basic_string<Ch>;
template <class Ch>
using FindData = std::conditional_t<std::is_same_v<Ch, char>, WIN32_FIND_DATAA, WIN32_FIND_DATAW>;

template <class Ch>
struct Paths : testing::Test, TextFolder<Ch> {
    bool IsFolder(const std::string& name) const { return is_directory(*this / name); }
    bool Delete(const std::string& name) const {
        return Exports<Ch>::DeleteDirectory(this->In(name).c_str()) != FALSE;
    }
};
TYPED_TEST_SUITE(Paths, TextForms, TextFormName);

TYPED_TEST(Paths, AreCreatedUpToTheLastSeparator) {
    this->Write("file");
    const struct {
        const char *about, *path;
        bool isCreated;
        const char *folder, *notCreated;
    } rows[] = {
        {"file name behind", "a\\b\\c.txt", true, "a\\b", "a\\b\\c.txt"},
        {"separator last", "d\\e\\", true, "d\\e", "d\\e\\f"},
        {"slashes", "g/h/i", true, "g\\h", "g\\h\\i"},
        {"folders that exist", "a\\b\\j\\k", true, "a\\b\\j", "a\\b\\j\\k"},
        {"file in the way", "file\\l\\m", false, "", "l"},
        {"name that the system refuses", "n\\?\\o\\p", false, "n", "o"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.about);
        EXPECT_EQ(row.isCreated, Exports<TypeParam>::CreatePath(this->In(row.path).c_str()));
        EXPECT_TRUE(this->IsFolder(row.folder)) << row.folder;
        EXPECT_FALSE(this->Has(row.notCreated)) << row.notCreated;
    }
}

TYPED_TEST(Paths, OfNoUseCreateNothing) {
    using Kb = Exports<TypeParam>;
    EXPECT_FALSE(Kb::CreatePath(nullptr));
    EXPECT_FALSE(Kb::CreatePath("\\kitbag\\a"_t));
    EXPECT_TRUE(Kb::CreatePath(""_t)) << "has no separator";
    // "\x\" before the name makes 259 or 260 characters.
    const std::string fill(259 - this->In("x\\").size(), 'f');
    EXPECT_FALSE(Kb::CreatePath(this->In("x\\" + fill + 'f').c_str())) << "260 characters";
    EXPECT_FALSE(this->Has("x"));
    EXPECT_TRUE(Kb::CreatePath(this->In("x\\" + fill).c_str())) << "259 characters";
    EXPECT_TRUE(this->IsFolder("x"));
}

TYPED_TEST(Paths, AreCreatedBeforeAFileIsCopiedThere) {
    this->Write("new", "new");
    const auto copy = [&](const char* from, const char* to, bool failIfExists) {
        return Exports<TypeParam>::CopyFileDeep(this->In(from).c_str(), this->In(to).c_str(),
                                                failIfExists);
    };
    EXPECT_TRUE(copy("new", "a\\b/copy", true));
    EXPECT_EQ(3u, file_size(*this / "a\\b\\copy"));
    this->Write("a\\b\\copy", "older");
    EXPECT_FALSE(copy("new", "a\\b\\copy", true)) << "exists";
    EXPECT_EQ(5u, file_size(*this / "a\\b\\copy"));
    EXPECT_TRUE(copy("new", "a\\b\\copy", false));
    EXPECT_EQ(3u, file_size(*this / "a\\b\\copy"));
    EXPECT_FALSE(copy("missing", "c\\copy", false));
    EXPECT_TRUE(this->IsFolder("c")) << "stays when the copy fails";
    EXPECT_FALSE(copy("new", "new\\d\\copy", false)) << "a file is in the way";
}

TYPED_TEST(Paths, AreDeletedWithAllThatIsInThem) {
    for (const char* name : {"tree\\a\\b\\c", "tree\\a\\d", "tree\\e", "tree\\.hidden\\f", "other"})
        this->Write(name);
    create_directories(*this / "tree\\empty");
    EXPECT_TRUE(this->Delete("tree"));
    EXPECT_FALSE(this->Has("tree"));
    EXPECT_FALSE(this->Delete("tree")) << "missing";
    EXPECT_FALSE(this->Delete("other")) << "a file";
    EXPECT_TRUE(this->Has("other"));
    this->Write("tree\\g\\h");
    EXPECT_TRUE(this->Delete("tree\\")) << "separator last";
    EXPECT_FALSE(this->Has("tree"));
}

TYPED_TEST(Paths, StayWithAFileThatCannotBeDeletedOnlyInItsFolders) {
    for (const char* name : {"tree\\a\\kept", "tree\\a\\gone", "tree\\b\\gone", "tree\\c"})
        this->Write(name);
    const auto kept = *this / "tree\\a\\kept";
    permissions(kept, std::filesystem::perms::owner_write, std::filesystem::perm_options::remove);
    EXPECT_FALSE(this->Delete("tree"));
    EXPECT_TRUE(exists(kept));
    for (const char* gone : {"tree\\a\\gone", "tree\\b", "tree\\c"}) EXPECT_FALSE(this->Has(gone));
    permissions(kept, std::filesystem::perms::owner_write, std::filesystem::perm_options::add);
}

// The system reports folders and files as links whose names begin with 'l'; and the dots of every
// folder, as it does in a folder that is a link.

template <class Ch>
void MarkLinks(FindData<Ch>* found) {
    if (found->cFileName[0] == 'l' || found->cFileName[0] == '.')
        found->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
}
template <class Ch>
HANDLE WINAPI FindFirst(const Ch* pattern, FindData<Ch>* found) {
    const HANDLE search = Pick<Ch>(::FindFirstFileA, ::FindFirstFileW)(pattern, found);
    MarkLinks<Ch>(found);
    return search;
}
template <class Ch>
BOOL WINAPI FindNext(HANDLE search, FindData<Ch>* found) {
    const BOOL isFound = Pick<Ch>(::FindNextFileA, ::FindNextFileW)(search, found);
    MarkLinks<Ch>(found);
    return isFound;
}

TYPED_TEST(Paths, ThatAreLinksAreDeletedButNotEntered) {
    using Ch = TypeParam;
    const ImportPatch first(Pick<Ch>("FindFirstFileA", "FindFirstFileW"), FindFirst<Ch>);
    const ImportPatch next(Pick<Ch>("FindNextFileA", "FindNextFileW"), FindNext<Ch>);
    for (const char* name : {"tree\\a\\link\\elsewhere", "tree\\a\\b", "tree\\link to file"})
        this->Write(name);
    create_directories(*this / "tree\\link to folder");
    EXPECT_FALSE(this->Delete("tree")) << "holds a link that the system does not remove";
    EXPECT_TRUE(this->Has("tree\\a\\link\\elsewhere"));
    for (const char* gone : {"tree\\a\\b", "tree\\link to file", "tree\\link to folder"})
        EXPECT_FALSE(this->Has(gone)) << gone;
    EXPECT_TRUE(this->Delete("tree\\a\\link")) << "named itself: entered";
    EXPECT_TRUE(this->Delete("tree"));
}

/// Deletes a folder with no more than this left of the call stack.
BOOL DeleteWithStack(std::size_t bytes, const std::wstring& folder) {
    ULONG_PTR end = 0, begin = 0;
    ::GetCurrentThreadStackLimits(&end, &begin);
    void* volatile taken = __builtin_alloca(reinterpret_cast<ULONG_PTR>(&end) - end - bytes);
    return taken && KB_DeleteDirectoryW(folder.c_str());
}

TEST(DeepPaths, AreDeletedOnASmallCallStack) {
    const TextFolder<wchar_t> temporary;
    // The prefix lifts the system's limit of 260 characters.
    const std::wstring tree = L"\\\\?\\" + temporary.In("d");
    std::wstring folder = tree;
    for (int level = 0; level < 350; ++level, folder += L"\\d")
        ASSERT_TRUE(::CreateDirectoryW(folder.c_str(), nullptr)) << "level " << level;
    EXPECT_TRUE(DeleteWithStack(128 * 1024, tree));
    EXPECT_FALSE(temporary.Has("d"));
}

/// What the library asked the file system for.
std::vector<std::string> asked;

template <class Ch>
HANDLE WINAPI FindNothing(const Ch* pattern, FindData<Ch>*) {
    const String<Ch> text = pattern;
    asked.emplace_back(text.begin(), text.end());
    return INVALID_HANDLE_VALUE;
}

TYPED_TEST(Paths, OfNoFolderMeanTheRootOfADrive) {
    using Ch = TypeParam;
    // Nothing is deleted: the system finds nothing.
    const ImportPatch find(Pick<Ch>("FindFirstFileA", "FindFirstFileW"), FindNothing<Ch>);
    asked.clear();
    const Ch* const folders[] = {nullptr, ""_t, "C:"_t, "C:\\"_t, "C:\\a"_t};
    for (const Ch* folder : folders) EXPECT_FALSE(Exports<Ch>::DeleteDirectory(folder));
    EXPECT_EQ((std::vector<std::string>{"\\*", "\\*", "C:\\*", "C:\\*", "C:\\a\\*"}), asked);
}

TEST(DoubleBytePaths, AreTakenApartBetweenCharacters) {
    const CodePage932 japanese;
    const ImportPatch find("FindFirstFileA", FindNothing<char>);
    const ImportPatch make(
        "CreateDirectoryA", +[](const char* path, SECURITY_ATTRIBUTES*) WINAPI -> BOOL {
            asked.emplace_back(path);
            return TRUE;
        });
    const ImportPatch attributes(
        "GetFileAttributesA",
        +[](const char*) WINAPI -> DWORD { return FILE_ATTRIBUTE_DIRECTORY; });
    const auto askedFor = [](const std::vector<std::wstring>& paths) {
        std::vector<std::string> expected;
        for (const std::wstring& path : paths) expected.push_back(In932(path));
        EXPECT_EQ(expected, asked);
        asked.clear();
    };
    asked.clear();
    EXPECT_TRUE(KB_CreatePathA(In932(L"D:\\\x8868/\x30dd\x8868\\\x8868").c_str()));
    askedFor({L"D:", L"D:\\\x8868", L"D:\\\x8868\\\x30dd\x8868"});
    EXPECT_FALSE(KB_DeleteDirectoryA(In932(L"D:\\\x8868").c_str()));
    EXPECT_FALSE(KB_DeleteDirectoryA(In932(L"D:\\\x8868\\").c_str()));
    askedFor({L"D:\\\x8868\\*", L"D:\\\x8868\\*"});
    // Counted as the 16-bit form counts them.
    EXPECT_TRUE(KB_CreatePathA(In932(std::wstring(259, L'\x8868')).c_str()));
    EXPECT_FALSE(KB_CreatePathA(In932(std::wstring(260, L'\x8868')).c_str()));
}

}  // namespace
