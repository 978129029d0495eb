#include <gmock/gmock.h>
#include <kitbag/files/unc_translation.h>
#include <tests/files/stand_ins/stand_in_server.h>
#include <tests/support/trace_capture.h>
#include <tests/support/windows_98.h>

#include <map>
#include <optional>
#include <random>
#include <set>

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

    /// Expects this translation, with its terminator where there is room, and nothing written
    /// behind it; an empty text stands for a failure.
    void Expect(const std::string& from, const std::string& to, DWORD size = MAX_PATH) {
        const bool isLocal = from.find(':') != from.npos;
        Expect<char>(isLocal ? KB_LocalToUNCA : KB_UNCToLocalA, from, to, size);
        Expect<wchar_t>(isLocal ? KB_LocalToUNCW : KB_UNCToLocalW, from, to, size);
    }
    template <class Ch>
    void Expect(DWORD (*translate)(const Ch*, Ch*, DWORD), const std::string& from,
                const std::string& to, DWORD size) {
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
    }
    /// What both forms have traced.
    void ExpectTrace(const Lines& lines) {
        Lines expected;
        for (int form = 0; form < 2; ++form)
            for (const std::string& line : lines) expected.push_back(line + '\n');
        trace_.Expect(expected);
    }

    StandInServer& server_ = *reinterpret_cast<StandInServer*>(
        ::GetProcAddress(LoadStandIn(GetParam() ? "netapi32.dll" : "svrapi.dll"), "server"));
    std::optional<kitbag::test::Windows98> windows98_;
    ImportPatch load_{"LoadLibraryA", LoadStandIn};
    kitbag::test::TraceCapture trace_;
};
INSTANTIATE_TEST_SUITE_P(NtAnd9x, UncTranslation, testing::Bool());

TEST_P(UncTranslation, GoesByTheMostSpecificShare) {
    server_.shares = {{"Root", "C:\\"}, {"Media", "C:\\Media"}, {"Clips", "C:\\Data"}};
    Expect("c:\\media\\a.mpg", "\\\\PC\\Media\\a.mpg");
    Expect("C:\\Database\\x", "\\\\PC\\Clipsbase\\x");
    Expect("\\\\pc\\media\\a.mpg", "C:\\Media\\a.mpg");
    // No share's name is needed where nothing follows, and several may follow one another.
    Expect("\\\\PC\\", "C:\\Media");
    Expect("\\\\PC\\MediaClips\\x", "C:\\Data\\x");
}

/// The names of the disk shares in the order in which they are tried: longer paths first, then by
/// the paths' characters; the first name of each path.
using Shares = std::map<std::pair<std::size_t, std::string>, std::string>;

bool BeginsWith(const std::string& text, const std::string& start) {
    return ::lstrcmpiA(text.substr(0, start.size()).c_str(), start.c_str()) == 0;
}

std::string LocalToUnc(const Shares& shares, const std::string& path, DWORD size) {
    for (const auto& [order, name] : shares) {
        const std::string &folder = order.second, start = "\\\\PC\\" + name;
        if (!BeginsWith(path, folder)) continue;
        const std::string rest = path.substr(folder.size());
        // The separator that stands for the one of a folder like "C:\" is not counted.
        if (start.size() + rest.size() < size)
            return start + (folder.ends_with('\\') ? "\\" : "") + rest;
    }
    return "";
}

std::string UncToLocal(const Shares& shares, const std::string& unc, DWORD size) {
    std::string rest = unc.substr(5);
    for (const auto& [order, name] : shares) {
        std::string folder = order.second;
        // A name stays taken off for the shares that follow.
        if (BeginsWith(rest, name)) rest.erase(0, name.size());
        if ((rest + '\\')[0] != '\\' || folder.size() + rest.size() >= size) continue;
        if (!rest.empty() && folder.ends_with('\\')) folder.pop_back();
        return folder + rest;
    }
    return "";
}

struct RandomShares : UncTranslation {
    template <std::size_t n>
    std::string OneOf(const char* const (&texts)[n]) {
        return texts[random_() % n];
    }
    std::string Name() { return OneOf({"a", "ab", "B", "Media", "C$", "\xf6"}); }
    std::string Folders() {
        std::string path;
        while (random_() % 3) path += OneOf({"\\a", "\\A", "\\ab", "\\B", "\\\xf6", "\\\xd6x"});
        return path;
    }
    std::string Path() { return OneOf({"C:", "c:", "D:"}) + Folders() + OneOf({"", "", "\\"}); }

    /// Up to 24 shares of any type; with names of which none begins with another one, or any.
    Shares Share(bool areNamesDistinct) {
        Shares shares;
        server_.shares.clear();
        for (auto count = random_() % 25; count > 0; --count) {
            const auto place = server_.shares.size();
            const std::string path = Path(), letter(1, static_cast<char>('a' + place)),
                              name = areNamesDistinct ? letter : Name();
            const DWORD type = random_() % 4 ? 0 : random_() % 2 ? 1 : 0x80000000;
            server_.shares.push_back(
                {texts_.insert(name).first->c_str(), texts_.insert(path).first->c_str(), type});
            // On Windows 9x only the first 20 count, of whatever type.
            if (type == 0 && (GetParam() || place < 20))
                shares.insert({{MAX_PATH - path.size(), path}, name});
        }
        // On NT an error only ends the list.
        server_.status = GetParam() ? random_() % 2 : 0;
        return shares;
    }

    std::mt19937 random_;
    std::set<std::string> texts_;
};
INSTANTIATE_TEST_SUITE_P(NtAnd9x, RandomShares, testing::Bool());

TEST_P(RandomShares, TranslateByTheRulesAndBack) {
    for (int i = 0; i < 3000; ++i) {
        const bool areNamesDistinct = random_() % 2;
        const Shares shares = Share(areNamesDistinct);
        const DWORD size = random_() % 2 ? MAX_PATH : 1 + random_() % 20;
        const std::string unc = "\\\\Pc\\" + Name() + OneOf({"", "ab"}) + Folders();
        Expect(unc, UncToLocal(shares, unc, size), size);
        const std::string path = Path(), there = LocalToUnc(shares, path, size);
        Expect(path, there, size);
        // A match that ends inside a folder's name leads to a name that none leads back from.
        if (!areNamesDistinct || there.empty() || (there + '\\')[6] != '\\') continue;
        const std::string back = UncToLocal(shares, there, MAX_PATH);
        EXPECT_EQ(0, ::lstrcmpiA(path.c_str(), back.c_str())) << path << there << back;
        Expect(there, back);
    }
}

TEST_P(UncTranslation, KeepsWithinTheBuffer) {
    server_.shares = {{"Root", "C:\\"}, {"Recordings", "C:\\Rec"}};
    Expect("C:\\Rec\\x", "\\\\PC\\Root\\Rec\\x", 15);
    ExpectTrace({"LocalToUNC: output buffer too small (17 required, 15 provided)"});
    Expect("\\\\PC\\Recordings\\x", "C:\\x", 8);
    ExpectTrace({"UNCToLocal: output buffer too small (8 required, 8 provided)"});
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
          {"\\\\PC\\Medi\\a", "No network share found for given local path"}}) {
        Expect(name, "");
        ExpectTrace({"UNCToLocal: " + std::string(reason)});
    }
}

TEST_P(UncTranslation, NeedsTheNetworkLibrary) {
    EXPECT_THAT(kitbag::test::ImportedNames(),
                testing::Each(testing::Not(testing::StartsWith("Net"))));
    const ImportPatch missing("LoadLibraryA", LoadNothing);
    Expect("C:\\", "");
    ExpectTrace({"LocalToUNC: Cannot get computer name"});
}

struct UncTranslationOn9x : UncTranslation {};
INSTANTIATE_TEST_SUITE_P(Only, UncTranslationOn9x, testing::Values(false));

TEST_P(UncTranslationOn9x, SurvivesWhatItCannotList) {
    const std::string list = "GetShareListA98ME: ";
    server_.shares = {{"Other", "D:\\"}, {"Bad", reinterpret_cast<const char*>(16)}};
    Expect("D:\\x", "\\\\PC\\Other\\x");
    ExpectTrace({list + "An access violation has occurred"});
    server_.shares.assign(21, {"Other", "D:\\"});
    Expect("D:\\x", "\\\\PC\\Other\\x");
    ExpectTrace({list + "Not all entries have been enumerated"});
    server_.status = ERROR_ACCESS_DENIED;
    Expect("D:\\x", "");
    ExpectTrace(
        {list + "A system error has occurred: 5", "LocalToUNC: No shares found on computer"});
}

}  // namespace
