#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;

TEST(FilenameValue, TakesPathsApart) {
    const struct {
        const char *path, *filename, *noExtension, *directory, *extension;
    } rows[] = {
        {"C:\\Video\\clip.avi", "clip.avi", "clip", "C:\\Video", ".avi"},
        {"C:\\a.b\\clip", "clip", "clip", "C:\\a.b", ".b\\clip"},
        {"\\pc/x.y.AVI", "x.y.AVI", "x.y", "\\pc", ".AVI"},
        {"clip.avi", "clip.avi", "clip", "", ".avi"},
        {"clip", "clip", "clip", "", ""},
        {"C:\\Video\\", "", "", "C:\\Video", ""},
        {".avi", ".avi", "", "", ".avi"},
        {"", "", "", "", ""},
    };
    for (const auto& [path, filename, noExtension, directory, extension] : rows) {
        SCOPED_TRACE(path);
        FilenameValue value{TWinString<char>(path)};
        EXPECT_EQ(filename, value.GetFilename());
        EXPECT_EQ(noExtension, value.GetFilenameNoExtension());
        EXPECT_EQ(directory, value.GetDirectory());
        EXPECT_EQ(extension, value.GetExtension());
        value.SetIsDirectory(true);
        EXPECT_EQ(path, value.GetDirectory()) << "as a directory";
    }
}

TEST(FilenameValue, TellsExplicitDirectories) {
    const struct {
        const char* directory;
        bool isExplicit;
    } rows[] = {{"C:\\", true},     {"c:/Video", true}, {"\\Video", true},
                {"/", true},        {"C:", false},      {"C:Video", false},
                {"Vi\\deo", false}, {"Video", false},   {"", false}};
    for (const auto& [directory, isExplicit] : rows) {
        SCOPED_TRACE(directory);
        FilenameValue value{TWinString<char>(directory)};
        value.SetIsDirectory(true);
        EXPECT_EQ(isExplicit, value.IsExplicitDirectory());
        EXPECT_EQ(!isExplicit, value.IsRelativeDirectory());
    }
}

TEST(FilenameValue, TellsMediaByTheirExtensionInLowerCase) {
    const struct {
        const char* path;
        bool windowsMedia, avi, ssf, mp3, wma;
    } rows[] = {
        {"a.asf", true, false, false, false, false},  {"a.wmv", true, false, false, false, false},
        {"a.wma", true, false, false, false, true},   {"a.avi", false, true, false, false, false},
        {"a.ssf", false, false, true, false, false},  {"a.mp3", false, false, false, true, false},
        {"a.AVI", false, false, false, false, false}, {"avi", false, false, false, false, false},
    };
    for (const auto& [path, windowsMedia, avi, ssf, mp3, wma] : rows) {
        SCOPED_TRACE(path);
        const FilenameValue value{TWinString<char>(path)};
        EXPECT_EQ(windowsMedia, value.IsWindowsMedia());
        EXPECT_EQ(avi, value.IsAVI());
        EXPECT_EQ(ssf, value.IsSSF());
        EXPECT_EQ(mp3, value.IsMP3());
        EXPECT_EQ(wma, value.IsWMA());
    }
}

TEST(FilenameValue, TellsTheSizeOfTheFileThatItHoldsAlready) {
    const TextFolder<char> folder;
    folder.Write("four", "1234");
    const struct {
        const char* name;
        bool exists;
        unsigned long long size;
    } rows[] = {{"four", true, 4}, {"none", false, 0}};
    for (const auto& [name, exists, expected] : rows) {
        SCOPED_TRACE(name);
        const FilenameValue value(folder.In(name));
        unsigned long long size = 99;
        EXPECT_EQ(exists, value.GetFileSize(size));
        EXPECT_EQ(expected, size);
    }
    KB_SetStringA("S", "N", folder.In("four").c_str());
    const FilenameValue unread("S", "N", true);
    unsigned long long size = 99;
    EXPECT_FALSE(unread.GetFileSize(size)) << "nothing is loaded for it";
}

TEST(FilenameValue, MayBeHeldOpenByOthersWhoReadAndWrite) {
    const TextFolder<char> folder;
    folder.Write("held");
    const HANDLE held = ::CreateFileA(folder.In("held").c_str(), GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    unsigned long long size = 0;
    EXPECT_TRUE(FilenameValue(folder.In("held")).GetFileSize(size));
    ::CloseHandle(held);
}

TEST(FilenameValue, KeepsItsAttributesBesideThePath) {
    FilenameValue value("S", "N", true);
    EXPECT_FALSE(value.IsDirectory());
    EXPECT_FALSE(value.MustExist());
    value.SetFilterString("*.avi");
    value.SetIsDirectory(true);
    value.SetMustExist(true);
    value.SetValue("C:\\Video");
    const RawKey key("S");
    EXPECT_EQ(L"C:\\Video", key.TextOf(L"N"));
    EXPECT_EQ(L"*.avi", key.TextOf(L"N/filter"));
    EXPECT_EQ(1u, key.NumberOf(L"N/Is directory"));
    EXPECT_EQ(1u, key.NumberOf(L"N/Must exist"));

    FilenameValue loaded("S", "N", true);
    loaded.LoadRegistry();
    EXPECT_EQ("C:\\Video", loaded.GetValue());
    EXPECT_EQ("*.avi", loaded.GetFilterString());
    EXPECT_TRUE(loaded.IsDirectory());
    EXPECT_TRUE(loaded.MustExist());

    const FilenameValue copy(loaded);
    EXPECT_EQ("*.avi", copy.GetFilterString());
    EXPECT_TRUE(copy.IsDirectory());
    EXPECT_TRUE(copy.MustExist());
}

TEST(FilenameValue, KeepsAttributesThatAreNotStored) {
    KB_SetBoolA("S", "N/Must exist", false);
    FilenameValue value("S", "N", true);
    value.SetFilterString("*");
    value.SetIsDirectory(true);
    value.SetMustExist(true);
    value.LoadRegistry();
    EXPECT_EQ("*", value.GetFilterString());
    EXPECT_TRUE(value.IsDirectory());
    EXPECT_FALSE(value.MustExist()) << "this one is stored";
}

}  // namespace
