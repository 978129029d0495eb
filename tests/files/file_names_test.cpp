#include <kitbag/files/file_names.h>
#include <tests/support/code_page_932.h>
#include <tests/support/printing.h>
#include <tests/support/text_forms.h>

namespace {

using namespace kitbag::test;

template <class Ch>
using String = std::basic_string<Ch>;

template <class Ch>
String<Ch> In(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

/// What becomes of the name in the caller's buffer; "refused" where it is not accepted.
template <class Ch>
String<Ch> Validated(String<Ch> name, bool repair, bool isPath = false) {
    const String<Ch> before = name;
    if (Exports<Ch>::ValidateFilename(name.data(), repair, isPath)) return name;
    EXPECT_EQ(before, name);
    return Text<Ch>("refused"_t);
}

/// Expects that a name is accepted as it is where its repair changes nothing, else only repaired.
template <class Ch>
void ExpectRepaired(const std::string& repaired, const std::string& name, bool isPath = false) {
    SCOPED_TRACE(name);
    ASSERT_EQ(In<Ch>(repaired), Validated(In<Ch>(name), true, isPath));
    ASSERT_EQ(In<Ch>(repaired == name ? name : "refused"), Validated(In<Ch>(name), false, isPath));
}

template <class Ch>
struct FileNames : testing::Test {};
TYPED_TEST_SUITE(FileNames, TextForms, TextFormName);

TYPED_TEST(FileNames, AreCheckedAndRepairedInTheirLastComponent) {
    const struct {
        const char *about, *name, *repaired;
        bool isPath = false;
    } rows[] = {
        {"blanks and dots within", "a. b", "a. b"},
        {"blank first", " a", "_a"},
        {"dot first", ".a", "_a"},
        {"blank last", "a ", "a_"},
        {"dot last", "report.", "report_"},
        {"nothing but a dot", ".", "_"},
        {"several faults", ".a?b*. ", "_a_b_._"},
        {"separators in a name", "\\dir/file", "_dir_file"},
        {"separators in a path", "\\dir\\file", "\\dir\\file", true},
        {"folders of a path", "a?\\ b.\\c", "a?\\ b.\\c", true},
        {"slashes in a path", "a?/b", "a?/b", true},
        {"slash before a backslash", "a/b\\c?", "a/b\\c_", true},
        {"slash behind a backslash", "a\\b/c", "a\\b_c", true},
        {"nothing behind the backslash", "a?\\", "a?\\", true},
        {"nothing behind the slash", "a?/", "a?/", true},
        {"path without a separator", "a?", "a_", true},
        {"drive", "C:\\te?p\\ab.c", "C:\\te?p\\ab.c"},
        {"drive alone", "C:", "C_"},
        {"two letters before the colon", "CD:\\a", "CD__a"},
        {"network path", "\\\\PC\\a?\\b", "\\\\PC\\a?\\b"},
        {"network path, bad name", "\\\\PC\\b?", "\\\\PC\\b_"},
        {"slashes of a network path", "//PC/b", "__PC_b"},
    };
    using Ch = TypeParam;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.about);
        ASSERT_NO_FATAL_FAILURE(ExpectRepaired<Ch>(row.repaired, row.name, row.isPath));
        auto path = In<Ch>(row.name);
        ASSERT_TRUE(Exports<Ch>::ValidatePath(path.data(), true, row.isPath));
        ASSERT_EQ(In<Ch>(row.repaired), path) << "KB_ValidatePath follows the same rules";
    }
}

TYPED_TEST(FileNames, HoldNoControlCharactersAndNoneThatTheSystemReserves) {
    using Ch = TypeParam;
    const std::string reserved = "?\"/\\<>*|:";
    for (int code = 1; code < 128; ++code) {
        const char c = static_cast<char>(code);
        const bool isInvalid = code < 32 || reserved.find(c) != reserved.npos;
        const std::string name = {'n', 'a', c, 'm'};
        ASSERT_NO_FATAL_FAILURE(ExpectRepaired<Ch>(isInvalid ? "na_m" : name, name));
    }
    // The low byte of U+012A is that of '*'.
    const String<Ch> others = {Ch(0x80), Ch(0xff), Pick<Ch>('\xe9', L'\x12a')};
    EXPECT_EQ(others, Validated(others, true));
}

TYPED_TEST(FileNames, AreNeverThoseOfDevices) {
    using Ch = TypeParam;
    for (const std::string device :
         {"CON",  "AUX",  "COM1",   "COM2", "COM3", "COM4", "COM5", "COM6", "COM7", "COM8",
          "COM9", "LPT1", "LPT2",   "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9",
          "PRN",  "NUL",  "CLOCK$", "Con",  "aux",  "com1", "lPT9", "prn",  "Nul",  "Clock$"}) {
        for (const char* extension : {"", ".txt", ".log.txt", "..txt"}) {
            const auto name = In<Ch>(device + extension);
            ASSERT_EQ("refused"_t, Validated(name, false)) << device << extension;
            ASSERT_EQ("refused"_t, Validated(name, true)) << device << extension;
        }
        ASSERT_EQ("refused"_t, Validated(In<Ch>("C:\\" + device), true)) << device;
        for (const std::string& free :
             {device + "0", device + " .txt", "x" + device, "a." + device})
            ASSERT_NO_FATAL_FAILURE(ExpectRepaired<Ch>(free, free));
        ASSERT_NO_FATAL_FAILURE(ExpectRepaired<Ch>(device + '_', device + '.'));
    }
    for (const char* free : {"COM0", "LPT0", "CO", "CLOCK", "console"})
        ExpectRepaired<Ch>(free, free);
}

TYPED_TEST(FileNames, AreRefusedWhereThereIsNone) {
    using Kb = Exports<TypeParam>;
    EXPECT_FALSE(Kb::ValidateFilename(nullptr, true, true));
    EXPECT_FALSE(Kb::ValidatePath(nullptr, false, true));
    EXPECT_EQ("refused"_t, Validated(String<TypeParam>(), true, true));
    EXPECT_FALSE(Kb::ValidateComputerName(nullptr));
}

TYPED_TEST(FileNames, OfComputersHoldFourteenCharactersOfFew) {
    const auto isAccepted = [](const std::string& name) {
        return Exports<TypeParam>::ValidateComputerName(In<TypeParam>(name).c_str());
    };
    const std::string valid =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789!#$%&'()-.@^_{}~";
    for (int code = 1; code < 128; ++code) {
        const std::string c(1, static_cast<char>(code));
        const bool isValid = valid.find(c) != valid.npos;
        ASSERT_EQ(isValid, isAccepted(c + "PC")) << "first: " << c;
        ASSERT_EQ(isValid || c == "\\", isAccepted("PC" + c)) << "last: " << c;
    }
    const struct {
        const char *about, *name;
        bool isAccepted;
    } rows[] = {
        {"empty", "", false},
        {"14 characters", "abcdefghijklmn", true},
        {"15 characters", "abcdefghijklmno", false},
        {"backslashes before 14", "\\\\abcdefghijklmn", true},
        {"backslashes before 15", "\\\\abcdefghijklmno", false},
        {"backslash behind 15", "abcdefghijklmno\\", false},
        {"share", "\\\\host\\my share", true},
        {"backslashes alone", "\\\\", false},
        {"three backslashes", "\\\\\\host", false},
        {"one backslash", "\\host", false},
        {"slashes", "//host", false},
    };
    for (const auto& row : rows) EXPECT_EQ(row.isAccepted, isAccepted(row.name)) << row.about;
}

TEST(DoubleByteFileNames, AreTreatedAsTheSameNamesIn16Bits) {
    const CodePage932 japanese;
    const struct {
        const char* about;
        const wchar_t* name;
    } rows[] = {
        {"byte of a backslash last", L"\x8868"},
        {"byte of a bar", L"\x30dd.txt"},
        {"single bytes that are none of ASCII", L"\xff71\xff9f"},
        {"invalid characters behind", L"\x8868?\x30dd|"},
        {"dot behind", L"\x8868."},
        {"path", L"D:\\\x8868\x30dd?\\\x8868"},
        {"path, bad name", L"\x8868\\\x8868:"},
        {"no separator", L"\x8868*\x8868"},
        {"separator at the end", L"\x8868?\\"},
        {"slash", L"\x8868/\x8868"},
        {"colon second", L"\x8868:\\*\\a"},
        {"device behind", L"\x8868\\con.\x8868"},
        {"device before", L"con\x8868"},
    };
    for (const auto& row : rows)
        for (const bool repair : {false, true})
            for (const bool isPath : {false, true})
                EXPECT_EQ(Bytes(In932(Validated<wchar_t>(row.name, repair, isPath))),
                          Bytes(Validated(In932(row.name), repair, isPath)))
                    << row.about << ", repair: " << repair << ", is path: " << isPath;
    EXPECT_TRUE(KB_ValidateFilenameA(In932(L"\x8868").data(), false, false));
    EXPECT_EQ("\x95", Validated<char>("\x95", true)) << "a lead byte alone";
}

}  // namespace
