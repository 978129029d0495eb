#include <gmock/gmock.h>
#include <kitbag/files/unc_translation.h>
#include <tests/files/stand_ins/stand_in_shares.h>
#include <tests/support/text_forms.h>
#include <tests/support/windows_98.h>

#include <map>
#include <random>

namespace {

using namespace kitbag::test;

HMODULE WINAPI LoadStandIn(LPCSTR library) {
    return ::LoadLibraryA(("stand_in_" + std::string(library)).c_str());
}
HMODULE WINAPI LoadNothing(LPCSTR) { return nullptr; }

/// Stand-ins of the network libraries of NT (true) and 9x.
struct UncTranslation : testing::TestWithParam<bool> {
    /// Expects this translation, with its terminator where there is room, and nothing written
    /// behind it; an empty text stands for a failure.
    template <class Ch>
    void ExpectInForm(const std::string& from, std::string to, DWORD size) {
        const auto translate =
            from.find(':') == from.npos ? Exports<Ch>::UNCToLocal : Exports<Ch>::LocalToUNC;
        Text<Ch> buffer(MAX_PATH, '#'), text(from.begin(), from.end());
        EXPECT_EQ(to.size(), translate(text.c_str(), buffer.data(), size)) << from;
        if (!to.empty() && to.size() < size) to += '\0';
        to.resize(MAX_PATH, '#');
        EXPECT_EQ(Text<Ch>(to.begin(), to.end()), buffer);
    }
    void Expect(const std::string& from, const std::string& to, DWORD size = MAX_PATH) {
        ExpectInForm<char>(from, to, size);
        ExpectInForm<wchar_t>(from, to, size);
    }

    std::vector<StandInShare>& shares_ = *reinterpret_cast<std::vector<StandInShare>*>(
        ::GetProcAddress(LoadStandIn(GetParam() ? "netapi32.dll" : "svrapi.dll"), "shares"));
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
        // The separator that stands for the one of a folder like "C:\" is not counted.
        if (BeginsWith(path, folder) && start.size() + path.size() - folder.size() < size)
            return start + (folder.ends_with('\\') ? "\\" : "") + path.substr(folder.size());
    }
    return "";
}

std::string UncToLocal(const Shares& shares, std::string rest, DWORD size) {
    for (const auto& [order, name] : shares) {
        const std::string& folder = order.second;
        // A name stays taken off for the shares that follow.
        if (BeginsWith(rest, name)) rest.erase(0, name.size());
        if ((rest + '\\')[0] == '\\' && folder.size() + rest.size() < size)
            return folder + rest.substr(!rest.empty() && folder.ends_with('\\') ? 1 : 0);
    }
    return "";
}

TEST_P(UncTranslation, FollowsTheRulesForRandomSharesAndBack) {
    std::mt19937 random;
    const auto lengthen = [&](std::string text, const std::string& characters) {
        for (auto i = random() % 7; i > 0; --i) text += characters[random() % characters.size()];
        return text;
    };
    for (int i = 0; i < 2000; ++i) {
        Shares shares;
        shares_.clear();
        // On Windows 9x only the first 20 shares count, of whatever type, and only those before a
        // disk share whose path cannot be read.
        const std::size_t end = GetParam() ? 24 : random() % 21, count = random() % 24;
        for (std::size_t place = 0; place < count; ++place) {
            const std::string name(1, static_cast<char>('A' + place)),
                path = place == end ? "" : lengthen("C:", "\\\\ab");
            const DWORD type = place == end || random() % 4 ? 0 : random() % 2 ? 1 : 0x80000000;
            shares_.push_back({name, path, type});
            if (type == 0 && place < end) shares.insert({{MAX_PATH - path.size(), path}, name});
        }
        const DWORD size = random() % 2 ? MAX_PATH : 1 + random() % 15;
        const std::string unc = lengthen("", "\\\\aAbcde_"), path = lengthen(":", "\\\\ab"),
                          there = LocalToUnc(shares, 'c' + path, size);
        Expect("\\\\Pc\\" + unc, UncToLocal(shares, unc, size), size);
        Expect('c' + path, there, size);
        // None leads back from a match that ends inside a folder's name.
        if (!there.empty() && (there + '\\')[6] == '\\') Expect(there, 'C' + path);
    }
}

TEST_P(UncTranslation, RefusesBadNamesAndBuffers) {
    shares_ = {{"R\xe4t", "C:\\", 0}};
    for (const char* bad : {"", "//PC\\", "\\\\QC\\", "\\\\PC2\\"}) Expect(bad, "");
    wchar_t buffer[10];
    for (const DWORD size : {0u, 0x80000001u, 10u})
        EXPECT_EQ(size == 10 ? 9u : 0u, KB_LocalToUNCW(L"C:\\", buffer, size));
    EXPECT_STREQ(L"\\\\PC\\R\xe4t\\", buffer);
}

TEST_P(UncTranslation, NeedsTheNetworkLibraryAtRunTimeOnly) {
    EXPECT_THAT(ImportedNames(), testing::Each(testing::Not(testing::StartsWith("Net"))));
    const ImportPatch missing("LoadLibraryA", LoadNothing);
    Expect("C:\\", "");
}

}  // namespace
