#include <tests/tools/kitbag/tool.h>

namespace {

using namespace kitbag::test;
using namespace std::string_literals;

/// kitbag list, get, set and delete.
struct SettingsCommands : ToolTest {
    static void Store(const wchar_t* name, DWORD type, const std::string& bytes) {
        RawKey("Audio").Set(name, type, bytes.data(), static_cast<DWORD>(bytes.size()));
    }
    static std::pair<DWORD, Bytes> Stored(const std::wstring& path) {
        const Snapshot all = SnapshotOf();
        const auto found = all.find(path);
        return found == all.end() ? std::pair(DWORD{MAXDWORD}, Bytes("nothing")) : found->second;
    }
};

/// The 16-bit characters of an ASCII text, without a terminator.
std::string Wide(const std::string& text) {
    std::string bytes;
    for (const char c : text) bytes += {c, '\0'};
    return bytes;
}

TEST_F(SettingsCommands, ShowValuesOfEveryTypeAndWhatProgramsReadInstead) {
    const struct {
        const char* about;
        DWORD type;
        std::string bytes, shown;
    } rows[] = {
        {"number", REG_DWORD, "\x46\0\0\0"s, "dword 70 (0x46)\n"},
        {"negative number", REG_DWORD, "\xfc\xff\xff\xff", "dword 4294967292 (-4, 0xfffffffc)\n"},
        {"short number", REG_DWORD, "\1\2\3",
         "dword 01 02 03\n! refused as a number, 3 bytes instead of 4: programs keep their "
         "default\n"},
        {"text", REG_SZ, Wide("C:\\Films\0"s), "string \"C:\\Films\"\n"},
        {"two lines", REG_SZ, Wide("a\r\nb\0"s), "string \"a<0d><0a>b\"\n"},
        {"empty text", REG_SZ, "", "string \"\"\n"},
        {"text without terminator", REG_SZ, Wide("abc"),
         "string \"abc\"\n! not terminated: programs read \"ab\"\n"},
        {"text beyond the code page", REG_SZ, "\x65\x67\0\0"s,
         "string \"\xe6\x9d\xa5\"\n! programs that use 8-bit text read \"?\"\n"},
        {"text with variables", REG_EXPAND_SZ, Wide("%TEMP%\0"s),
         "REG_EXPAND_SZ \"%TEMP%\"\n! refused by all getters but KB_GetData, which answers 14 "
         "bytes: programs keep their default\n"},
        {"texts", REG_MULTI_SZ, Wide("deu\0fra\0\0"s),
         "REG_MULTI_SZ \"deu\", \"fra\"\n! refused by all getters but KB_GetData, which answers 18 "
         "bytes: programs keep their default\n"},
        {"block", REG_BINARY, "\x1b\0\x26"s, "data 1b 00 26\n"},
        {"empty block", REG_BINARY, "", "data no bytes\n"},
        {"unknown type", 0x12345, "\1",
         "type 0x12345 01\n! refused by all getters but KB_GetData, which answers 1 byte: programs "
         "keep their default\n"},
    };
    for (const auto& [about, type, bytes, shown] : rows) {
        SCOPED_TRACE(about);
        Store(L"Value", type, bytes);
        const Ending ending = Kitbag({L"get", L"Audio", L"Value"});
        EXPECT_EQ(shown, ending.output);
        EXPECT_EQ(0u, ending.code);
    }
}

TEST_F(SettingsCommands, ListASectionOrAllBelowIt) {
    const RawKey audio("Audio");
    audio.Set(L"", L"default");
    audio.Set(L"volume", 70);
    audio.Set(L"Device", L"Lautsprecher für Gäste");
    Store(L"Pan", REG_DWORD, "\1");
    RawKey("Audio\\Zones\\Kitchen").Set(L"Volume", 5);
    RawKey("Audio-Video").Set(L"Volume", 1);
    const std::string values =
        "    (default)  string  \"default\"\n"
        "    Device     string  \"Lautsprecher f\xc3\xbcr G\xc3\xa4ste\"\n"
        "    Pan        dword   01\n"
        "               ! refused as a number, 1 byte instead of 4: programs keep their default\n"
        "    volume     dword   70 (0x46)\n";
    const Ending list = Kitbag({L"list", L"Audio"});
    EXPECT_EQ("Audio\n" + values + "    Zones\\                0 values, 1 section\n", list.output);
    EXPECT_EQ(0u, list.code);
    EXPECT_EQ("Audio\n" + values +
                  "    Zones\n"
                  "        Kitchen\n"
                  "            Volume  dword   5 (0x5)\n",
              Kitbag({L"list", L"--tree", L"Audio"}).output);
    EXPECT_EQ(
        "HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor\\Configuration\n"
        "    Audio\\                4 values, 2 sections\n"
        "    Audio-Video\\          1 value\n",
        Kitbag({L"list"}).output);
}

TEST_F(SettingsCommands, CutWhatIsLongInListsOnly) {
    Store(L"Block", REG_BINARY, std::string(129, '\1'));
    std::string cut = "Audio\n    Block  data    ", whole = "data ";
    for (int i = 0; i < 128; ++i) cut += "01 ";
    for (int i = 0; i < 128; ++i) whole += "01 ";
    EXPECT_EQ(cut + "... (129 bytes)\n", Kitbag({L"list", L"Audio"}).output);
    EXPECT_EQ(whole + "01\n", Kitbag({L"get", L"Audio", L"Block"}).output);
}

TEST_F(SettingsCommands, SetWritesWhatTheLibraryWrites) {
    const struct {
        const wchar_t *type, *word;
        DWORD stored;
        std::string bytes, shown;
    } rows[] = {
        {L"bool", L"Yes", REG_DWORD, "\1\0\0\0"s, "dword 1 (0x1) (new)\n"},
        {L"bool", L"off", REG_DWORD, "\0\0\0\0"s, "dword 0 (0x0) (was dword 1 (0x1))\n"},
        {L"dword", L"4294967295", REG_DWORD, "\xff\xff\xff\xff",
         "dword 4294967295 (-1, 0xffffffff) (was dword 0 (0x0))\n"},
        {L"dword", L"0x1F", REG_DWORD, "\x1f\0\0\0"s,
         "dword 31 (0x1f) (was dword 4294967295 (-1, 0xffffffff))\n"},
        {L"int", L"-2147483648", REG_DWORD, "\0\0\0\x80"s,
         "dword 2147483648 (-2147483648, 0x80000000) (was dword 31 (0x1f))\n"},
        {L"string", L"Ž 来", REG_SZ, "\x7d\1 \0\x65\x67\0\0"s,
         "string \"\xc5\xbd \xe6\x9d\xa5\" (was dword 2147483648 (-2147483648, 0x80000000))\n"},
        {L"string", L"", REG_SZ, "", "string \"\" (was string \"\xc5\xbd \xe6\x9d\xa5\")\n"},
        {L"data", L"1b,00 26FF", REG_BINARY, "\x1b\0\x26\xff"s,
         "data 1b 00 26 ff (was string \"\")\n"},
    };
    for (const auto& [type, word, stored, bytes, shown] : rows) {
        const Ending ending = Kitbag({L"set", L"Neu\\Ö", L"Wert", type, word});
        EXPECT_EQ(shown, ending.output);
        EXPECT_EQ(0u, ending.code) << shown;
        EXPECT_EQ(std::pair(stored, Bytes(bytes)), Stored(L"Neu\\Ö\\Wert")) << shown;
    }
}

TEST_F(SettingsCommands, SetRefusesWhatIsNoValueOfTheType) {
    RawKey("Audio").Set(L"Value", 7);
    const Snapshot before = SnapshotOf();
    const wchar_t* const rows[][2] = {
        {L"bool", L"2"},          {L"bool", L""},
        {L"dword", L"-1"},        {L"dword", L""},
        {L"dword", L"0x"},        {L"dword", L"4294967296"},
        {L"dword", L"12 "},       {L"int", L"2147483648"},
        {L"int", L"-2147483649"}, {L"int", L"99999999999999999999"},
        {L"int", L"--1"},         {L"data", L"1"},
        {L"data", L"1 b"},        {L"data", L"0x1b"},
        {L"number", L"1"},
    };
    for (const auto& [type, word] : rows)
        EXPECT_EQ(2u, Kitbag({L"set", L"Audio", L"Value", type, word}).code)
            << testing::PrintToString(type) << ' ' << testing::PrintToString(word);
    EXPECT_EQ(before, SnapshotOf());
}

TEST_F(SettingsCommands, DeleteOnlyWithConsent) {
    RawKey("Audio").Set(L"", 7);
    RawKey("Audio").Set(L"Volume", 7);
    RawKey("Audio\\Zones\\Kitchen").Set(L"Volume", 5);
    const Snapshot before = SnapshotOf();
    EXPECT_EQ(
        "kitbag: would delete "
        "HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor\\Configuration\\Audio "
        "(3 values, 2 sections below); nothing is done without --yes\n",
        Kitbag({L"delete", L"Audio"}).errors);
    EXPECT_EQ(2u, Kitbag({L"delete", L"Audio", L""}).code);
    EXPECT_EQ(2u, Kitbag({L"delete", L"", L"--yes"}).code);
    EXPECT_EQ(before, SnapshotOf());

    EXPECT_EQ(0u, Kitbag({L"delete", L"Audio", L"", L"--yes"}).code);
    EXPECT_FALSE(RawKey("Audio").Has(L""));
    EXPECT_TRUE(RawKey("Audio").Has(L"Volume"));
    EXPECT_EQ(0u, Kitbag({L"delete", L"Audio", L"--yes"}).code);
    EXPECT_FALSE(RawKey::Exists("Audio"));
}

TEST_F(SettingsCommands, SayWhatIsNotThereAndCreateNothing) {
    RawKey("Audio").Set(L"Volume", 7);
    const Snapshot before = SnapshotOf();
    const std::string root =
        "kitbag: HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor\\Configuration\\";
    const struct {
        std::vector<std::wstring> words;
        std::string message;
    } rows[] = {
        {{L"list", L"Video"}, "Video does not exist\n"},
        {{L"get", L"Audio", L"Mute"}, "Audio, value \"Mute\" does not exist\n"},
        {{L"get", L"Video", L""}, "Video, value (default) does not exist\n"},
        {{L"delete", L"Audio", L"Mute", L"--yes"}, "Audio, value \"Mute\" does not exist\n"},
        {{L"delete", L"Video", L"--yes"}, "Video does not exist\n"},
    };
    for (const auto& [words, message] : rows) {
        const Ending ending = Kitbag(words);
        EXPECT_EQ(root + message, ending.errors);
        EXPECT_EQ(1u, ending.code) << message;
    }
    EXPECT_EQ(before, SnapshotOf());
}

/// A key that nobody may read or write while this lives.
class LockedKey {
 public:
    explicit LockedKey(const std::string& section) : key_(section) {
        ::InitializeSecurityDescriptor(&locked_, SECURITY_DESCRIPTOR_REVISION);
        ::InitializeAcl(&nobody_, sizeof nobody_, ACL_REVISION);
        ::SetSecurityDescriptorDacl(&locked_, TRUE, &nobody_, FALSE);
        EXPECT_FALSE(::RegSetKeySecurity(key_.Get(), DACL_SECURITY_INFORMATION, &locked_));
    }
    ~LockedKey() {
        ::SetSecurityDescriptorDacl(&locked_, TRUE, nullptr, FALSE);
        ::RegSetKeySecurity(key_.Get(), DACL_SECURITY_INFORMATION, &locked_);
    }

 private:
    const RawKey key_;
    SECURITY_DESCRIPTOR locked_;
    ACL nobody_;
};

TEST_F(SettingsCommands, SayWhatTheyMayNotTouch) {
    RawKey("Audio").Set(L"Volume", 7);
    const LockedKey locked("Locked");
    const std::vector<std::wstring> rows[] = {
        {L"get", L"Locked", L"Volume"},
        {L"set", L"Locked", L"Volume", L"dword", L"1"},
        {L"set", L"Locked\\Deeper\\Still", L"Volume", L"dword", L"1"},
        {L"delete", L"Locked", L"--yes"},
        {L"list", L"Locked"},
        {L"watch", L"Locked"},
        {L"export", In("all.reg")},
    };
    for (const auto& words : rows) {
        const Ending ending = Kitbag(words);
        EXPECT_EQ(3u, ending.code) << testing::PrintToString(words);
        EXPECT_THAT(ending.output + ending.errors, testing::HasSubstr("Locked"));
        EXPECT_THAT(ending.output + ending.errors, testing::HasSubstr("(error 5)"));
    }
    EXPECT_FALSE(exists(folder_ / "all.reg"));
    // What can be read is listed all the same.
    const Ending list = Kitbag({L"list", L"--tree"});
    EXPECT_THAT(list.output, testing::HasSubstr("        Volume  dword   7 (0x7)\n"));
    EXPECT_EQ(3u, list.code);
}

}  // namespace
