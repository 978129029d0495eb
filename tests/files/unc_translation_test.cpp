#include <gmock/gmock.h>
#include <kitbag/files/unc_translation.h>
#include <tests/files/stand_ins/stand_in_server.h>
#include <tests/support/import_patch.h>
#include <tests/support/text_forms.h>
#include <tests/support/trace_capture.h>

#include <new>
#include <optional>

namespace {

using kitbag::test::ImportPatch;
using kitbag::test::Text;

BOOL WINAPI Windows98(OSVERSIONINFOA* version) {
    version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    return TRUE;
}
HMODULE WINAPI LoadStandIn(LPCSTR library) {
    return ::LoadLibraryA(("stand_in_" + std::string(library)).c_str());
}
HMODULE WINAPI LoadNothing(LPCSTR) { return nullptr; }
void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

template <class Ch>
Text<Ch> InForm(const char* text) {
    Ch form[MAX_PATH];
    if constexpr (sizeof(Ch) == 1)
        ::lstrcpyA(form, text);
    else
        ::MultiByteToWideChar(CP_ACP, 0, text, -1, form, MAX_PATH);
    return form;
}

template <class TextForm, bool nt>
struct Machine {
    using Form = TextForm;
    static constexpr bool kNt = nt;
};

/// Both forms of the functions on a machine with stand-ins of its network libraries.
template <class Machine>
class UncTranslation : public testing::Test {
 protected:
    using Form = typename Machine::Form;

    UncTranslation() {
        if (!Machine::kNt) windows98_.emplace("GetVersionExA", Windows98);
    }
    ~UncTranslation() override { EXPECT_EQ(0, server_.buffersHeld); }

    /// Expects this text, with its terminator where there is room, and nothing written behind it,
    /// and these trace lines; an empty text stands for a failure.
    void Expect(const char* result, DWORD (*translate)(const Form*, Form*, DWORD), const char* text,
                DWORD size = MAX_PATH, std::vector<std::string> trace = {}) {
        SCOPED_TRACE(text);
        const Text<Form> expected = InForm<Form>(result);
        Text<Form> written(MAX_PATH, Form{'#'});
        Text<Form> buffer = written;
        EXPECT_EQ(expected.size(), translate(InForm<Form>(text).c_str(), buffer.data(), size));
        written.replace(0, expected.size(), expected);
        if (!expected.empty() && expected.size() < size) written[expected.size()] = Form{};
        EXPECT_EQ(written, buffer);
        for (std::string& line : trace) line += '\n';
        trace_.Expect(trace);
    }

    HMODULE library_ = LoadStandIn(Machine::kNt ? "netapi32.dll" : "svrapi.dll");
    StandInServer& server_ =
        *reinterpret_cast<StandInServer*>(::GetProcAddress(library_, "server"));
    std::optional<ImportPatch> windows98_;
    ImportPatch load_{"LoadLibraryA", LoadStandIn};
    kitbag::test::TraceCapture trace_;
};
using Machines = testing::Types<Machine<char, true>, Machine<wchar_t, true>, Machine<char, false>,
                                Machine<wchar_t, false>>;
TYPED_TEST_SUITE(UncTranslation, Machines);

TYPED_TEST(UncTranslation, GoesByTheMostSpecificShare) {
    using Ch = typename TypeParam::Form;
    this->server_.shares = {{"Root", "C:\\"},
                            {"Media", "C:\\Media"},
                            {"Later", "C:\\Media"},
                            {"Clips", "C:\\Data"},
                            {"small", "E:\\share"},
                            {"LARGE", "E:\\SHARE"},
                            {"\xc4", "D:\\\xd6"},
                            {"Print", "C:\\Media\\a", 1},
                            {"C$", "C:\\Media\\", TypeParam::kNt ? 0x80000000 : 0, 0x200}};
    const auto toUnc = KB(LocalToUNC);
    this->Expect("\\\\PC\\Media\\a.mpg", toUnc, "C:\\Media\\a.mpg");
    this->Expect("\\\\PC\\Media", toUnc, "c:\\MEDIA");
    this->Expect("\\\\PC\\Root\\Other\\b", toUnc, "C:\\Other\\b");
    this->Expect("\\\\PC\\Root\\", toUnc, "C:\\");
    this->Expect("\\\\PC\\Clipsbase\\x", toUnc, "C:\\Database\\x");
    this->Expect("\\\\PC\\LARGE\\x", toUnc, "e:\\share\\x");
    this->Expect("\\\\PC\\\xc4\\x", toUnc, "d:\\\xf6\\x");
    const auto toLocal = KB(UNCToLocal);
    this->Expect("C:\\Media\\a.mpg", toLocal, "\\\\pc\\media\\a.mpg");
    this->Expect("C:\\Media", toLocal, "\\\\PC\\Media");
    this->Expect("C:\\x", toLocal, "\\\\PC\\Root\\x");
    this->Expect("C:\\", toLocal, "\\\\PC\\Root");
    this->Expect("D:\\\xd6\\x", toLocal, "\\\\PC\\\xe4\\x");
    // No share's name is needed where nothing follows, and several may follow one another.
    this->Expect("C:\\Media", toLocal, "\\\\PC\\");
    this->Expect("C:\\Data\\x", toLocal, "\\\\PC\\MediaClips\\x");
}

TYPED_TEST(UncTranslation, KeepsWithinTheBuffer) {
    using Ch = typename TypeParam::Form;
    this->server_.shares = {{"Root", "C:\\"}, {"Records", "C:\\Rec"}};
    const std::string small = "LocalToUNC: output buffer too small ";
    const auto none = "LocalToUNC: No network share found for given local path";
    this->Expect("\\\\PC\\Records\\x", KB(LocalToUNC), "C:\\Rec\\x", 15);
    this->server_.shares[1].name = "Recordings";
    this->Expect("\\\\PC\\Root\\Rec\\x", KB(LocalToUNC), "C:\\Rec\\x", 15,
                 {small + "(17 required, 15 provided)"});
    this->Expect(
        "", KB(LocalToUNC), "C:\\Rec\\x", 14,
        {small + "(17 required, 14 provided)", small + "(14 required, 14 provided)", none});
    // The share's name stays taken off for the drive's share.
    this->Expect("C:\\x", KB(UNCToLocal), "\\\\PC\\Recordings\\x", 8,
                 {"UNCToLocal: output buffer too small (8 required, 8 provided)"});

    // The size counts characters, and all of them must be writable.
    auto* pages = static_cast<BYTE*>(::VirtualAlloc(nullptr, 8192, MEM_RESERVE, PAGE_NOACCESS));
    ::VirtualAlloc(pages, 4096, MEM_COMMIT, PAGE_READWRITE);
    Ch* last = reinterpret_cast<Ch*>(pages + 4096) - 12;
    for (const DWORD size : {13u, 0u, 0x80000001u, 12u})
        EXPECT_EQ(size == 12 ? 10u : 0u, KB(LocalToUNC)(T("C:\\"), last, size));
    ::VirtualFree(pages, 0, MEM_RELEASE);
}

TYPED_TEST(UncTranslation, TellsWhyNot) {
    using Ch = typename TypeParam::Form;
    this->server_.shares = {{"Media", "C:\\Media"}};
    for (const auto& [name, reason] :
         {std::pair{"", "Invalid or empty parameters passed in"},
          {"\\PC\\Media", "Invalid UNC name (no double opening back slashes)"},
          {"\\\\OTHER\\x", "UNC not on local computer (wrong computer name)"},
          {"\\\\PC2\\Media", "Invalid UNC name (no back slash after computer name)"},
          {"\\\\PC\\Medi\\a", "No network share found for given local path"}})
        this->Expect("", KB(UNCToLocal), name, MAX_PATH, {"UNCToLocal: " + std::string(reason)});

    this->server_.shares.clear();
    this->Expect("", KB(LocalToUNC), "C:\\", MAX_PATH, {"LocalToUNC: No shares found on computer"});
    this->server_.nameStatus = ERROR_ACCESS_DENIED;
    std::vector<std::string> trace{"LocalToUNC: Cannot get computer name"};
    if (!TypeParam::kNt)
        trace.insert(trace.begin(), "GetComputerName: A system error has occurred: 5");
    this->Expect("", KB(LocalToUNC), "C:\\", MAX_PATH, trace);
}

TYPED_TEST(UncTranslation, NeedsTheNetworkLibrary) {
    using Ch = typename TypeParam::Form;
    EXPECT_THAT(kitbag::test::ImportedNames(),
                testing::Each(testing::Not(testing::StartsWith("Net"))));
    const ImportPatch missing("LoadLibraryA", LoadNothing);
    this->Expect("", KB(LocalToUNC), "C:\\", MAX_PATH, {"LocalToUNC: Cannot get computer name"});
}

using UncTranslationOn9x = UncTranslation<Machine<char, false>>;

TEST_F(UncTranslationOn9x, SurvivesWhatItCannotList) {
    const std::string list = "GetShareListA98ME: ";
    server_.shares.assign(20, {"Other", "D:\\"});
    server_.shares.push_back({"Root", "C:\\"});
    Expect("", KB_LocalToUNCA, "C:\\x", MAX_PATH,
           {list + "Not all entries have been enumerated",
            "LocalToUNC: No network share found for given local path"});
    server_.shares[1].path = reinterpret_cast<const char*>(16);
    Expect("\\\\PC\\Other\\x", KB_LocalToUNCA, "D:\\x", MAX_PATH,
           {list + "An access violation has occurred"});
    server_.sharesStatus = ERROR_ACCESS_DENIED;
    Expect("", KB_LocalToUNCA, "C:\\", MAX_PATH,
           {list + "A system error has occurred: 5", "LocalToUNC: No shares found on computer"});
    const ImportPatch noMemory("_ZnajRKSt9nothrow_t", NoMemory);
    Expect("", KB_LocalToUNCA, "C:\\", MAX_PATH,
           {"GetComputerName: Out of memory", "LocalToUNC: Cannot get computer name"});
}

}  // namespace
