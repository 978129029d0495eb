#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/private_registry.h>
#include <tests/support/temporary_folder.h>

namespace {

using namespace kitbag::test;

TEST(FilenameValue, TakesPathsApart) {
    const struct {
        const char *path, *filename, *noExtension, *directory, *extension;
    } rows[] = {{"C:\\Video\\clip.avi", "clip.avi", "clip", "C:\\Video", ".avi"},
                {"C:\\a.b\\clip", "clip", "clip", "C:\\a.b", ".b\\clip"},
                {"\\pc/x.y.AVI", "x.y.AVI", "x.y", "\\pc", ".AVI"},
                {"clip.avi", "clip.avi", "clip", "", ".avi"},
                {"clip", "clip", "clip", "", ""},
                {"C:\\Video\\", "", "", "C:\\Video", ""},
                {".avi", ".avi", "", "", ".avi"},
                {"", "", "", "", ""}};
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
        FilenameValue value{TWinString<char>(directory)};
        value.SetIsDirectory(true);
        EXPECT_EQ(isExplicit, value.IsExplicitDirectory()) << directory;
        EXPECT_EQ(!isExplicit, value.IsRelativeDirectory()) << directory;
    }
}

TEST(FilenameValue, TellsMediaByTheirExtensionInLowerCase) {
    const struct {
        const char *path, *kinds;
    } rows[] = {{"a.asf", "windows "},
                {"a.wmv", "windows "},
                {"a.wma", "windows wma "},
                {"a.avi", "avi "},
                {"a.ssf", "ssf "},
                {"a.mp3", "mp3 "},
                {"a.AVI", ""},
                {"avi", ""}};
    for (const auto& [path, kinds] : rows) {
        const FilenameValue value{TWinString<char>(path)};
        std::string told;
        if (value.IsWindowsMedia()) told += "windows ";
        if (value.IsAVI()) told += "avi ";
        if (value.IsSSF()) told += "ssf ";
        if (value.IsMP3()) told += "mp3 ";
        if (value.IsWMA()) told += "wma ";
        EXPECT_EQ(kinds, told) << path;
    }
}

TEST(FilenameValue, TellsTheSizeOfTheFileThatItHoldsAlready) {
    const TextFolder<char> folder;
    folder.Write("four", "1234");
    KB_SetStringA("S", "N", folder.In("four").c_str());
    // Held open by another who reads and writes.
    const HANDLE held = ::CreateFileA(folder.In("four").c_str(), GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    const FilenameValue four(folder.In("four")), none(folder.In("none")), unread("S", "N", true);
    unsigned long long size = 99;
    EXPECT_TRUE(four.GetFileSize(size));
    EXPECT_EQ(4u, size);
    EXPECT_FALSE(none.GetFileSize(size));
    EXPECT_EQ(0u, size);
    EXPECT_FALSE(unread.GetFileSize(size)) << "nothing is loaded for it";
    ::CloseHandle(held);
}

std::string AttributesOf(const FilenameValue& value) {
    return value.GetFilterString() + (value.IsDirectory() ? ", directory" : "") +
           (value.MustExist() ? ", must exist" : "");
}

TEST(FilenameValue, KeepsItsAttributesBesideThePath) {
    FilenameValue value("S", "N", true), loaded("S", "N", true);
    EXPECT_EQ("", AttributesOf(value));
    value.SetFilterString("*.avi");
    value.SetIsDirectory(true);
    value.SetMustExist(true);
    value.SetValue("C:\\Video");
    const RawKey key("S");
    EXPECT_EQ(L"C:\\Video", key.TextOf(L"N"));
    EXPECT_EQ(L"*.avi", key.TextOf(L"N/filter"));
    EXPECT_EQ(1u, key.NumberOf(L"N/Is directory"));
    EXPECT_EQ(1u, key.NumberOf(L"N/Must exist"));
    loaded.LoadRegistry();
    EXPECT_EQ("C:\\Video", loaded.GetValue());
    EXPECT_EQ("*.avi, directory, must exist", AttributesOf(FilenameValue(loaded)));
    for (const char* gone : {"N/filter", "N/Is directory"}) KB_DeleteValueA("S", gone);
    KB_SetBoolA("S", "N/Must exist", false);
    loaded.LoadRegistry();
    EXPECT_EQ("*.avi, directory", AttributesOf(loaded)) << "what is not stored stays";
}

}  // namespace
