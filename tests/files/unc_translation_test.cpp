#include <gmock/gmock.h>
#include <kitbag/files/unc_translation.h>
#include <tests/files/stand_ins/stand_in_server.h>
#include <tests/support/import_patch.h>
#include <tests/support/trace_capture.h>

#include <new>
#include <optional>

namespace {

using kitbag::test::ImportPatch;
using Lines = std::vector<std::string>;

BOOL WINAPI Windows98(OSVERSIONINFOA* version) {
    version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    return TRUE;
}
HMODULE WINAPI LoadStandIn(LPCSTR library) {
    return ::LoadLibraryA(("stand_in_" + std::string(library)).c_str());
}
HMODULE WINAPI LoadNothing(LPCSTR) { return nullptr; }
void* NoMemory(std::size_t, const std::nothrow_t&) { return nullptr; }

std::wstring Widen(const std::string& text) {
    const int length = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), length);
    return wide;
}

/// Both forms of the functions, with stand-ins of the network libraries of NT (true) and 9x.
class UncTranslation : public testing::TestWithParam<bool> {
 protected:
    UncTranslation() {
        if (!GetParam()) windows98_.emplace("GetVersionExA", Windows98);
    }
    ~UncTranslation() override { EXPECT_EQ(0, server_.buffersHeld); }

    /// Expect this text, with its terminator where there is room, nothing written behind it, and
    /// these trace lines; an empty text stands for a failure.
    void ToUnc(const char* name, const char* path, DWORD size = MAX_PATH, Lines trace = {}) {
        Expect(KB_LocalToUNCA, path, size, name, trace);
        Expect(KB_LocalToUNCW, Widen(path), size, Widen(name), trace);
    }
    void ToLocal(const char* path, const char* name, DWORD size = MAX_PATH, Lines trace = {}) {
        Expect(KB_UNCToLocalA, name, size, path, trace);
        Expect(KB_UNCToLocalW, Widen(name), size, Widen(path), trace);
    }

    HMODULE library_ = LoadStandIn(GetParam() ? "netapi32.dll" : "svrapi.dll");
    StandInServer& server_ =
        *reinterpret_cast<StandInServer*>(::GetProcAddress(library_, "server"));

 private:
    template <class Ch, class String = std::basic_string<Ch>>
    void Expect(DWORD (*translate)(const Ch*, Ch*, DWORD), const std::type_identity_t<String>& text,
                DWORD size, const std::type_identity_t<String>& result, Lines trace) {
        SCOPED_TRACE(testing::PrintToString(text));
        String buffer(MAX_PATH, Ch{'#'});
        String expected = buffer;
        expected.replace(0, result.size(), result);
        if (!result.empty() && result.size() < size) expected[result.size()] = Ch{};
        EXPECT_EQ(result.size(), translate(text.c_str(), buffer.data(), size));
        EXPECT_EQ(expected, buffer);
        for (std::string& line : trace) line += '\n';
        trace_.Expect(trace);
    }

    std::optional<ImportPatch> windows98_;
    ImportPatch load_{"LoadLibraryA", LoadStandIn};
    kitbag::test::TraceCapture trace_;
};
INSTANTIATE_TEST_SUITE_P(NtAnd9x, UncTranslation, testing::Bool());

TEST_P(UncTranslation, GoesByTheMostSpecificShare) {
    server_.shares = {{"Root", "C:\\"},
                      {"Media", "C:\\Media"},
                      {"Later", "C:\\Media"},
                      {"Clips", "C:\\Data"},
                      {"small", "E:\\share"},
                      {"LARGE", "E:\\SHARE"},
                      {"\xc4", "D:\\\xd6"},
                      {"Print", "C:\\Media\\a", 1},
                      {"C$", "C:\\Media\\", GetParam() ? 0x80000000 : 0, 0x200}};
    ToUnc("\\\\PC\\Media\\a.mpg", "C:\\Media\\a.mpg");
    ToUnc("\\\\PC\\Media", "c:\\MEDIA");
    ToUnc("\\\\PC\\Root\\Other\\b", "C:\\Other\\b");
    ToUnc("\\\\PC\\Root\\", "C:\\");
    ToUnc("\\\\PC\\Clipsbase\\x", "C:\\Database\\x");
    ToUnc("\\\\PC\\LARGE\\x", "e:\\share\\x");
    ToUnc("\\\\PC\\\xc4\\x", "d:\\\xf6\\x");
    ToLocal("C:\\Media\\a.mpg", "\\\\pc\\media\\a.mpg");
    ToLocal("C:\\Media", "\\\\PC\\Media");
    ToLocal("C:\\x", "\\\\PC\\Root\\x");
    ToLocal("C:\\", "\\\\PC\\Root");
    ToLocal("D:\\\xd6\\x", "\\\\PC\\\xe4\\x");
    // No share's name is needed where nothing follows, and several may follow one another.
    ToLocal("C:\\Media", "\\\\PC\\");
    ToLocal("C:\\Data\\x", "\\\\PC\\MediaClips\\x");
}

TEST_P(UncTranslation, KeepsWithinTheBuffer) {
    server_.shares = {{"Root", "C:\\"}, {"Recordings", "C:\\Rec"}};
    const std::string small = "LocalToUNC: output buffer too small ";
    ToUnc("\\\\PC\\Recordings\\x", "C:\\Rec\\x", 18);
    ToUnc("\\\\PC\\Root\\Rec\\x", "C:\\Rec\\x", 15, {small + "(17 required, 15 provided)"});
    ToUnc("", "C:\\Rec\\x", 14,
          {small + "(17 required, 14 provided)", small + "(14 required, 14 provided)",
           "LocalToUNC: No network share found for given local path"});
    // The share's name stays taken off for the drive's share.
    ToLocal("C:\\x", "\\\\PC\\Recordings\\x", 8,
            {"UNCToLocal: output buffer too small (8 required, 8 provided)"});

    // The size counts characters, and all of them must be writable.
    auto* pages = static_cast<BYTE*>(::VirtualAlloc(nullptr, 8192, MEM_RESERVE, PAGE_NOACCESS));
    ::VirtualAlloc(pages, 4096, MEM_COMMIT, PAGE_READWRITE);
    wchar_t* last = reinterpret_cast<wchar_t*>(pages + 4096) - 12;
    for (const DWORD size : {13u, 0u, 0x80000001u, 12u})
        EXPECT_EQ(size == 12 ? 10u : 0u, KB_LocalToUNCW(L"C:\\", last, size));
    ::VirtualFree(pages, 0, MEM_RELEASE);
}

TEST_P(UncTranslation, TellsWhyNot) {
    server_.shares = {{"Media", "C:\\Media"}};
    for (const auto& [name, reason] :
         {std::pair{"", "Invalid or empty parameters passed in"},
          {"\\PC\\Media", "Invalid UNC name (no double opening back slashes)"},
          {"\\\\OTHER\\x", "UNC not on local computer (wrong computer name)"},
          {"\\\\PC2\\Media", "Invalid UNC name (no back slash after computer name)"},
          {"\\\\PC\\Medi\\a", "No network share found for given local path"}})
        ToLocal("", name, MAX_PATH, {"UNCToLocal: " + std::string(reason)});
    server_.shares.clear();
    ToUnc("", "C:\\", MAX_PATH, {"LocalToUNC: No shares found on computer"});
}

TEST_P(UncTranslation, NeedsTheNetworkLibrary) {
    EXPECT_THAT(kitbag::test::ImportedNames(),
                testing::Each(testing::Not(testing::StartsWith("Net"))));
    const ImportPatch missing("LoadLibraryA", LoadNothing);
    ToUnc("", "C:\\", MAX_PATH, {"LocalToUNC: Cannot get computer name"});
}

class UncTranslationOn9x : public UncTranslation {};
INSTANTIATE_TEST_SUITE_P(Only, UncTranslationOn9x, testing::Values(false));

TEST_P(UncTranslationOn9x, SurvivesWhatItCannotList) {
    const std::string list = "GetShareListA98ME: ";
    server_.shares.assign(20, {"Other", "D:\\"});
    server_.shares.push_back({"Root", "C:\\"});
    ToUnc("", "C:\\x", MAX_PATH,
          {list + "Not all entries have been enumerated",
           "LocalToUNC: No network share found for given local path"});
    server_.shares[1].path = reinterpret_cast<const char*>(16);
    ToUnc("\\\\PC\\Other\\x", "D:\\x", MAX_PATH, {list + "An access violation has occurred"});
    server_.status = ERROR_ACCESS_DENIED;
    ToUnc("", "C:\\", MAX_PATH,
          {list + "A system error has occurred: 5", "LocalToUNC: No shares found on computer"});
    const ImportPatch noMemory("_ZnajRKSt9nothrow_t", NoMemory);
    ToUnc("", "C:\\", MAX_PATH,
          {"GetComputerName: Out of memory", "LocalToUNC: Cannot get computer name"});
}

}  // namespace
