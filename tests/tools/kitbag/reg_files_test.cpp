#include <tests/tools/kitbag/tool.h>

#include <random>

namespace {

using namespace kitbag::test;
using namespace std::string_literals;
using testing::HasSubstr;

constexpr wchar_t kHead[] = L"Windows Registry Editor Version 5.00\n\n";
constexpr wchar_t kKey[] = L"[HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor\\Configuration";

/// kitbag export, import, compare and reset.
struct RegFiles : ToolTest {
    static void Store(const std::string& section, const wchar_t* name, DWORD type,
                      const std::string& bytes) {
        RawKey(section).Set(name, type, bytes.data(), static_cast<DWORD>(bytes.size()));
    }
    static void DeleteAll() { ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kRoot); }
    Ending Import(const std::wstring& text) const {
        WriteWide("import.reg", text);
        return Kitbag({L"import", In("import.reg")});
    }
    static Ending Reg(const std::vector<std::wstring>& words) {
        return RunProgram(L"C:\\windows\\system32\\reg.exe", words);
    }
};

/// Values of all types that every registry editor keeps byte by byte.
void StoreMany() {
    const RawKey root;
    root.Set(L"Configured by", L"Vidmoor \"Setup\" C:\\4.2\\");
    root.Set(L"", L"default");
    root.Set(L"日本\\\"語\"", L"Первый");
    std::mt19937 random(17);
    for (const DWORD type : {DWORD{REG_NONE}, DWORD{REG_BINARY}, DWORD{REG_QWORD}, 0xffff0001ul}) {
        for (const std::size_t size : {0u, 1u, 15u, 27u, 28u, 29u, 1000u}) {
            std::string bytes(size, '\0');
            std::ranges::generate(bytes, [&] { return static_cast<char>(random()); });
            const std::wstring name = std::to_wstring(type) + L' ' + std::to_wstring(size);
            RawKey("Blocks").Set(name.c_str(), type, bytes.data(), static_cast<DWORD>(size));
        }
    }
    RawKey("Numbers").Set(L"All", MAXDWORD);
    RawKey("Texts").Set(L"Empty", L"");
    RawKey("Texts\\Of [brackets]").Set(L"Lines", L"a\r\nb");
    RawKey("Texts").Set(L"Variables", REG_EXPAND_SZ, L"%TEMP%", 14);
    RawKey("Texts").Set(L"Several", REG_MULTI_SZ, L"deu\0fra\0", 18);
    RawKey("Without values\\Below");
}

TEST_F(RegFiles, GoBackAndForthBetweenKitbagAndTheRegistryEditor) {
    StoreMany();
    const Snapshot before = SnapshotOf();
    EXPECT_EQ(0u, Kitbag({L"export", In("kitbag.reg")}).code);
    EXPECT_EQ(
        0u, Reg({L"export", L"HKLM\\Software\\Tarnwick\\Vidmoor\\Configuration", In("editor.reg")})
                .code);
    for (const char* file : {"kitbag.reg", "editor.reg"}) {
        SCOPED_TRACE(file);
        EXPECT_EQ(0u, Kitbag({L"compare", In(file)}).code);
        DeleteAll();
        EXPECT_EQ(0u, Kitbag({L"import", In(file)}).code);
        EXPECT_EQ(before, SnapshotOf());
    }
    DeleteAll();
    EXPECT_EQ(0u, Reg({L"import", In("kitbag.reg")}).code);
    EXPECT_EQ(before, SnapshotOf());
}

TEST_F(RegFiles, KeepDamagedValuesByteByByte) {
    Store("Damaged", L"short number", REG_DWORD, "\1\2\3");
    Store("Damaged", L"no bytes", REG_SZ, "");
    Store("Damaged", L"not terminated", REG_SZ, "a\0b\0"s);
    Store("Damaged", L"odd", REG_SZ, "a\0b"s);
    Store("Damaged", L"zero within", REG_SZ, "a\0\0\0b\0\0\0"s);
    Store("Damaged", L"texts not terminated", REG_MULTI_SZ, "a\0"s);
    const Snapshot before = SnapshotOf();
    EXPECT_EQ(0u, Kitbag({L"export", L"Damaged", In("a.reg")}).code);
    DeleteAll();
    EXPECT_EQ(0u, Kitbag({L"import", In("a.reg")}).code);
    EXPECT_EQ(before, SnapshotOf());
}

TEST_F(RegFiles, AreWrittenAsTheRegistryEditorWritesThem) {
    RawKey("Audio").Set(L"", L"x");
    RawKey("Audio").Set(L"A \"b\" \\", L"C:\\é");
    RawKey("Audio").Set(L"Volume", 70);
    Store("Audio", L"Block", REG_BINARY, std::string(30, '\xab'));
    RawKey("Audio\\Zones");
    RawKey("Audio-Video");
    EXPECT_EQ(0u, Kitbag({L"export", L"Audio", In("written.reg")}).code);
    std::wstring bytes;
    for (int i = 0; i < 22; ++i) bytes += L"ab,";
    WriteWide("expected.reg", std::wstring(kHead) + kKey +
                                  L"\\Audio]\n@=\"x\"\n\"A \\\"b\\\" \\\\\"=\"C:\\\\é\"\n" +
                                  L"\"Block\"=hex:" + bytes + L"\\\n  ab,ab,ab,ab,ab,ab,ab,ab\n" +
                                  L"\"Volume\"=dword:00000046\n\n" + kKey + L"\\Audio\\Zones]\n\n");
    EXPECT_EQ(Bytes(ContentOf("expected.reg")), Bytes(ContentOf("written.reg")));
}

TEST_F(RegFiles, AreReadInEveryFormThatEditorsWrite) {
    const std::string key =
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\tarnwick\\Vidmoor\\Configuration\\A]\n";
    const std::string head = "Windows Registry Editor Version 5.00\r\n\r\n" + key;
    const struct {
        const char* about;
        std::string file;
        DWORD type;
        std::string bytes;
    } rows[] = {
        {"escapes", head + "\"v\"=\"\\\\ \\\" \\r\\n\"", REG_SZ, "\\\0 \0\"\0 \0\r\0\n\0\0\0"s},
        {"blanks and comments", head + " ; c\r\n\t\r\n  \"v\" = dword: 0000000A ; ten", REG_DWORD,
         "\x0a\0\0\0"s},
        {"short number", head + "\"v\"=dword:1", REG_DWORD, "\1\0\0\0"s},
        {"line break within a text", head + "\"v\"=\"a\r\nb\"", REG_SZ, "a\0\r\0\n\0b\0\0\0"s},
        {"lines that go on", head + "\"v\"=hex:01,\\\r\n  02, \\\n 3,FF", REG_BINARY, "\1\2\3\xff"},
        {"typed bytes", head + "\"v\"=hex(7):61,00,00,00,00,00", REG_MULTI_SZ, "a\0\0\0\0\0"s},
        {"large type", head + "\"v\"=hex(ffff0001):", 0xffff0001, ""},
        {"utf-8", "\xef\xbb\xbf" + head + "\"v\"=\"\xc3\xa9\"", REG_SZ, "\xe9\0\0\0"s},
        {"code page", head + "\"v\"=\"\xe9\"", REG_SZ, "\xe9\0\0\0"s},
        {"version 4", "REGEDIT4\n" + key + "\"v\"=hex(2):e9,00", REG_EXPAND_SZ, "\xe9\0\0\0"s},
        {"the last one counts", head + "\"v\"=\"x\"\n\"V\"=dword:2", REG_DWORD, "\2\0\0\0"s},
        {"deleted and set again", head + "\"v\"=-\n[-" + key.substr(1) + key + "\"v\"=dword:3",
         REG_DWORD, "\3\0\0\0"s},
    };
    for (const auto& [about, file, type, bytes] : rows) {
        SCOPED_TRACE(about);
        DeleteAll();
        Write("a.reg", file);
        const Ending ending = Kitbag({L"import", In("a.reg")});
        EXPECT_EQ("", ending.errors);
        EXPECT_EQ(0u, ending.code);
        EXPECT_EQ((Snapshot{{L"A\\", {0, Bytes("")}}, {L"A\\v", {type, Bytes(bytes)}}}),
                  SnapshotOf());
    }
}

TEST_F(RegFiles, DeleteWhatTheySayAndNothingElse) {
    StoreMany();
    Snapshot expected = SnapshotOf();
    expected.erase(L"Configured by");
    std::erase_if(expected, [](const auto& entry) { return entry.first.starts_with(L"Texts\\"); });
    EXPECT_EQ(0u, Import(kHead + (kKey + L"]\n\"Configured by\"=-\n\"Not there\"=-\n"s) + L"[-" +
                         (kKey + 1) + L"\\Texts]\n[-" + (kKey + 1) + L"\\Not there]\n")
                      .code);
    EXPECT_EQ(expected, SnapshotOf());
    EXPECT_EQ(0u, Import(kHead + (L"[-"s + (kKey + 1)) + L"]\n").code);
    EXPECT_EQ(Snapshot(), SnapshotOf());
}

TEST_F(RegFiles, ThatAreNotWellFormedAreRefusedBeforeAnythingIsWritten) {
    const std::wstring head = kHead + (kKey + L"\\A]\n\"good\"=dword:1\n"s);
    const struct {
        std::wstring text;
        const char* reason;
    } rows[] = {
        {L"", "line 1: this is no file of the registry editor\n"},
        {L"Windows Registry Editor Version 6.00\n", "line 1: this is no file of the registry"},
        {kHead + L"\"v\"=dword:1\n"s, "line 3: a value before the first key\n"},
        {head + L"nonsense\n", "line 5: neither a key nor a value: nonsense\n"},
        {head + L"\"v\"=\"open\n", "a quote is not closed\n"},
        {head + L"\"v\"=\"C:\\temp\"\n", "line 5: a backslash in quotes is written twice\n"},
        {head + L"\"v\"=\"a\" b\n", "line 5: neither a key nor a value: b\n"},
        {head + L"\"v\"\n", "line 5: a value's name without its equals sign\n"},
        {head + L"\"v\"=12\n", "line 5: neither a text, dword:, hex: nor -\n"},
        {head + L"\"v\"=dword:\n", "line 5: no hexadecimal number\n"},
        {head + L"\"v\"=dword:123456789\n", "line 5: no hexadecimal number\n"},
        {head + L"\"v\"=hex:1,\n", "line 5: no hexadecimal number\n"},
        {head + L"\"v\"=hex:100\n", "line 5: no hexadecimal number\n"},
        {head + L"\"v\"=hex:1,\\", "line 5: a line goes on without a next one\n"},
        {head + L"\"v\"=hex(1:00\n", "line 5: a type without its closing bracket and colon\n"},
        {head + kKey, "line 5: a key without its closing bracket\n"},
        {head + kKey + L"\\B] ; of [C]\n", "line 5: it is not clear where the key ends\n"},
        {head + std::wstring(1, L'\0'), "line 5: neither a key nor a value: "},
        {head + L"[-" + (kKey + 1) + L"\\B]\n\"v\"=dword:1\n",
         "line 6: a value of a key that is deleted\n"},
        {head + kKey + L"\\A\\\\B]\n", "Configuration\\A\\\\B] is no path of a key\n"},
        {head + kKey + L"\\" + std::wstring(256, L'x') + L"]\n", "is no path of a key\n"},
        {head + L"[HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor]\n", "; nothing was done\n"},
        {head + kKey + L" 2]\n", "; nothing was done\n"},
        {head + L"[-HKEY_CURRENT_USER\\Software\\Tarnwick\\Vidmoor\\Configuration\\A]\n",
         "; nothing was done\n"},
    };
    for (const auto& [text, reason] : rows) {
        for (const wchar_t* command : {L"import", L"compare"}) {
            WriteWide("bad.reg", text);
            const Ending ending = Kitbag({command, In("bad.reg")});
            EXPECT_EQ(2u, ending.code) << reason;
            EXPECT_THAT(ending.errors, HasSubstr("bad.reg: "));
            EXPECT_THAT(ending.errors, HasSubstr(reason));
        }
    }
    EXPECT_FALSE(RawKey::Exists());
    EXPECT_EQ(1u, Kitbag({L"import", In("missing.reg")}).code);
}

TEST_F(RegFiles, AreComparedBothWays) {
    RawKey("Audio").Set(L"Volume", 70);
    RawKey("Audio").Set(L"Language", L"de");
    RawKey("Audio").Set(L"Mute", 0ul);
    Store("Audio", L"Empty", REG_SZ, "");
    RawKey("Audio\\Zones").Set(L"Kitchen", 1);
    EXPECT_EQ(0u, Kitbag({L"export", L"Audio", In("a.reg")}).code);
    ::RegDeleteTreeW(RawKey("Audio").Get(), L"Zones");
    ::RegDeleteValueW(RawKey("Audio").Get(), L"Mute");
    RawKey("Audio").Set(L"language", L"fr");
    RawKey("Audio").Set(L"Empty", L"");
    RawKey("Audio").Set(L"New", 1);
    RawKey("Audio\\Added");
    RawKey("Video").Set(L"Not compared", 1);
    const Ending ending = Kitbag({L"compare", In("a.reg")});
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

TEST_F(RegFiles, ReplaceNoOtherUnlessThatIsWanted) {
    RawKey("Audio").Set(L"Volume", 70);
    Write("a.reg", "mine");
    EXPECT_EQ(2u, Kitbag({L"export", L"Audio", In("a.reg")}).code);
    EXPECT_EQ(2u, Kitbag({L"reset", L"Audio", In("a.reg"), L"--yes"}).code);
    EXPECT_EQ(2u, Kitbag({L"report", In("a.reg")}).code);
    EXPECT_EQ("mine", ContentOf("a.reg"));
    EXPECT_EQ(2u, Kitbag({L"export", L"Audio", folder_.Path().wstring(), L"--yes"}).code);
    EXPECT_EQ(1u, Kitbag({L"export", L"Audio", In("missing\\a.reg")}).code);
    EXPECT_EQ(0u, Kitbag({L"export", L"Audio", In("a.reg"), L"--yes"}).code);
    EXPECT_EQ(0u, Kitbag({L"compare", In("a.reg")}).code);
    EXPECT_EQ(1, std::ranges::distance(std::filesystem::directory_iterator(folder_.Path())));
}

TEST_F(RegFiles, KeepACopyOfWhatIsReset) {
    StoreMany();
    const Snapshot before = SnapshotOf();
    EXPECT_EQ(2u, Kitbag({L"reset", L"Texts", In("copy.reg")}).code);
    EXPECT_EQ(1u, Kitbag({L"reset", L"Texts", In("missing\\copy.reg"), L"--yes"}).code);
    EXPECT_EQ(2u, Kitbag({L"reset", L"", In("copy.reg"), L"--yes"}).code);
    EXPECT_EQ(1u, Kitbag({L"reset", L"Nowhere", In("copy.reg"), L"--yes"}).code);
    EXPECT_EQ(before, SnapshotOf());
    EXPECT_FALSE(exists(folder_ / "copy.reg"));

    EXPECT_EQ(0u, Kitbag({L"reset", L"Texts", In("copy.reg"), L"--yes"}).code);
    EXPECT_FALSE(RawKey::Exists("Texts"));
    EXPECT_EQ(0u, Kitbag({L"import", In("copy.reg")}).code);
    EXPECT_EQ(before, SnapshotOf());
}

TEST_F(RegFiles, OfWhatIsResetAreNamedForTheSectionAndTheTime) {
    RawKey("Texts\\Of: all?").Set(L"v", 1);
    const Ending ending = Kitbag({L"reset", L"Texts\\Of: all?", L"--yes"});
    EXPECT_EQ(0u, ending.code) << ending.errors;
    EXPECT_THAT(
        ending.output,
        testing::MatchesRegex("copied to .*\\\\Texts_Of\\. all_ 20..-..-.. ..\\...\\...\\.reg\n"
                              "deleted .*\n"));
}

}  // namespace
