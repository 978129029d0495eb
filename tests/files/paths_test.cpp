#include <kitbag/files/paths.h>
#include <tests/support/import_patch.h>
#include <tests/support/text_folder.h>

namespace {

using kitbag::test::Text;

template <class Ch>
struct Paths : testing::Test, kitbag::test::TextFolder<Ch> {};
TYPED_TEST_SUITE(Paths, kitbag::test::TextForms, kitbag::test::TextFormName);

TYPED_TEST(Paths, AreCreatedUpToTheLastSeparator) {
    using Ch = TypeParam;
    EXPECT_TRUE(KB(CreatePath)(this->In("a\\b/c.txt").c_str()));
    EXPECT_TRUE(this->Has("a\\b") && !this->Has("a\\b\\c.txt"));
    this->Write("file");
    EXPECT_FALSE(KB(CreatePath)(this->In("file\\d\\").c_str()));
    EXPECT_FALSE(KB(CreatePath)(T("\\x\\y")));
    EXPECT_FALSE(KB(CreatePath)(nullptr));
    for (const std::size_t length : {259u, 260u, 5000u}) {
        Text<Ch> path = this->In(std::to_string(length)) + T("\\");
        path.resize(length, Ch{'x'});
        EXPECT_EQ(length < 260, KB(CreatePath)(path.c_str()));
        EXPECT_EQ(length < 260, this->Has(std::to_string(length)));
    }

    const auto file = this->In("file"), copy = this->In("e\\f\\copy");
    EXPECT_TRUE(KB(CopyFileDeep)(file.c_str(), copy.c_str(), true));
    EXPECT_FALSE(KB(CopyFileDeep)(file.c_str(), copy.c_str(), true));
    EXPECT_TRUE(KB(CopyFileDeep)(file.c_str(), copy.c_str(), false));
}

TYPED_TEST(Paths, AreDeletedAsFarAsTheSystemAllows) {
    using Ch = TypeParam;
    for (const char* file : {"tree\\a\\b\\c", "tree\\d\\e", "tree\\f"}) this->Write(file);
    const auto kept = (*this / "tree\\a\\b\\c").string();
    ::SetFileAttributesA(kept.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(FALSE, KB(DeleteDirectory)(this->In("tree").c_str()));
    EXPECT_TRUE(this->Has("tree\\a\\b\\c") && !this->Has("tree\\d"));
    ::SetFileAttributesA(kept.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_NE(FALSE, KB(DeleteDirectory)(this->In("tree\\").c_str()));
    EXPECT_FALSE(this->Has("tree"));
    EXPECT_EQ(FALSE, KB(DeleteDirectory)(this->In("tree").c_str()));
}

HANDLE WINAPI ExpectRoot(const char* pattern, WIN32_FIND_DATAA*) {
    EXPECT_STREQ("\\*", pattern);
    return INVALID_HANDLE_VALUE;
}

// Never for real: this empties the root of the current drive.
TEST(NoPath, MeansTheRoot) {
    const kitbag::test::ImportPatch search("FindFirstFileA", ExpectRoot);
    EXPECT_EQ(FALSE, KB_DeleteDirectoryA(""));
    EXPECT_EQ(FALSE, KB_DeleteDirectoryA(nullptr));
}

}  // namespace
