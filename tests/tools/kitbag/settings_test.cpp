#include <tests/tools/kitbag/tool.h>

namespace {

using namespace kitbag::test;
using namespace std::string_literals;
using testing::HasSubstr;

/// kitbag list, get, set and delete.
struct SettingsCommands : ToolTest {};

TEST_F(SettingsCommands, ShowValuesOfEveryTypeAndWhatProgramsReadInstead) {
    const std::string keep = ": programs keep their default";
    const std::string refused = "refused by all getters but KB_GetData, which answers ";
    const std::string noTerminator = "not terminated: programs read \"ab\"";
    const struct {
        std::string name;
        DWORD type;
        std::string bytes, shown, mark;
    } rows[] = {
        {"number", REG_DWORD, "\x46\0\0\0"s, "dword   70 (0x46)", ""},
        {"negative", REG_DWORD, "\xfc\xff\xff\xff", "dword   4294967292 (-4, 0xfffffffc)", ""},
        {"short number", REG_DWORD, "\1\2\3", "dword   01 02 03",
         "refused as a number, 3 bytes instead of 4" + keep},
        {"text", REG_SZ, Utf16(L"C:\\Films\0"s), "string  \"C:\\Films\"", ""},
        {"two lines", REG_SZ, Utf16(L"a\r\nb\0"s), "string  \"a<0d><0a>b\"", ""},
        {"empty text", REG_SZ, "", "string  \"\"", ""},
        {"no terminator", REG_SZ, Utf16(L"abc"), "string  \"abc\"", noTerminator},
        {"any script", REG_SZ, Utf16(L"来\0"s), "string  \"\xe6\x9d\xa5\"",
         "programs that use 8-bit text read \"?\""},
        {"variables", REG_EXPAND_SZ, Utf16(L"%TEMP%\0"s), "REG_EXPAND_SZ  \"%TEMP%\"",
         refused + "14 bytes" + keep},
        {"texts", REG_MULTI_SZ, Utf16(L"deu\0fra\0\0"s), "REG_MULTI_SZ  \"deu\", \"fra\"",
         refused + "18 bytes" + keep},
        {"block", REG_BINARY, "\x1b\0\x26"s, "data    1b 00 26", ""},
        {"empty block", REG_BINARY, "", "data    no bytes", ""},
        {"unknown type", 0x12345, "\1", "type 0x12345  01", refused + "1 byte" + keep},
    };
    for (const auto& [name, type, bytes, shown, mark] : rows)
        Store("Audio", {name.begin(), name.end()}, type, bytes);
    const std::string list = Kitbag(L"list Audio").output;
    const std::size_t width = "no terminator"s.size();
    for (const auto& [name, type, bytes, shown, mark] : rows) {
        std::string lines = name + std::string(width - name.size(), ' ') + "  " + shown + '\n';
        if (!mark.empty()) lines += std::string(4 + width, ' ') + "  ! " + mark + '\n';
        EXPECT_THAT(list, HasSubstr("\n    " + lines));
    }
    EXPECT_EQ("string \"abc\"\n! " + noTerminator + '\n',
              Kitbag(L"get Audio \"no terminator\"").output);
}

TEST_F(SettingsCommands, ListASectionOrAllBelowIt) {
    const RawKey audio("Audio");
    audio.Set(L"", L"default");
    audio.Set(L"volume", 70);
    audio.Set(L"Device", L"Lautsprecher für Gäste");
    RawKey("Audio\\Zones\\Kitchen").Set(L"Volume", 5);
    RawKey("Audio-Video").Set(L"Volume", 1);
    const std::string values =
        "Audio\n"
        "    (default)  string  \"default\"\n"
        "    Device     string  \"Lautsprecher f\xc3\xbcr G\xc3\xa4ste\"\n"
        "    volume     dword   70 (0x46)\n";
    const Ending list = Kitbag(L"list Audio");
    EXPECT_EQ(values + "    Zones\\                0 values, 1 section\n", list.output);
    EXPECT_EQ(0u, list.code);
    EXPECT_EQ(values +
                  "    Zones\n"
                  "        Kitchen\n"
                  "            Volume  dword   5 (0x5)\n",
              Kitbag(L"list --tree Audio").output);
    EXPECT_EQ(
        "HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor\\Configuration\n"
        "    Audio\\                3 values, 2 sections\n"
        "    Audio-Video\\          1 value\n",
        Kitbag(L"list").output);
}

TEST_F(SettingsCommands, CutWhatIsLongInListsOnly) {
    Store("Audio", L"Block", REG_BINARY, std::string(129, '\1'));
    std::string shown;
    for (int i = 0; i < 128; ++i) shown += "01 ";
    EXPECT_EQ("Audio\n    Block  data    " + shown + "... (129 bytes)\n",
              Kitbag(L"list Audio").output);
    EXPECT_EQ("data " + shown + "01\n", Kitbag(L"get Audio Block").output);
}

TEST_F(SettingsCommands, SetWritesWhatTheLibraryWrites) {
    const struct {
        std::wstring typeAndWord;
        DWORD stored;
        std::string bytes, shown;
    } rows[] = {
        {L"bool Yes", REG_DWORD, "\1\0\0\0"s, "dword 1 (0x1)"},
        {L"bool off", REG_DWORD, "\0\0\0\0"s, "dword 0 (0x0)"},
        {L"dword 4294967295", REG_DWORD, "\xff\xff\xff\xff", "dword 4294967295 (-1, 0xffffffff)"},
        {L"dword 0x1F", REG_DWORD, "\x1f\0\0\0"s, "dword 31 (0x1f)"},
        {L"int -2147483648", REG_DWORD, "\0\0\0\x80"s,
         "dword 2147483648 (-2147483648, 0x80000000)"},
        {L"string \"Ž 来\"", REG_SZ, Utf16(L"Ž 来\0"s), "string \"\xc5\xbd \xe6\x9d\xa5\""},
        {L"string \"\"", REG_SZ, "", "string \"\""},
        {L"data \"1b,00 26FF\"", REG_BINARY, "\x1b\0\x26\xff"s, "data 1b 00 26 ff"},
    };
    std::string before = "new";
    for (const auto& [typeAndWord, stored, bytes, shown] : rows) {
        const Ending ending = Kitbag(L"set Ö Wert " + typeAndWord);
        EXPECT_EQ(shown + " (" + before + ")\n", ending.output);
        EXPECT_EQ(0u, ending.code) << shown;
        const Snapshot expected{{L"Ö\\", kSection}, {L"Ö\\Wert", {stored, Bytes(bytes)}}};
        EXPECT_EQ(expected, TakeSnapshot()) << shown;
        before = "was " + shown;
    }
}

TEST_F(SettingsCommands, SayWhatTheyDoNotDoAndChangeNothing) {
    RawKey("Audio").Set(L"", 7);
    RawKey("Audio").Set(L"Volume", 7);
    RawKey("Audio\\Zones\\Kitchen").Set(L"Volume", 5);
    const Snapshot before = TakeSnapshot();
    const std::string root = "HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor\\Configuration\\";
    const std::string kept = "; nothing is done without --yes";
    const struct {
        const wchar_t* command;
        DWORD code;
        std::string message;
    } rows[] = {
        {L"list Video", 1, root + "Video does not exist"},
        {L"get Audio Mute", 1, root + "Audio, value \"Mute\" does not exist"},
        {L"get Video \"\"", 1, root + "Video, value (default) does not exist"},
        {L"delete Audio Mute --yes", 1, root + "Audio, value \"Mute\" does not exist"},
        {L"delete Video --yes", 1, root + "Video does not exist"},
        {L"delete \"\" --yes", 2, "the settings are not deleted as a whole"},
        {L"delete Audio", 2, "would delete " + root + "Audio (3 values, 2 sections below)" + kept},
        {L"delete Audio \"\"", 2,
         "would delete " + root + "Audio, value (default): dword 7 (0x7)" + kept},
    };
    for (const auto& [command, code, message] : rows) {
        const Ending ending = Kitbag(command);
        EXPECT_EQ("kitbag: " + message + '\n', ending.errors);
        EXPECT_EQ(code, ending.code) << message;
    }
    EXPECT_EQ(before, TakeSnapshot());
}

TEST_F(SettingsCommands, SetRefusesWhatIsNoValueOfTheType) {
    for (const std::wstring typeAndWord :
         {L"bool 2", L"dword -1", L"dword 0x", L"dword 4294967296", L"dword \"12 \"",
          L"int 2147483648", L"int -2147483649", L"int 99999999999999999999", L"data 1",
          L"data \"1 b\"", L"number 1"})
        EXPECT_EQ(2u, Kitbag(L"set Audio Volume " + typeAndWord).code)
            << testing::PrintToString(typeAndWord);
    EXPECT_FALSE(RawKey::Exists());
}

TEST_F(SettingsCommands, DeleteWithConsent) {
    RawKey("Audio").Set(L"", 7);
    RawKey("Audio\\Zones\\Kitchen").Set(L"Volume", 5);
    EXPECT_EQ(0u, Kitbag(L"delete Audio \"\" --yes").code);
    EXPECT_FALSE(RawKey("Audio").Has(L""));
    EXPECT_TRUE(RawKey::Exists("Audio\\Zones"));
    EXPECT_EQ(0u, Kitbag(L"delete Audio --yes").code);
    EXPECT_FALSE(RawKey::Exists("Audio"));
}

/// A key that nobody may read or write while this lives.
class LockedKey {
 public:
    explicit LockedKey(const std::string& section) : key_(section) {
        ::InitializeAcl(&nobody_, sizeof nobody_, ACL_REVISION);
        Admit(&nobody_);
    }
    ~LockedKey() { Admit(nullptr); }

 private:
    /// No list admits everybody.
    void Admit(ACL* list) {
        SECURITY_DESCRIPTOR descriptor;
        ::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
        ::SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE);
        EXPECT_FALSE(::RegSetKeySecurity(key_.Get(), DACL_SECURITY_INFORMATION, &descriptor));
    }

    const RawKey key_;
    ACL nobody_;
};

TEST_F(SettingsCommands, SayWhatTheyMayNotTouch) {
    RawKey("Audio").Set(L"Volume", 7);
    const LockedKey locked("Locked");
    const wchar_t* const rows[] = {
        L"get Locked Volume",
        L"set Locked Volume dword 1",
        L"set Locked\\Deeper\\Still Volume dword 1",
        L"delete Locked --yes",
        L"watch Locked",
        L"export all.reg",
        L"list --tree",
    };
    Ending last;
    for (const wchar_t* command : rows) {
        last = Kitbag(command);
        EXPECT_EQ(3u, last.code) << testing::PrintToString(command);
        EXPECT_THAT(last.output + last.errors, HasSubstr("Locked"));
        EXPECT_THAT(last.output + last.errors, HasSubstr("(error 5)"));
    }
    EXPECT_FALSE(folder_.Has("all.reg"));
    EXPECT_THAT(last.output, HasSubstr("        Volume  dword   7 (0x7)\n")) << "what can be read";
}

}  // namespace
