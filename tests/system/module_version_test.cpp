#include <gmock/gmock.h>
#include <kitbag/system/module_version.h>
#include <tests/support/import_patch.h>
#include <tests/support/printing.h>
#include <tests/support/text_forms.h>

#include <cstring>

namespace {

using namespace kitbag::test;
using testing::ElementsAre;
using testing::ElementsAreArray;

// The tests' own program has product version 3.4.5.6 and no table of translations; its only
// strings are those of language 0 and code page 1252. The library has version 1 and a table.
constexpr char kProgram[] = "kitbag_system_tests.exe", kLibrary[] = "Kitbag.dll";

template <class Ch>
struct ModuleVersion : testing::Test {};
TYPED_TEST_SUITE(ModuleVersion, TextForms, TextFormName);

TYPED_TEST(ModuleVersion, IsTheFilesProductVersion) {
    using Kb = Exports<TypeParam>;
    DWORD version[] = {77, 77, 77};
    auto& [major, minor, build] = version;
    const TypeParam* const without[] = {"libstdc++-6.dll"_t, "missing.dll"_t, nullptr};
    for (const TypeParam* file : without) {
        SCOPED_TRACE(Called("KB_GetModuleVersion", file));
        ASSERT_FALSE(Kb::GetModuleVersion(file, &major, &minor, &build));
        ASSERT_THAT(version, ElementsAre(77, 77, 77));
    }
    const TypeParam* const file = "kitbag_system_tests.exe"_t;
    EXPECT_FALSE(Kb::GetModuleVersion(file, nullptr, &minor, &build));
    EXPECT_FALSE(Kb::GetModuleVersion(file, &major, nullptr, &build));
    EXPECT_TRUE(Kb::GetModuleVersion(file, &major, &minor, nullptr));
    EXPECT_THAT(version, ElementsAre(3, 4, 77));
    EXPECT_TRUE(Kb::GetModuleVersion(file, &major, &minor, &build));
    EXPECT_THAT(version, ElementsAre(3, 4, 0x50006));
}

DWORD WINAPI FileOfTheProgram(HMODULE, char* path, DWORD size) {
    return ::GetModuleFileNameA(nullptr, path, size);
}

TEST(MemModuleVersion, IsThatOfAModuleButNotOfALoadersError) {
    DWORD major = 77, minor = 77;
    EXPECT_TRUE(KB_GetMemModuleVersion(::GetModuleHandleA(kLibrary), &major, &minor, nullptr));
    EXPECT_EQ(1u, major);
    const ImportPatch patch("GetModuleFileNameA", FileOfTheProgram);
    for (const auto& [handle, isTold] : {std::pair{0, true}, {1, false}, {31, false}, {32, true}}) {
        const auto module = reinterpret_cast<HMODULE>(handle);
        ASSERT_EQ(isTold, KB_GetMemModuleVersion(module, &major, &minor, nullptr)) << handle;
    }
    EXPECT_EQ(3u, major);
}

/// What the system is made to find at one place of a version block.
struct {
    const char* place;
    const void* piece;
    UINT bytes;
} planted;
BOOL WINAPI FindPlanted(const void* block, const char* place, void** piece, UINT* bytes) {
    if (std::strcmp(place, planted.place)) return ::VerQueryValueA(block, place, piece, bytes);
    *piece = const_cast<void*>(planted.piece);
    *bytes = planted.bytes;
    return TRUE;
}

TEST(CModuleVersion, IsTheFixedInformationWhereItIsWholeAndSigned) {
    CModuleVersion version(kProgram);
    EXPECT_EQ(0u, version.dwSignature) << "before it is read";
    EXPECT_TRUE(version.Read());
    EXPECT_EQ(0x90009u, version.dwFileVersionLS);
    EXPECT_EQ(0x50006u, version.dwProductVersionLS);

    const ImportPatch patch("VerQueryValueA", FindPlanted);
    VS_FIXEDFILEINFO fixed{};
    fixed.dwSignature = 0xfeef04bc;
    planted = {"\\", &fixed, sizeof fixed};
    EXPECT_FALSE(version.Read()) << "another signature";
    EXPECT_EQ(0xfeef04bc, version.dwSignature);
    planted.bytes = sizeof fixed - 1;
    EXPECT_FALSE(version.Read()) << "a byte short";
    EXPECT_EQ(0u, version.dwSignature);
}

const char* CompanyOf(CModuleVersion&& version) {
    EXPECT_EQ(nullptr, version.GetStringValue("CompanyName")) << "before it is read";
    EXPECT_TRUE(version.Read());
    EXPECT_EQ(nullptr, version.GetStringValue("Missing"));
    EXPECT_EQ(nullptr, version.GetStringValue(nullptr));
    static std::string company;
    const char* const found = version.GetStringValue("CompanyName");
    return found ? (company = found).c_str() : nullptr;
}

TEST(CModuleVersion, HasTheStringsOfItsFirstTranslation) {
    EXPECT_STREQ("Tarnwick", CompanyOf(CModuleVersion(kLibrary)));
    EXPECT_STREQ("Western", CompanyOf(CModuleVersion(kProgram)));
    const ImportPatch patch("VerQueryValueA", FindPlanted);
    const WORD translations[] = {0x409, 1200, 0, 1252};
    planted = {"\\VarFileInfo\\Translation", translations, sizeof translations};
    EXPECT_STREQ("Tarnwick", CompanyOf(CModuleVersion(kLibrary)));
    planted.bytes = 3;
    EXPECT_EQ(nullptr, CompanyOf(CModuleVersion(kLibrary))) << "no whole translation";
}

TEST(CModuleVersion, KeepsItsStringsWhereItCannotBeReadAgain) {
    std::string file = kLibrary;
    CModuleVersion version(file.c_str());
    ASSERT_TRUE(version.Read());
    const char* const company = version.GetStringValue("CompanyName");

    file[0] = '?';
    EXPECT_FALSE(version.Read()) << "gone";
    EXPECT_EQ(0u, version.dwSignature);
    EXPECT_EQ(company, version.GetStringValue("CompanyName"));

    file = kLibrary;
    const ImportPatch patch(
        "GetFileVersionInfoA", +[](LPCSTR, DWORD, DWORD, void*) WINAPI -> BOOL { return FALSE; });
    EXPECT_FALSE(version.Read()) << "unreadable";
    EXPECT_EQ(nullptr, version.GetStringValue("CompanyName"));
    EXPECT_STREQ("Tarnwick", company);
}

struct FilledInfo : ModuleInfo {
    FilledInfo() : ModuleInfo{sizeof(ModuleInfo), {}, {}, {}, 77, 77, {}, {}} {}
    ~FilledInfo() {
        for (BSTR text : {moduleName, computerName, filePath}) ::SysFreeString(text);
    }
    bool Fill() {
        return KB_FillModuleInfo(this, nullptr, "Caf\xe9", "fifteen letters", "in either block");
    }
    Bytes Content() const { return Bytes(this, sizeof(ModuleInfo)); }
};

/// What the system was asked for, and how much it gives.
std::vector<std::string> asked;
std::string refused;
int textsLeft, textsFreed;
bool Gives(const char* what) { return asked.emplace_back(what) != refused; }
BOOL WINAPI Computer(char* name, DWORD* size) {
    EXPECT_EQ(260u, *size);
    *size = static_cast<DWORD>(std::strlen(std::strcpy(name, "computer")));
    return Gives("computer");
}
DWORD WINAPI File(HMODULE module, char* path, DWORD size) {
    return Gives("file") ? ::GetModuleFileNameA(module, path, size) : 0;
}
DWORD WINAPI VersionSize(const char* file, DWORD* ignored) {
    return Gives("version") ? ::GetFileVersionInfoSizeA(file, ignored) : 0;
}
BSTR WINAPI NewText(const wchar_t* text) {
    return textsLeft-- > 0 ? ::SysAllocString(text) : nullptr;
}
void WINAPI FreeText(BSTR text) {
    textsFreed += text != nullptr;
    ::SysFreeString(text);
}

struct FillModuleInfo : testing::Test {
    const ImportPatch patches[5] = {{"GetComputerNameA", Computer},
                                    {"GetModuleFileNameA", File},
                                    {"GetFileVersionInfoSizeA", VersionSize},
                                    {"SysAllocString", NewText},
                                    {"SysFreeString", FreeText}};
};

TEST_F(FillModuleInfo, TellsWhatTheSystemTells) {
    for (const char* failing : {"nothing", "computer", "file", "version"}) {
        SCOPED_TRACE(failing);
        refused = failing;
        textsLeft = 3;
        FilledInfo info;
        ASSERT_TRUE(info.Fill());
        const bool hasFile = refused != "file", hasVersion = hasFile && refused != "version";
        ASSERT_STREQ(L"Caf\xe9", info.moduleName);
        ASSERT_STREQ(refused == "computer" ? L"" : L"computer", info.computerName);
        ASSERT_STREQ(hasFile ? _wpgmptr : L"", info.filePath);
        ASSERT_EQ(hasVersion ? 0x30004u : 0, info.productVersionMS);
        ASSERT_EQ(hasVersion ? 0x50006u : 0, info.productVersionLS);
        ASSERT_EQ(Bytes("fifteen letters", 16), Bytes(info.firstBlock, 16));
        ASSERT_EQ(Bytes("in either block", 16), Bytes(info.secondBlock, 16));
    }
}

TEST_F(FillModuleInfo, AsksInOrderAndFillsNothingWhereMemoryRunsOut) {
    const std::vector<std::string> order = {"computer", "file", "version"};
    for (std::size_t texts = 0; texts <= order.size(); ++texts) {
        SCOPED_TRACE(texts);
        textsLeft = static_cast<int>(texts);
        textsFreed = 0;
        asked.clear();
        FilledInfo info;
        const Bytes before = info.Content();
        ASSERT_EQ(texts == order.size(), info.Fill());
        ASSERT_THAT(asked, ElementsAreArray(order.data(), texts));
        if (texts == order.size()) continue;
        ASSERT_EQ(before, info.Content());
        ASSERT_EQ(texts, textsFreed);
    }
}

TEST_F(FillModuleInfo, LeavesARecordThatItRefuses) {
    EXPECT_FALSE(KB_FillModuleInfo(nullptr, nullptr, "Name", kLibrary, kProgram));
    FilledInfo info;
    const Bytes before = info.Content();
    EXPECT_FALSE(KB_FillModuleInfo(&info, nullptr, "Name", nullptr, kProgram));
    EXPECT_FALSE(KB_FillModuleInfo(&info, nullptr, "Name", kProgram, nullptr));
    for (const DWORD size : {0u, 55u, 57u}) {
        info.size = size;
        ASSERT_FALSE(info.Fill()) << "of size " << size;
    }
    info.size = sizeof(ModuleInfo);
    EXPECT_EQ(before, info.Content());
}

}  // namespace
