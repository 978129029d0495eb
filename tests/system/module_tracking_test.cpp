#include <kitbag/system/module_tracking.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>
// Needs the system's header.
#include <dbghelp.h>

#include <optional>
#include <tuple>

namespace {

using namespace kitbag::test;
using namespace std::string_literals;

constexpr char kVersionKey[] = "Software\\Tarnwick\\Vidmoor\\Version";
constexpr char kRunOnceKey[] = "Software\\Tarnwick\\Vidmoor\\RunOnce";
constexpr char kName[] = "Scanner";

/// Late enough to be negative where the sign bit is taken for one.
constexpr DWORD kLinked = 0xf0000000;

std::string BytesOf(DWORD number) { return {reinterpret_cast<char*>(&number), sizeof number}; }

/// A module's file as far as its link time.
std::string Module(DWORD newHeader = 64, const std::string& signature = "PE\0\0"s) {
    return "MZ" + std::string(58, '?') + BytesOf(newHeader) + signature + "????" + BytesOf(kLinked);
}

/// What KB_GetStoredLinkTime answers and tells, of outputs that hold 77 before.
using Answer = std::tuple<bool, DWORD, DWORD>;

struct ModuleTracking : testing::Test {
    ModuleTracking() { folder.Write("module", Module()); }

    static Answer Ask(const std::string& file, bool update) {
        DWORD stored = 77, current = 77;
        const bool answer = KB_GetStoredLinkTime(file.c_str(), kName, &stored, &current, update);
        return {answer, stored, current};
    }
    static void Store(DWORD type, const std::string& bytes) {
        ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, kVersionKey, kName, type, bytes.data(), bytes.size());
    }
    static void Store(DWORD time) { Store(REG_DWORD, BytesOf(time)); }
    /// What the registry holds as a number.
    static std::optional<DWORD> Stored() {
        DWORD time = 0, size = sizeof time;
        const LSTATUS result = ::RegGetValueA(HKEY_LOCAL_MACHINE, kVersionKey, kName,
                                              RRF_RT_REG_DWORD, nullptr, &time, &size);
        return result == ERROR_SUCCESS ? std::optional(time) : std::nullopt;
    }

    const TextFolder<char> folder;
    const std::string module = folder.In("module");
};

TEST_F(ModuleTracking, TellsTheTimeThatIsStored) {
    EXPECT_EQ(Answer(false, 0, 77), Ask(module, false)) << "none";
    EXPECT_EQ(std::nullopt, Stored());
    struct Row {
        const char* about;
        DWORD type;
        std::string bytes;
        Answer answer;
    };
    for (const Row& row : {Row{"a number", REG_DWORD, "\1\2\3\4", {true, 0x04030201, 77}},
                           Row{"four other bytes", REG_BINARY, "\1\2\3\4", {true, 0x04030201, 77}},
                           Row{"fewer bytes", REG_BINARY, "\1\2", {true, 0x0201, 77}},
                           Row{"more bytes", REG_BINARY, "\1\2\3\4\5", {false, 0, 77}}}) {
        Store(row.type, row.bytes);
        ASSERT_EQ(row.answer, Ask(module, false)) << row.about;
    }
}

TEST_F(ModuleTracking, StoresTheLinkTimeOnRequest) {
    EXPECT_EQ(Answer(false, 0, kLinked), Ask(module, true));
    EXPECT_EQ(kLinked, Stored());
    const DWORD own = ::ImageNtHeader(::GetModuleHandleA(nullptr))->FileHeader.TimeDateStamp;
    EXPECT_EQ(Answer(true, kLinked, own), Ask(_pgmptr, true));
    EXPECT_EQ(own, Stored());

    DWORD time = 77;
    EXPECT_FALSE(KB_GetStoredLinkTime(module.c_str(), kName, nullptr, &time, true));
    EXPECT_FALSE(KB_GetStoredLinkTime(module.c_str(), kName, &time, nullptr, true));
    EXPECT_EQ(77u, time);
    EXPECT_EQ(own, Stored());
    EXPECT_TRUE(KB_GetStoredLinkTime(module.c_str(), kName, &time, nullptr, false));
}

TEST_F(ModuleTracking, TakesNoTimeFromWhatIsNoModule) {
    Store(5);
    const std::pair<const char*, std::string> files[] = {
        {"empty", ""},
        {"another first signature", "N" + Module().substr(1)},
        {"ends before the place of its header", Module().substr(0, 60)},
        {"ends in the place of its header", Module().substr(0, 63)},
        {"header behind the end", Module(1000)},
        {"header before the start", Module(0x80000000)},
        {"another signature", Module(64, "PE\1\0"s)},
        {"ends in its signature", Module().substr(0, 67)},
        {"ends before its time", Module().substr(0, 72)},
        {"ends in its time", Module().substr(0, 75)}};
    for (const auto& [about, content] : files) {
        folder.Write("damaged", content);
        ASSERT_EQ(Answer(true, 5, 0), Ask(folder.In("damaged"), true)) << about;
        ASSERT_EQ(5u, Stored()) << about;
    }
}

TEST_F(ModuleTracking, ReadsFilesThatOthersReadButDoNotWrite) {
    for (const auto& [access, current] : {std::pair{GENERIC_READ, kLinked}, {GENERIC_WRITE, 0ul}}) {
        HANDLE other = ::CreateFileA(module.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     nullptr, OPEN_EXISTING, 0, nullptr);
        EXPECT_EQ(current, std::get<2>(Ask(module, true))) << access;
        ::CloseHandle(other);
    }
}

TEST_F(ModuleTracking, SeesModulesThatWereLinkedSince) {
    EXPECT_TRUE(KB_IsNewModule("missing", kName)) << "never seen";
    EXPECT_EQ(std::nullopt, Stored());
    for (const auto& [stored, isNew] :
         {std::pair{kLinked - 1, true}, {kLinked, false}, {kLinked + 1, false}}) {
        Store(stored);
        ASSERT_EQ(isNew, KB_IsNewModule(module.c_str(), kName)) << std::hex << stored;
        ASSERT_EQ(kLinked, Stored());
    }
    for (const auto& [time, isNewer] : {std::pair{6u, true}, {5u, false}, {0x80000000, true}}) {
        Store(5);
        ASSERT_EQ(isNewer, KB_IsNewerModule(module.c_str(), kName, time)) << std::hex << time;
        ASSERT_EQ(kLinked, Stored());
    }
}

TEST_F(ModuleTracking, TakesAForgottenModuleForNew) {
    Store(5);
    EXPECT_TRUE(KB_ForceNewModule(nullptr, kName));
    EXPECT_EQ(std::nullopt, Stored());
    EXPECT_FALSE(KB_ForceNewModule(nullptr, kName)) << "not seen since";
    EXPECT_TRUE(KB_IsNewModule(module.c_str(), kName));
    EXPECT_TRUE(KB_ForceNewModule(nullptr, kName));
    EXPECT_TRUE(KB_IsNewerModule(module.c_str(), kName, 0));
    EXPECT_EQ(kLinked, Stored());
}

TEST(FirstRun, LastsAsLongAsItsKey) {
    EXPECT_FALSE(KB_IsFirstRun());
    ::RegSetValueA(HKEY_LOCAL_MACHINE, kRunOnceKey, REG_SZ, "", 0);
    EXPECT_TRUE(KB_IsFirstRun());
    EXPECT_TRUE(KB_IsFirstRun()) << "asking does not end it";
    ::RegDeleteKeyA(HKEY_LOCAL_MACHINE, kRunOnceKey);
    EXPECT_FALSE(KB_IsFirstRun());
}

/// A system on which these keys may be read only.
LSTATUS WINAPI OpenForReading(HKEY parent, const char* path, DWORD options, REGSAM access,
                              HKEY* key) {
    if (access == KEY_ALL_ACCESS) return ERROR_ACCESS_DENIED;
    return ::RegOpenKeyExA(parent, path, options, access, key);
}

TEST_F(ModuleTracking, TakesKeysForMissingThatMayOnlyBeRead) {
    Store(5);
    ::RegSetValueA(HKEY_LOCAL_MACHINE, kRunOnceKey, REG_SZ, "", 0);
    const ImportPatch patch("RegOpenKeyExA", OpenForReading);
    EXPECT_EQ(Answer(false, 0, 77), Ask(module, false));
    EXPECT_FALSE(KB_ForceNewModule(nullptr, kName));
    EXPECT_FALSE(KB_IsFirstRun());
}

}  // namespace
