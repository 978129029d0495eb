#include <kitbag/files/paths.h>
#include <tests/support/import_patch.h>
#include <tests/support/leak_check.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/text_forms.h>

#include <filesystem>
#include <fstream>

namespace {

using kitbag::test::ImportPatch;
using kitbag::test::Pick;
using kitbag::test::Text;
using std::filesystem::exists;

template <class Ch>
class Paths : public testing::Test {
 protected:
    Text<Ch> In(const std::string& name) const {
        const auto path = folder.Path() / name;
        return Pick<Ch>(path.string(), path.wstring());
    }
    bool Has(const std::string& name) const { return exists(folder.Path() / name); }
    void AddFile(const std::string& name) const { std::ofstream(folder.Path() / name) << "x"; }

    kitbag::test::TemporaryFolder folder;
};
TYPED_TEST_SUITE(Paths, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(Paths, CreatesTheFoldersBeforeTheLastSeparator) {
    using Ch = TypeParam;
    this->AddFile("file");
    const struct {
        const char* path;
        const char* created;
        bool result;
    } cases[] = {{"a\\b\\c.txt", "a\\b", true},
                 {"d\\e\\", "d\\e", true},
                 {"f/g/h", "f\\g", true},
                 {"file\\b\\c", "file", false},
                 {"i", "", true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(c.result, KB(CreatePath)(this->In(c.path).c_str()));
        EXPECT_TRUE(this->Has(c.created));
    }
    EXPECT_FALSE(this->Has("a\\b\\c.txt"));
    EXPECT_FALSE(this->Has("i"));
    EXPECT_TRUE(KB(CreatePath)(T("C:\\")));
    EXPECT_FALSE(KB(CreatePath)(T("\\x\\y")));
    EXPECT_FALSE(KB(CreatePath)(nullptr));
}

TYPED_TEST(Paths, AreLimitedTo259Characters) {
    using Ch = TypeParam;
    for (const std::size_t length : {259u, 260u, 261u, 5000u}) {
        const auto name = std::to_string(length);
        Text<Ch> path = this->In(name) + T("\\");
        path.resize(length, Ch{'x'});
        EXPECT_EQ(length < 260, KB(CreatePath)(path.c_str()));
        EXPECT_EQ(length < 260, this->Has(name));
        EXPECT_EQ(FALSE, KB(DeleteDirectory)(path.c_str()));
    }
}

TYPED_TEST(Paths, AreCreatedForACopy) {
    using Ch = TypeParam;
    this->AddFile("source");
    const auto source = this->In("source");
    EXPECT_TRUE(KB(CopyFileDeep)(source.c_str(), this->In("a\\b\\copy").c_str(), true));
    EXPECT_TRUE(this->Has("a\\b\\copy"));
    EXPECT_FALSE(KB(CopyFileDeep)(source.c_str(), this->In("a\\b\\copy").c_str(), true));
    EXPECT_TRUE(KB(CopyFileDeep)(source.c_str(), this->In("a\\b\\copy").c_str(), false));
    EXPECT_FALSE(KB(CopyFileDeep)(source.c_str(), this->In("source\\copy").c_str(), false));
    EXPECT_FALSE(KB(CopyFileDeep)(this->In("none").c_str(), this->In("copy").c_str(), false));
    EXPECT_FALSE(KB(CopyFileDeep)(nullptr, this->In("copy").c_str(), false));
}

TYPED_TEST(Paths, AreDeletedWithEverythingBelow) {
    using Ch = TypeParam;
    for (const char* end : {"", "\\"}) {
        std::filesystem::create_directories(this->folder / "tree\\a\\b");
        for (const char* file : {"tree\\x", "tree\\a\\.y", "tree\\a\\b\\z"}) this->AddFile(file);
        EXPECT_NE(FALSE, KB(DeleteDirectory)(this->In(std::string("tree") + end).c_str()));
        EXPECT_FALSE(this->Has("tree"));
        EXPECT_EQ(FALSE, KB(DeleteDirectory)(this->In("tree").c_str()));
    }
}

TYPED_TEST(Paths, StayWhereAFileIsReadOnly) {
    using Ch = TypeParam;
    std::filesystem::create_directories(this->folder / "tree\\a");
    std::filesystem::create_directories(this->folder / "tree\\b");
    this->AddFile("tree\\a\\kept");
    const auto kept = (this->folder / "tree\\a\\kept").string();
    ::SetFileAttributesA(kept.c_str(), FILE_ATTRIBUTE_READONLY);
    kitbag::test::ExpectNoHandleLeak(
        [&] { EXPECT_EQ(FALSE, KB(DeleteDirectory)(this->In("tree").c_str())); });
    EXPECT_TRUE(this->Has("tree\\a\\kept"));
    EXPECT_FALSE(this->Has("tree\\b"));
    ::SetFileAttributesA(kept.c_str(), FILE_ATTRIBUTE_NORMAL);
}

std::wstring searched;

template <class Ch, class Data>
HANDLE WINAPI FindNothing(const Ch* pattern, Data*) {
    searched.assign(pattern, pattern + std::char_traits<Ch>::length(pattern));
    return INVALID_HANDLE_VALUE;
}

// Never for real: this empties the root of the current drive.
TYPED_TEST(Paths, OfNothingMeanTheRoot) {
    using Ch = TypeParam;
    const auto fake =
        Pick<Ch>(FindNothing<char, WIN32_FIND_DATAA>, FindNothing<wchar_t, WIN32_FIND_DATAW>);
    const ImportPatch search(Pick<Ch>("FindFirstFileA", "FindFirstFileW"), fake);
    for (const auto* nothing : {T(""), static_cast<const Ch*>(nullptr)}) {
        searched.clear();
        EXPECT_EQ(FALSE, KB(DeleteDirectory)(nothing));
        EXPECT_EQ(L"\\*", searched);
    }
}

}  // namespace
