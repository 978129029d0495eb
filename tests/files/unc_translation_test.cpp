#include <gmock/gmock.h>
#include <kitbag/files/unc_translation.h>
#include <tests/files/stand_ins/stand_in_server.h>
#include <tests/support/text_forms.h>
#include <tests/support/trace_capture.h>
#include <tests/support/windows_98.h>

#include <map>
#include <memory>
#include <random>

namespace {

using kitbag::test::ImportPatch;
using kitbag::test::Windows98;

HMODULE WINAPI LoadStandIn(LPCSTR library) {
    return ::LoadLibraryA(("stand_in_" + std::string(library)).c_str());
}
HMODULE WINAPI LoadNothing(LPCSTR) { return nullptr; }

/// All characters used here have the same code in the code page and in Unicode.
template <class Ch>
std::basic_string<Ch> Spell(const std::string& text) {
    const auto* bytes = reinterpret_cast<const BYTE*>(text.data());
    return {bytes, bytes + text.size()};
}

/// Stand-ins of the network libraries of NT (true) and 9x.
struct UncTranslation : testing::TestWithParam<bool> {
    ~UncTranslation() override { EXPECT_EQ(0, server_.buffersHeld); }

    /// Expects this translation, with its terminator where there is room, and nothing written
    /// behind it; an empty text stands for a failure.
    template <class Ch>
    void ExpectInForm(const std::string& from, const std::string& to, DWORD size) {
        const auto translate = from.find(':') == from.npos ? KB(UNCToLocal) : KB(LocalToUNC);
        auto buffer = Spell<Ch>(std::string(MAX_PATH, '#'));
        EXPECT_EQ(to.size(), translate(Spell<Ch>(from).c_str(), buffer.data(), size)) << from;
        std::string expected = to;
        if (!to.empty() && to.size() < size) expected += '\0';
        expected.resize(MAX_PATH, '#');
        EXPECT_EQ(Spell<Ch>(expected), buffer);
    }
    void Expect(const std::string& from, const std::string& to, DWORD size = MAX_PATH) {
        ExpectInForm<char>(from, to, size);
        ExpectInForm<wchar_t>(from, to, size);
    }

    StandInServer& server_ = *reinterpret_cast<StandInServer*>(
        ::GetProcAddress(LoadStandIn(GetParam() ? "netapi32.dll" : "svrapi.dll"), "server"));
    std::unique_ptr<Windows98> windows98_{GetParam() ? nullptr : new Windows98};
    ImportPatch load_{"LoadLibraryA", LoadStandIn};
};
INSTANTIATE_TEST_SUITE_P(NtAnd9x, UncTranslation, testing::Bool());

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

std::string UncToLocal(const Shares& shares, std::string rest, DWORD size) {
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

TEST_P(UncTranslation, FollowsTheRulesForRandomSharesAndBack) {
    std::mt19937 random;
    const auto lengthen = [&](std::string text, const std::string& characters) {
        for (auto count = random() % 7; count > 0; --count)
            text += characters[random() % characters.size()];
        return text;
    };
    for (int i = 0; i < 500; ++i) {
        Shares shares;
        server_.shares.clear();
        for (auto count = random() % 24; count > 0; --count) {
            const auto place = server_.shares.size();
            const std::string path = lengthen("C:", "\\\\aA\xf6\xd6"),
                              name(1, static_cast<char>(0xc0 + place));
            const DWORD type = random() % 4 ? 0 : random() % 2 ? 1 : 0x80000000;
            server_.shares.push_back({name, path, type});
            // On Windows 9x only the first 20 shares count, of whatever type.
            if (type == 0 && (GetParam() || place < 20))
                shares.insert({{MAX_PATH - path.size(), path}, name});
        }
        const DWORD size = random() % 2 ? MAX_PATH : 1 + random() % 15;
        const std::string unc = lengthen("", "\\\\a\xe0\xe1\xe2\xe3\xe4\xe5"),
                          path = lengthen("c:", "\\\\aA\xf6\xd6"),
                          there = LocalToUnc(shares, path, size);
        Expect("\\\\Pc\\" + unc, UncToLocal(shares, unc, size), size);
        Expect(path, there, size);
        // None leads back from a match that ends inside a folder's name.
        if (there.empty() || (there + '\\')[6] != '\\') continue;
        const std::string back = UncToLocal(shares, there.substr(5), MAX_PATH);
        EXPECT_EQ(0, ::lstrcmpiA(path.c_str(), back.c_str())) << path << there << back;
        Expect(there, back);
    }
}

TEST_P(UncTranslation, WritesOnlyWhereTheWholeBufferIsWritable) {
    server_.shares = {{"Root", "C:\\"}};
    auto* page = static_cast<wchar_t*>(::VirtualAlloc(nullptr, 4096, MEM_COMMIT, PAGE_READWRITE));
    // The size counts characters.
    for (const DWORD size : {13u, 0u, 0x80000001u, 12u})
        EXPECT_EQ(size == 12 ? 10u : 0u, KB_LocalToUNCW(L"C:\\", page + 2048 - 12, size));
    ::VirtualFree(page, 0, MEM_RELEASE);
}

TEST_P(UncTranslation, TellsWhyNot) {
    kitbag::test::TraceCapture trace;
    const auto expect = [&](const char* from, const char* to, std::vector<std::string> reasons) {
        ExpectInForm<wchar_t>(from, to, 8);
        for (std::string& reason : reasons) reason += '\n';
        trace.Expect(reasons);
    };
    const std::string noShares = "LocalToUNC: No shares found on computer",
                      list = "GetShareListA98ME: ";
    expect("C:\\", "", {noShares});
    server_.shares = {{"Root", "C:\\"}, {"Media", "C:\\Media"}};
    expect("", "", {"UNCToLocal: Invalid or empty parameters passed in"});
    expect("\\PC\\Root", "", {"UNCToLocal: Invalid UNC name (no double opening back slashes)"});
    expect("\\\\OTHER\\x", "", {"UNCToLocal: UNC not on local computer (wrong computer name)"});
    expect("\\\\PC2\\x", "", {"UNCToLocal: Invalid UNC name (no back slash after computer name)"});
    expect("\\\\PC\\x", "", {"UNCToLocal: No network share found for given local path"});
    expect("\\\\PC\\Media", "C:\\",
           {"UNCToLocal: output buffer too small (8 required, 8 provided)"});
    server_.status = ERROR_ACCESS_DENIED;
    if (GetParam()) return expect("\\\\PC\\Root", "C:\\", {});
    expect("C:\\", "", {list + "A system error has occurred: 5", noShares});
    server_.status = ERROR_SUCCESS;
    server_.shares[1].path = "";
    expect("\\\\PC\\Root", "C:\\", {list + "An access violation has occurred"});
    server_.shares.assign(21, {"Root", "C:\\"});
    expect("\\\\PC\\Root", "C:\\", {list + "Not all entries have been enumerated"});
}

TEST_P(UncTranslation, NeedsTheNetworkLibraryAtRunTimeOnly) {
    EXPECT_THAT(kitbag::test::ImportedNames(),
                testing::Each(testing::Not(testing::StartsWith("Net"))));
    const ImportPatch missing("LoadLibraryA", LoadNothing);
    Expect("C:\\", "");
}

}  // namespace
