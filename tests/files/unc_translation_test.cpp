#include <gmock/gmock.h>
#include <kitbag/files/unc_translation.h>
#include <tests/files/stand_ins/stand_in_server.h>
#include <tests/support/code_page_932.h>
#include <tests/support/own_process.h>
#include <tests/support/printing.h>
#include <tests/support/text_forms.h>
#include <tests/support/trace_capture.h>
#include <tests/support/windows_98.h>

namespace {

using namespace kitbag::test;

HMODULE WINAPI LoadStandIn(LPCSTR library) {
    return ::LoadLibraryA(("stand_in_" + std::string(library)).c_str());
}

enum class Family { kNt, k9x };

/// Stand-ins of the network libraries of either family. The library finds its network functions
/// and its family once: each of these tests has a process of its own.
struct UncTranslation : testing::TestWithParam<Family> {
    bool IsNt() const { return GetParam() == Family::kNt; }

    std::string Narrow(const std::wstring& text) const {
        return server_.codePage == 932 ? In932(text) : std::string(text.begin(), text.end());
    }

    /// Expects this translation with its terminator, where there is room for one, and nothing
    /// written behind; an empty text stands for a failure.
    template <class Ch>
    void ExpectInForm(const std::basic_string<Ch>& from, std::basic_string<Ch> to, DWORD size) {
        const bool isPath = from.size() > 1 && from[1] == ':';
        const auto translate = isPath ? Exports<Ch>::LocalToUNC : Exports<Ch>::UNCToLocal;
        SCOPED_TRACE(Called(isPath ? "KB_LocalToUNC" : "KB_UNCToLocal", from, size));
        std::basic_string<Ch> buffer(MAX_PATH, '#');
        const DWORD written = translate(from.c_str(), buffer.data(), size);
        ASSERT_EQ(to.size(), written);
        if (!to.empty() && to.size() < size) to += '\0';
        ASSERT_EQ(to, buffer.substr(0, to.size()));
        ASSERT_EQ(buffer.npos, buffer.find_first_not_of('#', to.size())) << "written behind";
    }
    void Expect(const std::wstring& from, const std::wstring& to, DWORD size = MAX_PATH) {
        ExpectInForm(Narrow(from), Narrow(to), size);
        ExpectInForm(from, to, size);
        ASSERT_EQ(0, server_.blocks) << "not given back";
    }

    StandInServer& server_ = *reinterpret_cast<StandInServer*>(
        ::GetProcAddress(LoadStandIn(IsNt() ? "netapi32.dll" : "svrapi.dll"), "server"));
    std::unique_ptr<Windows98> windows98_{IsNt() ? nullptr : new Windows98};
    ImportPatch load_{"LoadLibraryA", LoadStandIn};
};
INSTANTIATE_TEST_SUITE_P(On, UncTranslation, testing::Values(Family::kNt, Family::k9x),
                         [](const auto& test) { return test.param == Family::kNt ? "Nt" : "9x"; });

const std::vector<StandInShare> kRootAndMedia = {{L"Root", L"C:\\"}, {L"Media", L"C:\\Media"}};

TEST_P(UncTranslation, GoesByTheMostSpecificShareThatFits) {
    if (RanInAProcessOfItsOwn()) return;
    server_.shares = kRootAndMedia;
    const struct {
        const char* about;
        const wchar_t *from, *to;
        DWORD size = MAX_PATH;
    } rows[] = {
        {"below a folder's share", L"C:\\Media\\a.mpg", L"\\\\PC\\Media\\a.mpg"},
        {"the share itself", L"C:\\Media", L"\\\\PC\\Media"},
        {"inside a folder's name", L"C:\\Mediaeval\\b", L"\\\\PC\\Mediaeval\\b"},
        {"below a drive's share", L"C:\\Other\\b", L"\\\\PC\\Root\\Other\\b"},
        {"the drive", L"C:\\", L"\\\\PC\\Root\\"},
        {"another case", L"c:\\mEDIA\\a", L"\\\\PC\\Media\\a"},
        {"room for the terminator", L"C:\\Media\\a.mpg", L"\\\\PC\\Media\\a.mpg", 17},
        {"room behind a drive's share", L"C:\\M", L"\\\\PC\\Root\\M", 12},
        {"filled to the last character", L"C:\\M", L"\\\\PC\\Root\\M", 11},
        {"back", L"\\\\PC\\Media\\a.mpg", L"C:\\Media\\a.mpg"},
        {"back, another case", L"\\\\pc\\mEDIA\\A", L"C:\\Media\\A"},
        {"back, the share itself", L"\\\\PC\\Media", L"C:\\Media"},
        {"back, the drive", L"\\\\PC\\Root", L"C:\\"},
        {"back, below the drive", L"\\\\PC\\Root\\x", L"C:\\x"},
        {"back, room for the terminator", L"\\\\PC\\Media\\a", L"C:\\Media\\a", 11},
        {"back, a share whose name did not match", L"\\\\PC\\Media\\a", L"C:\\a", 10},
        {"back, two names one after the other", L"\\\\PC\\MediaRoot\\a", L"C:\\a"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.about);
        ASSERT_NO_FATAL_FAILURE(Expect(row.from, row.to, row.size));
    }
    server_.shares = {{L"LongName", L"C:\\Media"}, {L"C", L"C:\\"}};
    ASSERT_NO_FATAL_FAILURE(Expect(L"C:\\Media\\a", L"\\\\PC\\LongName\\a", 16));
    ASSERT_NO_FATAL_FAILURE(Expect(L"C:\\Media\\a", L"\\\\PC\\C\\Media\\a", 15));
    server_.shares = {{L"B", L"C:\\b"}, {L"A", L"C:\\a"}, {L"Not", L"C:\\a"}};
    ASSERT_NO_FATAL_FAILURE(Expect(L"\\\\PC\\B\\x", L"C:\\b\\x")) << "equally long paths";
    ASSERT_NO_FATAL_FAILURE(Expect(L"\\\\PC\\AB", L"C:\\b")) << "tried in the paths' order";
    ASSERT_NO_FATAL_FAILURE(Expect(L"\\\\PC\\BA", L"")) << "tried in the paths' order";
}

TEST_P(UncTranslation, TracesWhyThereIsNone) {
    if (RanInAProcessOfItsOwn()) return;
    server_.shares = kRootAndMedia;
    TraceCapture trace;
    const auto expectNone = [&](const std::wstring& from, TraceCapture::Texts lines, DWORD size) {
        for (std::string& line : lines) line += '\n';
        ASSERT_NO_FATAL_FAILURE(ExpectInForm(Narrow(from), std::string(), size));
        trace.Expect(lines);
        ASSERT_NO_FATAL_FAILURE(ExpectInForm(from, std::wstring(), size));
        trace.Expect(lines);
    };
    const std::string to = "LocalToUNC: ", back = "UNCToLocal: ",
                      small = "output buffer too small ", invalid = "Invalid UNC name ",
                      none = "No network share found for given local path";
    expectNone(L"D:\\", {to + none}, MAX_PATH);
    expectNone(L"C:\\Media",
               {to + small + "(10 required, 10 provided)",
                to + small + "(14 required, 10 provided)", to + none},
               10);
    expectNone(L"", {back + "Invalid or empty parameters passed in"}, MAX_PATH);
    expectNone(L"\\PC\\Media", {back + invalid + "(no double opening back slashes)"}, MAX_PATH);
    expectNone(L"//PC/Media", {back + invalid + "(no double opening back slashes)"}, MAX_PATH);
    for (const wchar_t* other : {L"\\\\QC\\Media", L"\\\\P", L"\\\\"})
        expectNone(other, {back + "UNC not on local computer (wrong computer name)"}, MAX_PATH);
    for (const wchar_t* open : {L"\\\\PC", L"\\\\PC2\\Media"})
        expectNone(open, {back + invalid + "(no back slash after computer name)"}, MAX_PATH);
    expectNone(L"\\\\PC\\Films", {back + none}, MAX_PATH);
    expectNone(L"\\\\PC\\Media",
               {back + small + "(8 required, 3 provided)",
                back + small + "(3 required, 3 provided)", back + none},
               3);

    const auto expectBothWays = [&](const char* on9x, const char* line) {
        TraceCapture::Texts lines;
        if (!IsNt()) lines.emplace_back(on9x);
        lines.push_back(to + line);
        expectNone(L"C:\\", lines, MAX_PATH);
        lines.back() = back + line;
        expectNone(L"\\\\PC\\Root", lines, MAX_PATH);
    };
    server_.nameStatus = 5;
    expectBothWays("GetComputerName: A system error has occurred: 5", "Cannot get computer name");
    server_.nameStatus = 0;
    server_.shares.clear();
    server_.sharesStatus = 6;
    expectBothWays("GetShareListA98ME: A system error has occurred: 6",
                   "No shares found on computer");
}

TEST_P(UncTranslation, GoesByDiskSharesOnlyAndTheFirstOfEachPath) {
    if (RanInAProcessOfItsOwn()) return;
    constexpr unsigned printer = 1, hidden = 0x80000000;
    server_.shares = {{L"First", L"C:\\a"},
                      {L"Second", L"C:\\a"},
                      {L"Print", L"C:\\b", printer},
                      {L"C$", L"C:\\", hidden}};
    ASSERT_NO_FATAL_FAILURE(Expect(L"C:\\a\\x", L"\\\\PC\\First\\x"));
    ASSERT_NO_FATAL_FAILURE(Expect(L"C:\\b\\x", L""));
    server_.shares.assign(19, {L"Print", L"C:\\b", printer});
    server_.shares.push_back({L"Twentieth", L"D:\\"});
    server_.shares.push_back({L"Last", L"E:\\"});
    ASSERT_NO_FATAL_FAILURE(Expect(L"D:\\x", L"\\\\PC\\Twentieth\\x"));
    ASSERT_NO_FATAL_FAILURE(Expect(L"E:\\x", IsNt() ? L"\\\\PC\\Last\\x" : L""));
}

TEST_P(UncTranslation, ComparesWithoutRegardToCaseAlsoWhereTheSystemCannot) {
    if (RanInAProcessOfItsOwn()) return;
    server_.shares = {{L"R\xe4taz", L"C:\\az\xc4"}};
    ASSERT_NO_FATAL_FAILURE(Expect(L"c:\\AZ\xe4\\x", L"\\\\PC\\R\xe4taz\\x"));
    // What the function is on Windows 9x.
    const ImportPatch upper(
        "CharUpperBuffW", +[](wchar_t*, DWORD) WINAPI -> DWORD { return 0; });
    ASSERT_NO_FATAL_FAILURE(ExpectInForm<wchar_t>(L"c:\\AZ\xc4\\x", L"\\\\PC\\R\xe4taz\\x", 99));
    ASSERT_NO_FATAL_FAILURE(ExpectInForm<wchar_t>(L"\\\\pC\\r\xe4TAZ\\x", L"C:\\az\xc4\\x", 99));
}

TEST_P(UncTranslation, TakesTheSecondByteOfACharacterForNoSeparator) {
    if (RanInAProcessOfItsOwn()) return;
    const CodePage932 japanese;
    server_.codePage = 932;
    server_.shares = {{L"\x8868", L"D:\\\x8868"}, {L"Root", L"E:\\"}};
    ASSERT_NO_FATAL_FAILURE(Expect(L"D:\\\x8868\\a\x8868", L"\\\\PC\\\x8868\\a\x8868"));
    ASSERT_NO_FATAL_FAILURE(Expect(L"D:\\\x8868", L"\\\\PC\\\x8868"));
    ASSERT_NO_FATAL_FAILURE(Expect(L"\\\\PC\\\x8868\\a", L"D:\\\x8868\\a"));
    ASSERT_NO_FATAL_FAILURE(Expect(L"\\\\PC\\\x8868", L"D:\\\x8868"));
    ASSERT_NO_FATAL_FAILURE(Expect(L"\\\\PC\\root\\\x8868", L"E:\\\x8868"));
    // Full-width letters have cases, too; the bytes of \x30a2 and \x30c2 differ as 'A' and 'a' do.
    server_.shares = {{L"\xff21", L"D:\\\xff41"}, {L"\x30a2", L"D:\\\x30a2"}};
    ASSERT_NO_FATAL_FAILURE(Expect(L"D:\\\xff21\\x", L"\\\\PC\\\xff21\\x"));
    ASSERT_NO_FATAL_FAILURE(Expect(L"D:\\\x30c2\\x", L""));
    if (IsNt()) return;
    // Cut off in the middle of its last character; the byte that is left begins any other, too.
    server_.shares = {{L"twelve bytes\x8868", L"D:\\"}};
    const ImportPatch asItIs(
        "CharUpperBuffA", +[](char*, DWORD size) WINAPI { return size; });
    ASSERT_NO_FATAL_FAILURE(
        ExpectInForm(In932(L"\\\\PC\\twelve bytes\x8868\\a"), std::string(), 99));
}

TEST_P(UncTranslation, RefusesBuffersThatCannotBeWritten) {
    if (RanInAProcessOfItsOwn()) return;
    server_.shares = kRootAndMedia;
    char buffer[10] = "untouched";
    wchar_t wide[10] = L"untouched";
    TraceCapture trace;
    EXPECT_EQ(0u, KB_LocalToUNCA(nullptr, buffer, 10));
    trace.Expect({"LocalToUNC: Invalid or empty parameters passed in\n"});
    EXPECT_EQ(0u, KB_UNCToLocalW(nullptr, wide, 10));
    EXPECT_EQ(0u, KB_LocalToUNCA("C:\\", nullptr, 10));
    EXPECT_EQ(0u, KB_LocalToUNCA("C:\\", buffer, 0));
    EXPECT_EQ(0u, KB_LocalToUNCA("C:\\", buffer, 0x7fffffff)) << "beyond the memory";
    EXPECT_EQ(0u, KB_LocalToUNCW(L"C:\\", wide, 0x80000005)) << "too many bytes to be counted";
    EXPECT_STREQ("untouched", buffer);
    EXPECT_STREQ(L"untouched", wide);
}

TEST_P(UncTranslation, KnowsTheSharesThatWindows9xTellsAtOnce) {
    if (RanInAProcessOfItsOwn()) return;
    TraceCapture trace;
    const auto expectFound = [&](const TraceCapture::Texts& lines) {
        ExpectInForm<char>("A:\\x", "\\\\PC\\A\\x", MAX_PATH);
        trace.Expect(IsNt() ? TraceCapture::Texts() : lines);
    };
    const std::string notAll = "GetShareListA98ME: Not all entries have been enumerated\n";
    server_.shares = {{L"A", L"A:\\"}};
    if (!IsNt()) server_.sharesStatus = ERROR_MORE_DATA;
    expectFound({notAll});
    server_.sharesStatus = 0;
    server_.shares.resize(21, {L"Print", L"C:\\b", 1});
    expectFound({notAll});
    server_.shares.resize(20);
    expectFound({});
    server_.shares = {{L"A", L"A:\\"}, {L"Bad", L""}, {L"C", L"C:\\"}};
    expectFound({"GetShareListA98ME: An access violation has occurred\n"});
    if (!IsNt()) ExpectInForm<char>("C:\\x", "", MAX_PATH);
}

TEST_P(UncTranslation, NeedsTheNetworkLibraryAtRunTimeOnly) {
    if (RanInAProcessOfItsOwn()) return;
    EXPECT_THAT(ImportedNames(), testing::Each(testing::Not(testing::StartsWith("Net"))));
    TraceCapture trace;
    const ImportPatch missing(
        "LoadLibraryA", +[](LPCSTR) WINAPI -> HMODULE { return nullptr; });
    ExpectInForm<char>("C:\\", "", MAX_PATH);
    trace.Expect({"LocalToUNC: Cannot get computer name\n"});
}

TEST_P(UncTranslation, FindsNoSharesWithoutTheFunctionThatTellsThem) {
    if (RanInAProcessOfItsOwn()) return;
    server_.shares = kRootAndMedia;
    TraceCapture trace;
    const ImportPatch find(
        "GetProcAddress", +[](HMODULE library, const char* name) WINAPI -> FARPROC {
            if (name == std::string("NetShareEnum")) return nullptr;
            return ::GetProcAddress(library, name);
        });
    ExpectInForm<char>("C:\\", "", MAX_PATH);
    TraceCapture::Texts lines = {"LocalToUNC: No shares found on computer\n"};
    if (IsNt())
        lines.insert(lines.begin(), "GetShareListWNT: Cannot load functions from netapi32.dll\n");
    trace.Expect(lines);
}

}  // namespace
