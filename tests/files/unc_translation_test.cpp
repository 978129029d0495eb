#include <gmock/gmock.h>
#include <kitbag/files/unc_translation.h>
#include <tests/files/stand_ins/stand_in_server.h>
#include <tests/support/trace_capture.h>
#include <tests/support/windows_98.h>

#include <optional>

namespace {

using kitbag::test::ImportPatch;
using Lines = std::vector<std::string>;

HMODULE WINAPI LoadStandIn(LPCSTR library) {
    return ::LoadLibraryA(("stand_in_" + std::string(library)).c_str());
}
HMODULE WINAPI LoadNothing(LPCSTR) { return nullptr; }

/// Both forms of the functions, with stand-ins of the network libraries of NT (true) and 9x.
struct UncTranslation : testing::TestWithParam<bool> {
    UncTranslation() {
        if (!GetParam()) windows98_.emplace();
    }
    ~UncTranslation() override { EXPECT_EQ(0, server_.buffersHeld); }

    /// Expects this translation, with its terminator where there is room, nothing written behind
    /// it, and these trace lines; an empty text stands for a failure.
    void Expect(const char* from, const char* to, DWORD size = MAX_PATH, Lines trace = {}) {
        const bool isLocal = std::string(from).find(':') != std::string::npos;
        Expect<char>(isLocal ? KB_LocalToUNCA : KB_UNCToLocalA, from, to, size, trace);
        Expect<wchar_t>(isLocal ? KB_LocalToUNCW : KB_UNCToLocalW, from, to, size, trace);
    }
    template <class Ch>
    void Expect(DWORD (*translate)(const Ch*, Ch*, DWORD), const std::string& from,
                const std::string& to, DWORD size, Lines trace) {
        // All characters used here have the same code in the code page and in Unicode.
        const auto spell = [](const std::string& text) {
            const auto* bytes = reinterpret_cast<const BYTE*>(text.data());
            return std::basic_string<Ch>(bytes, bytes + text.size());
        };
        auto buffer = spell(std::string(MAX_PATH, '#')), expected = buffer;
        expected.replace(0, to.size(), spell(to));
        if (!to.empty() && to.size() < size) expected[to.size()] = Ch{};
        EXPECT_EQ(to.size(), translate(spell(from).c_str(), buffer.data(), size)) << from;
        EXPECT_EQ(expected, buffer);
        for (std::string& line : trace) line += '\n';
        trace_.Expect(trace);
    }

    StandInServer& server_ = *reinterpret_cast<StandInServer*>(
        ::GetProcAddress(LoadStandIn(GetParam() ? "netapi32.dll" : "svrapi.dll"), "server"));
    std::optional<kitbag::test::Windows98> windows98_;
    ImportPatch load_{"LoadLibraryA", LoadStandIn};
    kitbag::test::TraceCapture trace_;
};
INSTANTIATE_TEST_SUITE_P(NtAnd9x, UncTranslation, testing::Bool());

TEST_P(UncTranslation, GoesByTheMostSpecificShare) {
    server_.shares = {{"Root", "C:\\"},
                      {"Media", "C:\\Media"},
                      {"Later", "C:\\Media"},
                      {"Clips", "C:\\Data"},
                      {"LARGE", "E:\\SHARE"},
                      {"\xc4", "D:\\\xd6"},
                      {"Print", "C:\\Media\\a", 1},
                      {"C$", "C:\\Media\\", GetParam() ? 0x80000000 : 0, 0x200}};
    Expect("C:\\Media\\a.mpg", "\\\\PC\\Media\\a.mpg");
    Expect("C:\\", "\\\\PC\\Root\\");
    Expect("C:\\Database\\x", "\\\\PC\\Clipsbase\\x");
    Expect("e:\\share", "\\\\PC\\LARGE");
    Expect("d:\\\xf6\\x", "\\\\PC\\\xc4\\x");
    Expect("\\\\pc\\media\\a.mpg", "C:\\Media\\a.mpg");
    Expect("\\\\PC\\Root", "C:\\");
    Expect("\\\\PC\\\xe4\\x", "D:\\\xd6\\x");
    // No share's name is needed where nothing follows, and several may follow one another.
    Expect("\\\\PC\\", "C:\\Media");
    Expect("\\\\PC\\MediaClips\\x", "C:\\Data\\x");
}

TEST_P(UncTranslation, KeepsWithinTheBuffer) {
    server_.shares = {{"Root", "C:\\"}, {"Recordings", "C:\\Rec"}};
    const std::string small = "LocalToUNC: output buffer too small ";
    Expect("C:\\Rec\\x", "\\\\PC\\Recordings\\x", 18);
    Expect("C:\\Rec\\x", "\\\\PC\\Root\\Rec\\x", 15, {small + "(17 required, 15 provided)"});
    Expect("C:\\Rec\\x", "", 14,
           {small + "(17 required, 14 provided)", small + "(14 required, 14 provided)",
            "LocalToUNC: No network share found for given local path"});
    // The share's name stays taken off for the drive's share.
    Expect("\\\\PC\\Recordings\\x", "C:\\x", 8,
           {"UNCToLocal: output buffer too small (8 required, 8 provided)"});
    // The size counts characters, and all of them must be writable.
    auto* page = static_cast<wchar_t*>(::VirtualAlloc(nullptr, 4096, MEM_COMMIT, PAGE_READWRITE));
    for (const DWORD size : {13u, 0u, 0x80000001u, 12u})
        EXPECT_EQ(size == 12 ? 10u : 0u, KB_LocalToUNCW(L"C:\\", page + 2048 - 12, size));
    ::VirtualFree(page, 0, MEM_RELEASE);
}

TEST_P(UncTranslation, TellsWhyNot) {
    server_.shares = {{"Media", "C:\\Media"}};
    for (const auto& [name, reason] :
         {std::pair{"", "Invalid or empty parameters passed in"},
          {"\\PC\\Media", "Invalid UNC name (no double opening back slashes)"},
          {"\\\\OTHER\\x", "UNC not on local computer (wrong computer name)"},
          {"\\\\PC2\\Media", "Invalid UNC name (no back slash after computer name)"},
          {"\\\\PC\\Medi\\a", "No network share found for given local path"}})
        Expect(name, "", MAX_PATH, {"UNCToLocal: " + std::string(reason)});
    server_.shares.clear();
    Expect("C:\\", "", MAX_PATH, {"LocalToUNC: No shares found on computer"});
}

TEST_P(UncTranslation, NeedsTheNetworkLibrary) {
    EXPECT_THAT(kitbag::test::ImportedNames(),
                testing::Each(testing::Not(testing::StartsWith("Net"))));
    const ImportPatch missing("LoadLibraryA", LoadNothing);
    Expect("C:\\", "", MAX_PATH, {"LocalToUNC: Cannot get computer name"});
}

struct UncTranslationOn9x : UncTranslation {};
INSTANTIATE_TEST_SUITE_P(Only, UncTranslationOn9x, testing::Values(false));

TEST_P(UncTranslationOn9x, SurvivesWhatItCannotList) {
    const std::string list = "GetShareListA98ME: ";
    server_.shares.assign(20, {"Other", "D:\\"});
    server_.shares.push_back({"Root", "C:\\"});
    Expect("C:\\x", "", MAX_PATH,
           {list + "Not all entries have been enumerated",
            "LocalToUNC: No network share found for given local path"});
    server_.shares[1].path = reinterpret_cast<const char*>(16);
    Expect("D:\\x", "\\\\PC\\Other\\x", MAX_PATH, {list + "An access violation has occurred"});
    server_.status = ERROR_ACCESS_DENIED;
    Expect("C:\\", "", MAX_PATH,
           {list + "A system error has occurred: 5", "LocalToUNC: No shares found on computer"});
}

}  // namespace
