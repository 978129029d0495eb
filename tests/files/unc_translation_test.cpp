#include <gmock/gmock.h>
#include <kitbag/files/unc_translation.h>
#include <tests/files/stand_ins/stand_in_server.h>
#include <tests/support/import_patch.h>
#include <tests/support/text_forms.h>
#include <tests/support/trace_capture.h>
#include <windows.h>

#include <new>
#include <optional>

namespace {

using kitbag::test::ImportedNames;
using kitbag::test::ImportPatch;
using kitbag::test::StandInServer;
using kitbag::test::Text;
using kitbag::test::TraceCapture;

BOOL WINAPI Windows98(OSVERSIONINFOA* version) {
    version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    return TRUE;
}

HMODULE WINAPI LoadStandIn(LPCSTR library) {
    return ::LoadLibraryA(("stand_in_" + std::string(library)).c_str());
}

HMODULE WINAPI LoadNothing(LPCSTR) { return nullptr; }

template <class Ch>
Text<Ch> InForm(const char* text) {
    if constexpr (std::is_same_v<Ch, char>)
        return text;
    else
        return kitbag::test::Wide(text);
}

template <class TextForm, bool nt>
struct Machine {
    using Form = TextForm;
    static constexpr bool kNt = nt;
};

struct MachineName {
    template <class Machine>
    static std::string GetName(int) {
        return kitbag::test::TextFormName::GetName<typename Machine::Form>(0) +
               (Machine::kNt ? "OnNT" : "On9x");
    }
};

/// Both forms of the functions on a machine with stand-ins of its network libraries.
template <class Machine>
class UncTranslation : public testing::Test {
 protected:
    using Form = typename Machine::Form;
    static constexpr const char* kLibrary = Machine::kNt ? "netapi32.dll" : "svrapi.dll";

    UncTranslation() {
        if (!Machine::kNt) windows98_.emplace("GetVersionExA", Windows98);
    }
    ~UncTranslation() override { EXPECT_EQ(0, server_.buffersHeld); }

    /// Expects this text, with its terminator where there is room, and nothing written behind it;
    /// an empty text stands for a failure.
    void Expect(const char* result, DWORD (*translate)(const Form*, Form*, DWORD), const char* text,
                DWORD size = MAX_PATH) {
        SCOPED_TRACE(text);
        const Text<Form> expected = InForm<Form>(result);
        Text<Form> buffer(MAX_PATH, Form{'#'});
        EXPECT_EQ(expected.size(), translate(InForm<Form>(text).c_str(), buffer.data(), size));
        Text<Form> written(MAX_PATH, Form{'#'});
        written.replace(0, expected.size(), expected);
        if (!expected.empty() && expected.size() < size) written[expected.size()] = Form{};
        EXPECT_EQ(written, buffer);
    }

    StandInServer& server_ = *reinterpret_cast<StandInServer*>(
        reinterpret_cast<void*>(::GetProcAddress(LoadStandIn(kLibrary), "server")));
    std::optional<ImportPatch> windows98_;
    ImportPatch load_{"LoadLibraryA", LoadStandIn};
    TraceCapture trace_;
};
using Machines = testing::Types<Machine<char, true>, Machine<wchar_t, true>, Machine<char, false>,
                                Machine<wchar_t, false>>;
TYPED_TEST_SUITE(UncTranslation, Machines, MachineName);

TYPED_TEST(UncTranslation, GoesByTheMostSpecificShare) {
    using Ch = typename TypeParam::Form;
    this->server_.shares = {{"Root", "C:\\"},
                            {"Media", "C:\\Media"},
                            {"Clips", "C:\\Data"},
                            {"Print", "C:\\Media\\a", 1},
                            {"Later", "C:\\Media"},
                            {"lower", "E:\\share"},
                            {"UPPER", "E:\\SHARE"},
                            {"B\xfc"
                             "cher",
                             "D:\\\xc4pfel"}};
    if constexpr (TypeParam::kNt)
        this->server_.shares.push_back({"C$", "C:\\Media\\a.mpg", 0x80000000});
    else
        this->server_.shares.push_back({"C$", "C:\\Media\\a.mpg", 0, 0x200});

    const auto toUnc = KB(LocalToUNC);
    this->Expect("\\\\PC\\Media\\a.mpg", toUnc, "C:\\Media\\a.mpg");
    this->Expect("\\\\PC\\Media\\A.mpg", toUnc, "c:\\MEDIA\\A.mpg");
    this->Expect("\\\\PC\\Media", toUnc, "C:\\Media");
    this->Expect("\\\\PC\\Root\\Other\\b", toUnc, "C:\\Other\\b");
    this->Expect("\\\\PC\\Root\\", toUnc, "C:\\");
    this->Expect("\\\\PC\\Clipsbase\\x", toUnc, "C:\\Database\\x");
    this->Expect("\\\\PC\\UPPER\\x", toUnc, "e:\\share\\x");
    this->Expect(
        "\\\\PC\\B\xfc"
        "cher\\x",
        toUnc, "d:\\\xe4PFEL\\x");

    const auto toLocal = KB(UNCToLocal);
    this->Expect("C:\\Media\\a.mpg", toLocal, "\\\\pc\\media\\a.mpg");
    this->Expect("C:\\Media", toLocal, "\\\\PC\\Media");
    this->Expect("C:\\Media\\", toLocal, "\\\\PC\\Media\\");
    this->Expect("C:\\x", toLocal, "\\\\PC\\Root\\x");
    this->Expect("C:\\", toLocal, "\\\\PC\\Root");
    this->Expect("D:\\\xc4pfel\\x", toLocal,
                 "\\\\PC\\B\xdc"
                 "CHER\\x");
    // A share's name is not needed where nothing is left of the name...
    this->Expect("C:\\Media", toLocal, "\\\\PC\\");
    // ... and may be made up of those of several shares.
    this->Expect("C:\\Data\\x", toLocal, "\\\\PC\\MediaClips\\x");
    this->trace_.Expect({});
}

TYPED_TEST(UncTranslation, TellsWhyNot) {
    using Ch = typename TypeParam::Form;
    this->server_.shares = {{"Media", "C:\\Media"}};
    for (const auto& [name, reason] :
         {std::pair{"", "Invalid or empty parameters passed in"},
          {"C:\\x", "Invalid UNC name (no double opening back slashes)"},
          {"\\PC\\Media", "Invalid UNC name (no double opening back slashes)"},
          {"\\\\OTHER\\x", "UNC not on local computer (wrong computer name)"},
          {"\\\\PC", "Invalid UNC name (no back slash after computer name)"},
          {"\\\\PC2\\Media", "Invalid UNC name (no back slash after computer name)"},
          {"\\\\PC\\Medi\\a", "No network share found for given local path"}}) {
        this->Expect("", KB(UNCToLocal), name);
        this->trace_.Expect({"UNCToLocal: " + std::string(reason) + "\n"});
    }
    this->Expect("", KB(LocalToUNC), "D:\\Media");
    this->trace_.Expect({"LocalToUNC: No network share found for given local path\n"});

    this->server_.shares.clear();
    this->Expect("", KB(UNCToLocal), "\\\\PC\\Media");
    this->Expect("", KB(LocalToUNC), "C:\\Media");
    this->trace_.Expect(
        {"UNCToLocal: No shares found on computer\n", "LocalToUNC: No shares found on computer\n"});
}

TYPED_TEST(UncTranslation, KeepsWithinTheBuffer) {
    using Ch = typename TypeParam::Form;
    this->server_.shares = {{"Root", "C:\\"}, {"Recordings", "C:\\Rec"}};
    this->Expect("\\\\PC\\Recordings\\x", KB(LocalToUNC), "C:\\Rec\\x", 18);
    this->Expect("\\\\PC\\Root\\Rec\\x", KB(LocalToUNC), "C:\\Rec\\x", 17);
    this->Expect("\\\\PC\\Root\\Rec\\x", KB(LocalToUNC), "C:\\Rec\\x", 15);  // Filled by the text.
    this->Expect("", KB(LocalToUNC), "C:\\Rec\\x", 14);
    this->Expect("C:\\Rec\\x", KB(UNCToLocal), "\\\\PC\\Recordings\\x", 9);
    // The share's name stays taken off the name for the drive's share.
    this->Expect("C:\\x", KB(UNCToLocal), "\\\\PC\\Recordings\\x", 8);
    this->Expect("", KB(UNCToLocal), "\\\\PC\\Recordings\\x", 5);
    const auto tooSmall = [](const char* function, int required, int provided) {
        return std::string(function) + ": output buffer too small (" + std::to_string(required) +
               " required, " + std::to_string(provided) + " provided)\n";
    };
    this->trace_.Expect({tooSmall("LocalToUNC", 17, 17), tooSmall("LocalToUNC", 17, 15),
                         tooSmall("LocalToUNC", 17, 14), tooSmall("LocalToUNC", 14, 14),
                         "LocalToUNC: No network share found for given local path\n",
                         tooSmall("UNCToLocal", 8, 8), tooSmall("UNCToLocal", 8, 5),
                         tooSmall("UNCToLocal", 5, 5),
                         "UNCToLocal: No network share found for given local path\n"});
}

TYPED_TEST(UncTranslation, RefusesBadParameters) {
    using Ch = typename TypeParam::Form;
    this->server_.shares = {{"Root", "C:\\"}};
    auto* pages = static_cast<BYTE*>(::VirtualAlloc(nullptr, 8192, MEM_RESERVE, PAGE_NOACCESS));
    ::VirtualAlloc(pages, 4096, MEM_COMMIT, PAGE_READWRITE);
    Ch* last = reinterpret_cast<Ch*>(pages + 4096) - 12;
    EXPECT_EQ(10u, KB(LocalToUNC)(T("C:\\"), last, 12));
    for (const DWORD size : {13u, 0u, 0x80000001u}) {
        EXPECT_EQ(0u, KB(LocalToUNC)(T("C:\\"), last, size));
        EXPECT_EQ(0u, KB(UNCToLocal)(T("\\\\PC\\Root"), last, size));
    }
    EXPECT_EQ(0u, KB(LocalToUNC)(nullptr, last, 12));
    EXPECT_EQ(0u, KB(LocalToUNC)(T("C:\\"), nullptr, 12));
    ::VirtualFree(pages, 0, MEM_RELEASE);
}

TYPED_TEST(UncTranslation, NeedsTheServer) {
    using Ch = typename TypeParam::Form;
    this->server_.nameStatus = this->server_.shareStatus = 5;
    this->Expect("", KB(LocalToUNC), "C:\\Media");
    this->server_.nameStatus = 0;
    this->Expect("", KB(LocalToUNC), "C:\\Media");
    if constexpr (TypeParam::kNt)
        this->trace_.Expect({"LocalToUNC: Cannot get computer name\n",
                             "LocalToUNC: No shares found on computer\n"});
    else
        this->trace_.Expect({"GetComputerName: A system error has occurred: 5\n",
                             "LocalToUNC: Cannot get computer name\n",
                             "GetShareListA98ME: A system error has occurred: 5\n",
                             "LocalToUNC: No shares found on computer\n"});
}

TYPED_TEST(UncTranslation, NeedsTheNetworkLibrary) {
    using Ch = typename TypeParam::Form;
    EXPECT_THAT(ImportedNames(), testing::Not(testing::Contains(testing::StartsWith("Net"))));
    const ImportPatch missing("LoadLibraryA", LoadNothing);
    this->Expect("", KB(LocalToUNC), "C:\\Media");
    this->Expect("", KB(UNCToLocal), "\\\\PC\\Media");
}

using UncTranslationOn9x = UncTranslation<Machine<char, false>>;

TEST_F(UncTranslationOn9x, SeesTwentyShares) {
    server_.shares.assign(20, {"Other", "D:\\"});
    server_.shares.push_back({"Root", "C:\\"});
    Expect("\\\\PC\\Other\\x", KB_LocalToUNCA, "D:\\x");
    trace_.Expect({"GetShareListA98ME: Not all entries have been enumerated\n"});
    server_.shareStatus = ERROR_MORE_DATA;
    Expect("", KB_LocalToUNCA, "C:\\x");
    trace_.Expect({"GetShareListA98ME: Not all entries have been enumerated\n",
                   "LocalToUNC: No network share found for given local path\n"});
}

TEST_F(UncTranslationOn9x, SurvivesABadPath) {
    server_.shares = {
        {"Media", "C:\\Media"}, {"Bad", reinterpret_cast<const char*>(16)}, {"Root", "C:\\"}};
    Expect("\\\\PC\\Media\\x", KB_LocalToUNCA, "C:\\Media\\x");
    Expect("", KB_LocalToUNCA, "C:\\Other");
    trace_.Expect({"GetShareListA98ME: An access violation has occurred\n",
                   "GetShareListA98ME: An access violation has occurred\n",
                   "LocalToUNC: No network share found for given local path\n"});
}

void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

TEST_F(UncTranslationOn9x, SurvivesALackOfMemory) {
    const ImportPatch noMemory("_ZnajRKSt9nothrow_t", NoMemory);
    Expect("", KB_LocalToUNCA, "C:\\Media");
    trace_.Expect({"GetComputerName: Out of memory\n", "LocalToUNC: Cannot get computer name\n"});
}

}  // namespace
