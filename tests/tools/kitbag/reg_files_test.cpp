#include <tests/tools/kitbag/tool.h>

#include <numeric>

namespace {

using namespace kitbag::test;
using namespace std::string_literals;
using testing::HasSubstr;

const std::string kHead = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string kRootKey = "HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor\\Configuration";

/// kitbag export, import, compare and reset.
struct RegFiles : ToolTest {
    static void DeleteAll() { ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kRoot); }
    Ending Import(const std::string& content) const {
        folder_.Write("import.reg", content);
        return Kitbag(L"import import.reg");
    }
};

/// Values of all types that every registry editor keeps byte by byte.
void StoreMany() {
    RawKey().Set(L"Configured by", L"Vidmoor \"Setup\" C:\\4.2\\");
    RawKey().Set(L"", L"default");
    RawKey().Set(L"日本\\\"語\"", L"Первый");
    for (const DWORD type : {DWORD{REG_NONE}, DWORD{REG_BINARY}, DWORD{REG_QWORD}, 0xffff0001ul})
        for (const std::size_t size : {0u, 1u, 15u, 27u, 28u, 29u, 1000u}) {
            std::string bytes(size, '\0');
            std::iota(bytes.begin(), bytes.end(), '\0');
            Store("Blocks", std::to_wstring(type) + L' ' + std::to_wstring(size), type, bytes);
        }
    RawKey("Numbers").Set(L"All", MAXDWORD);
    RawKey("Texts").Set(L"Empty", L"");
    RawKey("Texts\\Of [brackets]").Set(L"Lines", L"a\r\nb");
    Store("Texts", L"Variables", REG_EXPAND_SZ, Utf16(L"%TEMP%\0"s));
    Store("Texts", L"Several", REG_MULTI_SZ, Utf16(L"deu\0fra\0\0"s));
    RawKey("Without values\\Below");
}

TEST_F(RegFiles, GoBackAndForthBetweenKitbagAndTheRegistryEditor) {
    StoreMany();
    const Snapshot before = TakeSnapshot();
    EXPECT_EQ(0u, Kitbag(L"export kitbag.reg").code);
    EXPECT_EQ(0u,
              Run(L"reg export HKLM\\Software\\Tarnwick\\Vidmoor\\Configuration editor.reg").code);
    for (const std::wstring file : {L"kitbag.reg", L"editor.reg"}) {
        SCOPED_TRACE(testing::PrintToString(file));
        EXPECT_EQ(0u, Kitbag(L"compare " + file).code);
        DeleteAll();
        EXPECT_EQ(0u, Kitbag(L"import " + file).code);
        EXPECT_EQ(before, TakeSnapshot());
    }
    DeleteAll();
    EXPECT_EQ(0u, Run(L"reg import kitbag.reg").code);
    EXPECT_EQ(before, TakeSnapshot());
}

TEST_F(RegFiles, AreWrittenAsTheRegistryEditorWritesThem) {
    RawKey("Audio").Set(L"", L"x");
    RawKey("Audio").Set(L"A \"b\" \\", L"C:\\é");
    RawKey("Audio").Set(L"Volume", 70);
    Store("Audio", L"Block", REG_BINARY, std::string(30, '\xab'));
    RawKey("Audio-Video");
    EXPECT_EQ(0u, Kitbag(L"export Audio a.reg").code);
    EXPECT_EQ(
        Bytes(Utf16(L"\xfeffWindows Registry Editor Version 5.00\r\n\r\n"
                    L"[HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor\\Configuration\\Audio]\r\n"
                    L"@=\"x\"\r\n"
                    L"\"A \\\"b\\\" \\\\\"=\"C:\\\\é\"\r\n"
                    L"\"Block\"=hex:ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,"
                    L"ab,\\\r\n"
                    L"  ab,ab,ab,ab,ab,ab,ab,ab\r\n"
                    L"\"Volume\"=dword:00000046\r\n\r\n")),
        Bytes(ContentOf("a.reg")));
}

TEST_F(RegFiles, AreReadWithEveryLineThatEditorsWrite) {
    const Ending ending = Import(kHead + '[' + kRootKey +
                                 "\\A]\r\n"
                                 "\"escapes\"=\"\\\\ \\\" \\r\\n\"\r\n"
                                 " ; comment\r\n\t\r\n  \"blanks\" = dword: 0000000A ; ten\r\n"
                                 "\"short number\"=dword:1\r\n"
                                 "\"line break within\"=\"a\r\nb\"\r\n"
                                 "\"lines that go on\"=hex:01,\\\r\n  02, \\\n 3,FF\r\n"
                                 "\"typed bytes\"=hex(7):61,00,00,00,00,00\r\n"
                                 "\"large type\"=hex(ffff0001):\r\n"
                                 "\"the last counts\"=\"x\"\n\"THE LAST COUNTS\"=dword:2");
    EXPECT_EQ("", ending.errors);
    EXPECT_EQ(0u, ending.code);
    EXPECT_EQ((Snapshot{{L"A\\", kSection},
                        {L"A\\escapes", {REG_SZ, Bytes(Utf16(L"\\ \" \r\n\0"s))}},
                        {L"A\\blanks", {REG_DWORD, Bytes("\x0a\0\0\0"s)}},
                        {L"A\\short number", {REG_DWORD, Bytes("\1\0\0\0"s)}},
                        {L"A\\line break within", {REG_SZ, Bytes(Utf16(L"a\r\nb\0"s))}},
                        {L"A\\lines that go on", {REG_BINARY, Bytes("\1\2\3\xff")}},
                        {L"A\\typed bytes", {REG_MULTI_SZ, Bytes("a\0\0\0\0\0"s)}},
                        {L"A\\large type", {0xffff0001, Bytes("")}},
                        {L"A\\the last counts", {REG_DWORD, Bytes("\2\0\0\0"s)}}}),
              TakeSnapshot());
}

TEST_F(RegFiles, AreReadInEveryEncoding) {
    const std::string key =
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\tarnwick\\Vidmoor\\Configuration\\A]\n";
    for (const std::string& file :
         {"\xef\xbb\xbf" + kHead + key + "\"v\"=\"\xc3\xa9\"", kHead + key + "\"v\"=\"\xe9\"",
          "REGEDIT4\n" + key + "\"v\"=hex(1):e9,00"}) {
        SCOPED_TRACE(file);
        DeleteAll();
        EXPECT_EQ(0u, Import(file).code);
        EXPECT_EQ((Snapshot{{L"A\\", kSection}, {L"A\\v", {REG_SZ, Bytes("\xe9\0\0\0"s)}}}),
                  TakeSnapshot());
    }
}

TEST_F(RegFiles, DeleteWhatTheySayAndNothingElse) {
    StoreMany();
    Snapshot expected = TakeSnapshot();
    expected.erase(L"Configured by");
    std::erase_if(expected, [](const auto& entry) { return entry.first.starts_with(L"Texts\\"); });
    expected.emplace(L"Texts\\", kSection);
    EXPECT_EQ(0u, Import(kHead + '[' + kRootKey + "]\n\"Configured by\"=-\n\"Not there\"=-\n[-" +
                         kRootKey + "\\Not there]\n[-" + kRootKey + "\\Texts]\n[" + kRootKey +
                         "\\Texts]\n")
                      .code);
    EXPECT_EQ(expected, TakeSnapshot());
    EXPECT_EQ(0u, Import(kHead + "[-" + kRootKey + "]\n").code);
    EXPECT_EQ(Snapshot(), TakeSnapshot());
}

TEST_F(RegFiles, ThatAreNotWellFormedAreRefusedBeforeAnythingIsWritten) {
    const std::string key = '[' + kRootKey;
    const std::string head = kHead + key + "\\A]\n\"good\"=dword:1\n";
    const std::pair<std::string, const char*> rows[] = {
        {"", "line 1: this is no file of the registry editor\n"},
        {"Windows Registry Editor Version 6.00\n", "line 1: this is no file of the registry"},
        {kHead + "\"v\"=dword:1\n", "line 3: a value before the first key\n"},
        {head + "nonsense\n", "line 5: neither a key nor a value: nonsense\n"},
        {head + "\"v\"=\"open\n", "a quote is not closed\n"},
        {head + "\"v\"=\"C:\\temp\"\n", "line 5: a backslash in quotes is written twice\n"},
        {head + "\"v\"=\"a\" b\n", "line 5: neither a key nor a value: b\n"},
        {head + "\"v\"\n", "line 5: a value's name without its equals sign\n"},
        {head + "\"v\"=12\n", "line 5: neither a text, dword:, hex: nor -\n"},
        {head + "\"v\"=dword:123456789\n", "line 5: no hexadecimal number\n"},
        {head + "\"v\"=hex:1,\n", "line 5: no hexadecimal number\n"},
        {head + "\"v\"=hex:100\n", "line 5: no hexadecimal number\n"},
        {head + "\"v\"=hex:1,\\", "line 5: a line goes on without a next one\n"},
        {head + "\"v\"=hex(1:00\n", "line 5: a type without its closing bracket and colon\n"},
        {head + key, "line 5: a key without its closing bracket\n"},
        {head + key + "\\B] ; of [C]\n", "line 5: it is not clear where the key ends\n"},
        {head + '\0', "line 5: neither a key nor a value: "},
        {head + "[-" + kRootKey + "\\B]\n\"v\"=1\n", "line 6: a value of a key that is deleted\n"},
        {head + key + "\\A\\\\B]\n", "Configuration\\A\\\\B] is no path of a key\n"},
        {head + key + "\\" + std::string(256, 'x') + "]\n", "is no path of a key\n"},
        {head + "[HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor]\n", "; nothing was done\n"},
        {head + key + " 2]\n", "; nothing was done\n"},
        {head + "[-HKEY_CURRENT_USER" + kRootKey.substr(18) + "\\A]\n", "; nothing was done\n"},
    };
    for (const auto& [content, reason] : rows) {
        const Ending ending = Import(content);
        EXPECT_EQ(2u, ending.code) << reason;
        EXPECT_THAT(ending.errors, HasSubstr("import.reg: "));
        EXPECT_THAT(ending.errors, HasSubstr(reason));
    }
    EXPECT_EQ(2u, Kitbag(L"compare import.reg").code);
    EXPECT_FALSE(RawKey::Exists());
}

TEST_F(RegFiles, AreComparedBothWays) {
    RawKey("Audio").Set(L"Volume", 70);
    RawKey("Audio").Set(L"Language", L"de");
    RawKey("Audio").Set(L"Mute", 0ul);
    Store("Audio", L"Empty", REG_SZ, "");
    RawKey("Audio\\Zones").Set(L"Kitchen", 1);
    EXPECT_EQ(0u, Kitbag(L"export Audio a.reg").code);
    ::RegDeleteTreeW(RawKey("Audio").Get(), L"Zones");
    ::RegDeleteValueW(RawKey("Audio").Get(), L"Mute");
    RawKey("Audio").Set(L"language", L"fr");
    RawKey("Audio").Set(L"Empty", L"");
    RawKey("Audio").Set(L"New", 1);
    RawKey("Audio\\Added");
    RawKey("Video").Set(L"Not compared", 1);
    const Ending ending = Kitbag(L"compare a.reg");
    EXPECT_EQ(
        "different             [Audio] Language\n"
        "    file          string \"de\"\n"
        "    this machine  string \"fr\"\n"
        "only in the file      [Audio] Mute: dword 0 (0x0)\n"
        "only on this machine  [Audio] New: dword 1 (0x1)\n"
        "only on this machine  [Audio\\Added] the section\n"
        "only in the file      [Audio\\Zones] Kitchen: dword 1 (0x1)\n"
        "only in the file      [Audio\\Zones] the section\n"
        "6 differences\n",
        ending.output);
    EXPECT_EQ(1u, ending.code);
}

TEST_F(RegFiles, AreWrittenWithConsentOrNothingIsDone) {
    StoreMany();
    folder_.Write("mine.reg", "mine");
    const Snapshot before = TakeSnapshot();
    const struct {
        const char* about;
        std::wstring command;
        DWORD code;
    } rows[] = {
        {"a file is there", L"export Texts mine.reg", 2},
        {"a file is there", L"reset Texts mine.reg --yes", 2},
        {"a file is there", L"report mine.reg", 2},
        {"a folder is there", L"export Texts . --yes", 2},
        {"the folder is missing", L"export Texts missing\\a.reg", 1},
        {"the folder is missing", L"reset Texts missing\\a.reg --yes", 1},
        {"without consent", L"reset Texts a.reg", 2},
        {"as a whole", L"reset \"\" a.reg --yes", 2},
        {"no such section", L"reset Nowhere a.reg --yes", 1},
        {"no such file", L"import a.reg", 1},
    };
    for (const auto& [about, command, code] : rows) EXPECT_EQ(code, Kitbag(command).code) << about;
    EXPECT_EQ(before, TakeSnapshot());
    EXPECT_EQ("mine", ContentOf("mine.reg"));
    EXPECT_EQ(0u, Kitbag(L"export Texts mine.reg --yes").code);
    EXPECT_EQ(0u, Kitbag(L"compare mine.reg").code);
    EXPECT_EQ(1, std::ranges::distance(std::filesystem::directory_iterator(folder_.Path())));
}

TEST_F(RegFiles, KeepACopyOfWhatIsResetByteByByteHoweverDamaged) {
    StoreMany();
    Store("Texts", L"short number", REG_DWORD, "\1\2\3");
    Store("Texts", L"no bytes", REG_SZ, "");
    Store("Texts", L"not terminated", REG_SZ, "a\0b\0"s);
    Store("Texts", L"odd", REG_SZ, "a\0b"s);
    Store("Texts", L"zero within", REG_SZ, "a\0\0\0b\0\0\0"s);
    Store("Texts", L"texts not terminated", REG_MULTI_SZ, "a\0"s);
    const Snapshot before = TakeSnapshot();
    EXPECT_EQ(0u, Kitbag(L"reset Texts copy.reg --yes").code);
    EXPECT_FALSE(RawKey::Exists("Texts"));
    EXPECT_EQ(0u, Kitbag(L"import copy.reg").code);
    EXPECT_EQ(before, TakeSnapshot());
}

TEST_F(RegFiles, OfWhatIsResetAreNamedForTheSectionAndTheTime) {
    RawKey("Texts\\Of: all?").Set(L"v", 1);
    const Ending ending = Kitbag(L"reset \"Texts\\Of: all?\" --yes");
    EXPECT_EQ(0u, ending.code) << ending.errors;
    EXPECT_THAT(
        ending.output,
        testing::MatchesRegex("copied to .*\\\\Texts_Of\\. all_ 20..-..-.. ..\\...\\...\\.reg\n"
                              "deleted .*\n"));
}

}  // namespace
