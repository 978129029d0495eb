#include <intrin.h>
#include <kitbag/system/system_information.h>
#include <tests/support/import_patch.h>
#include <tests/support/library_copy.h>

#include <cstring>
#include <memory>

namespace {

using namespace kitbag::test;

int timesAsked;
DWORD platform;
BOOL WINAPI FakeVersion(OSVERSIONINFOA* version) {
    ++timesAsked;
    EXPECT_EQ(148u, version->dwOSVersionInfoSize);
    version->dwPlatformId = platform;
    return platform != 0;
}

TEST(IsNt, AsksTheSystemUntilItAnswers) {
    for (const auto& [answer, isNt] : {std::pair{DWORD{VER_PLATFORM_WIN32_NT}, true},
                                       {DWORD{VER_PLATFORM_WIN32_WINDOWS}, false}}) {
        const LibraryCopy library;
        const ImportPatch patch("GetVersionExA", FakeVersion, library.kName);
        const auto ask = library.Find<bool()>("KB_IsNT");
        timesAsked = 0;
        platform = 0;
        ASSERT_FALSE(ask());
        platform = answer;
        ASSERT_EQ(isNt, ask());
        ASSERT_EQ(isNt, ask());
        ASSERT_EQ(2, timesAsked);
    }
}

struct {
    HWINSTA station;
    BOOL isReadable;
    DWORD flags;
} session;
HWINSTA WINAPI FakeStation() { return session.station; }
BOOL WINAPI FakeFlags(HANDLE object, int kind, void* flags, DWORD size, DWORD*) {
    EXPECT_EQ(session.station, object);
    EXPECT_EQ(UOI_FLAGS, kind);
    EXPECT_EQ(sizeof(USEROBJECTFLAGS), size);
    static_cast<USEROBJECTFLAGS*>(flags)->dwFlags = session.flags;
    return session.isReadable;
}

TEST(IsInteractiveSession, WantsAStationThatIsVisibleAndNothingElse) {
    struct Row {
        const char* about;
        decltype(session) answers;
        bool isInteractive;
    };
    const auto station = reinterpret_cast<HWINSTA>(4);
    for (const auto& [about, answers, isInteractive] :
         {Row{"visible", {station, TRUE, WSF_VISIBLE}, true},
          Row{"visible and more", {station, TRUE, WSF_VISIBLE | 2}, false},
          Row{"invisible", {station, TRUE, 0}, false},
          Row{"unreadable", {station, FALSE, WSF_VISIBLE}, false},
          Row{"no station", {nullptr, TRUE, WSF_VISIBLE}, false}}) {
        const LibraryCopy library;
        const ImportPatch stations("GetProcessWindowStation", FakeStation, library.kName),
            flags("GetUserObjectInformationA", FakeFlags, library.kName);
        const auto ask = library.Find<bool()>("KB_IsInteractiveSession");
        session = answers;
        ASSERT_EQ(isInteractive, ask()) << about;
        session = {station, TRUE, isInteractive ? 0u : WSF_VISIBLE};
        ASSERT_EQ(isInteractive, ask()) << "remembered";
    }
}

constexpr char kProcessor[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";
constexpr DWORD kMegacyclesBurnt = 200;
/// At the start, to the first edge and past a second.
constexpr DWORD kTicksOfAMeasurement = 1 + 2 + 1001;
constexpr int kStored = 5;

DWORD ticks;
/// The second in which the processor is measured lasts at least so many million cycles.
DWORD WINAPI NextTick() {
    constexpr DWORD kFirstOfTheSecond = 4;
    if (++ticks == kFirstOfTheSecond)
        for (const auto start = __rdtsc(); __rdtsc() - start < kMegacyclesBurnt * 1'000'000ull;) {
        }
    return 0xffffff00 + ticks;
}

struct Processor : testing::Test {
    static void Know() { ::RegSetValueA(HKEY_LOCAL_MACHINE, kProcessor, REG_SZ, "", 0); }
    static bool IsMeasured(auto askSpeed) {
        ticks = 0;
        const auto speed = static_cast<int>(askSpeed());
        return ticks == kTicksOfAMeasurement && speed != kStored;
    }

    const ImportPatch patch{"GetTickCount", NextTick};
};

TEST_F(Processor, IsMeasuredForASecondFromTheEdgeOfATick) {
    DWORD speed = 0;
    unsigned long long cycles = 0;
    do {
        ticks = 0;
        const auto start = __rdtsc();
        speed = KB_GetCPUSpeedCalculated();
        cycles = __rdtsc() - start;
        // Again where another program had the processor for so long that the counter wrapped.
    } while (cycles >> 32);
    EXPECT_LE(kMegacyclesBurnt, speed);
    EXPECT_GE(cycles / 1'000'000, speed);
    EXPECT_EQ(kTicksOfAMeasurement, ticks);
}

TEST_F(Processor, IsMeasuredUnlessItsSpeedAloneIsUnknown) {
    EXPECT_TRUE(IsMeasured(KB_GetCPUSpeedNT)) << "unknown";
    Know();
    EXPECT_EQ(0, KB_GetCPUSpeedNT());
    EXPECT_EQ(0, KB_GetCPUSpeed());
    ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, kProcessor, "~MHz", REG_DWORD, &kStored, 4);
    EXPECT_TRUE(IsMeasured(KB_GetCPUSpeedNT)) << "known";
}

HKEY foreign;
LSTATUS WINAPI LeaveForeignKey(HKEY, const char*, DWORD, REGSAM, HKEY* key) {
    *key = foreign;
    return ERROR_ACCESS_DENIED;
}

TEST_F(Processor, IsMeasuredWhereItsKeyCannotBeOpened) {
    ::RegCreateKeyA(HKEY_LOCAL_MACHINE, "Foreign", &foreign);
    const ImportPatch open("RegOpenKeyExA", LeaveForeignKey);
    EXPECT_TRUE(IsMeasured(KB_GetCPUSpeedNT));
    EXPECT_EQ(ERROR_SUCCESS, ::RegCloseKey(foreign)) << "is not the library's to close";
}

TEST(Windows98, HasNoStationsAndMeasuresItsProcessor) {
    const LibraryCopy library;
    const ImportPatch version("GetVersionExA", FakeVersion, library.kName),
        station("GetProcessWindowStation", FakeStation, library.kName),
        tick("GetTickCount", NextTick, library.kName);
    platform = VER_PLATFORM_WIN32_WINDOWS;
    session = {};
    EXPECT_TRUE(library.Find<bool()>("KB_IsInteractiveSession")());
    Processor::Know();
    EXPECT_TRUE(Processor::IsMeasured(library.Find<int()>("KB_GetCPUSpeed")));
}

/// What the processor says of itself, without the spaces around it.
std::string Brand() {
    char text[49] = {};
    for (unsigned part = 0; part < 3; ++part) {
        int registers[4];
        __cpuid(registers, static_cast<int>(0x80000002 + part));
        std::memcpy(text + part * sizeof registers, registers, sizeof registers);
    }
    const std::string brand(text), begun = brand.substr(brand.find_first_not_of(' '));
    return begun.substr(0, begun.find_last_not_of(' ') + 1);
}

TEST_F(Processor, IsDescribedByItsBrandAndSpeed) {
    Know();
    const auto taken = [](char* text) {
        const std::unique_ptr<char, decltype(&std::free)> owner(text, std::free);
        return text ? std::string(text) : "none";
    };
    EXPECT_EQ(Brand(), taken(KB_GetVendorString()));
    EXPECT_EQ("CPUID '" + Brand() + "'\nCPU 0Mhz", taken(KB_GetSystemDescription()));
    const ImportPatch noMemory(
        "_strdup", +[](const char*) -> char* { return nullptr; });
    EXPECT_EQ("none", taken(KB_GetVendorString()));
    EXPECT_EQ("none", taken(KB_GetSystemDescription()));
}

}  // namespace
