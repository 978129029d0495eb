#include <gtest/gtest.h>
#include <kitbag/files/eject.h>
#include <tests/support/import_patch.h>
#include <tests/support/trace_capture.h>
#include <winioctl.h>

#include <cctype>
#include <cstring>
#include <map>
#include <vector>

namespace {

using kitbag::test::ImportPatch;
using Calls = std::vector<std::string>;

/// The system's answers, and what it was asked.
struct System {
    UINT driveType = DRIVE_CDROM;
    /// How often a call fails before it succeeds.
    std::map<std::string, int> failures{};
    /// The error that a DOS call returns with its carry flag.
    std::map<std::string, DWORD> carries{};
    BYTE locks = 0;
    Calls calls{};

    bool Call(const std::string& call) {
        calls.push_back(call);
        return failures[call]-- <= 0;
    }
};
System fake;
const HANDLE device = reinterpret_cast<HANDLE>(0x1234);

std::string Hex(DWORD number) {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%lx", number);
    return digits;
}

UINT WINAPI FakeDriveType(const char* root) {
    fake.Call(root);
    return fake.driveType;
}

HANDLE WINAPI FakeOpen(const char* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES*,
                       DWORD disposition, DWORD flags, HANDLE) {
    const bool isOpen = fake.Call("open " + std::string(name) + ' ' + Hex(access) + ' ' +
                                  Hex(share) + ' ' + Hex(disposition) + ' ' + Hex(flags));
    ::SetLastError(ERROR_ACCESS_DENIED);
    return isOpen ? device : INVALID_HANDLE_VALUE;
}

/// A call's name is its ECX with, of the medium's lock requests, the operation.
bool DosCall(DWORD (&registers)[7]) {
    auto& [ebx, edx, ecx, eax, edi, esi, flags] = registers;
    EXPECT_EQ(5u, ebx) << "lock level 0 and drive E";
    EXPECT_EQ(0x440Du, eax);
    EXPECT_EQ(0u, edi | esi | flags);
    auto* lock = reinterpret_cast<BYTE*>(ecx == 0x0848 ? edx : 0);
    EXPECT_EQ(lock == nullptr, edx == 0) << "no permissions";
    const std::string name = Hex(ecx) + (lock ? ' ' + std::to_string(lock[0]) : "");
    if (lock && lock[0] == 2) lock[1] = fake.locks;
    if (const auto carry = fake.carries.find(name); carry != fake.carries.end()) {
        flags = 1;
        eax = carry->second;
    }
    return fake.Call(name);
}

BOOL WINAPI FakeControl(HANDLE handle, DWORD code, void* input, DWORD size, void* output,
                        DWORD outputSize, DWORD*, OVERLAPPED*) {
    EXPECT_EQ(device, handle);
    if (code == 1) {
        EXPECT_EQ(28u, size);
        EXPECT_EQ(28u, outputSize);
        EXPECT_EQ(input, output);
        return DosCall(*static_cast<DWORD(*)[7]>(input));
    }
    if (size == 0) return fake.Call(Hex(code));
    EXPECT_EQ(1u, size);
    return fake.Call(Hex(code) + ' ' + std::to_string(*static_cast<BYTE*>(input)));
}

BOOL WINAPI FakeClose(HANDLE handle) {
    EXPECT_EQ(device, handle);
    return fake.Call("close");
}

void WINAPI FakeSleep(DWORD time) { fake.Call("sleep " + std::to_string(time)); }

BOOL WINAPI AnswerWindows98(OSVERSIONINFOA* version) {
    version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    return TRUE;
}

class Eject : public testing::Test {
 protected:
    static void Expect(const System& answers, const Calls& calls, bool result, char letter = 'e') {
        SCOPED_TRACE(testing::PrintToString(calls));
        fake = answers;
        EXPECT_EQ(result, KB_EjectVolume(letter));
        EXPECT_EQ(calls, fake.calls);
    }

    ImportPatch driveType_{"GetDriveTypeA", FakeDriveType};
    ImportPatch open_{"CreateFileA", FakeOpen};
    ImportPatch control_{"DeviceIoControl", FakeControl};
    ImportPatch close_{"CloseHandle", FakeClose};
    ImportPatch sleep_{"Sleep", FakeSleep};
};

const std::string openCd = "open \\\\.\\e: 80000000 3 3 0";
const std::string lock = Hex(FSCTL_LOCK_VOLUME);
const std::string dismount = Hex(FSCTL_DISMOUNT_VOLUME);
const std::string allow = Hex(IOCTL_STORAGE_MEDIA_REMOVAL) + " 0";
const std::string eject = Hex(IOCTL_STORAGE_EJECT_MEDIA);

TEST_F(Eject, AsksForEachStepAfterTheOneBeforeItOnNt) {
    kitbag::test::TraceCapture trace;
    Expect({}, {"e:\\", openCd, lock, dismount, allow, eject, "close"}, true);
    Expect({.driveType = DRIVE_REMOVABLE},
           {"F:\\", "open \\\\.\\F: c0000000 3 3 0", lock, dismount, allow, eject, "close"}, true,
           'F');
    Expect({.failures = {{dismount, 1}}}, {"e:\\", openCd, lock, dismount, "close"}, true);
    Expect({.failures = {{allow, 1}}}, {"e:\\", openCd, lock, dismount, allow, "close"}, true);
    Expect({.failures = {{eject, 1}, {"close", 1}}},
           {"e:\\", openCd, lock, dismount, allow, eject, "close"}, false);
    trace.Expect({});
    Expect({.failures = {{openCd, 1}}}, {"e:\\", openCd}, false);
    trace.Expect({"Error 5: CreateFile\n"});
}

TEST_F(Eject, LeavesOtherDrivesAlone) {
    for (const auto type :
         std::initializer_list<UINT>{DRIVE_FIXED, DRIVE_REMOTE, DRIVE_NO_ROOT_DIR})
        Expect({.driveType = type}, {"e:\\"}, false);
    for (const char letter : {'\0', '1', '@', '[', '\\', '{', '\xe9'})
        Expect({}, {}, false, letter);
}

TEST_F(Eject, TriesTheLockTwentyTimesOnNt) {
    for (const int failures : {1, 19, 20, 1000}) {
        Calls calls = {"e:\\", openCd};
        for (int i = 0; i < std::min(failures, 19); ++i) {
            calls.push_back(lock);
            calls.push_back("sleep 500");
        }
        calls.push_back(lock);
        if (failures < 20) calls.insert(calls.end(), {dismount, allow, eject});
        calls.push_back("close");
        Expect({.failures = {{lock, failures}}}, calls, true);
    }
}

TEST_F(Eject, AsksDosOn9x) {
    const ImportPatch version("GetVersionExA", AnswerWindows98);
    const std::string open = "open \\\\.\\vwin32 0 0 0 4000000";
    Expect({.locks = 2}, {open, "484a", "848 2", "848 1", "848 1", "849", "486a", "close"}, true);
    Expect({}, {open, "484a", "848 2", "849", "486a", "close"}, true, 'E');
    Expect({.failures = {{open, 1}}}, {open}, false);
    // Each category in turn.
    Expect({.carries = {{"484a", 1}}}, {open, "484a", "84a", "848 2", "849", "486a", "close"},
           true);
    Expect({.failures = {{"484a", 1}, {"486a", 1}}},
           {open, "484a", "84a", "848 2", "849", "486a", "86a", "close"}, true);
    Expect({.carries = {{"484a", 1}, {"84a", 1}}}, {open, "484a", "84a", "close"}, false);
    // The medium's locks.
    for (const DWORD error : {0xB0u, 1u})
        Expect({.carries = {{"848 2", error}}}, {open, "484a", "848 2", "849", "486a", "close"},
               true);
    Expect({.carries = {{"848 2", 5}}}, {open, "484a", "848 2", "486a", "close"}, false);
    Expect({.failures = {{"848 2", 1}}}, {open, "484a", "848 2", "486a", "close"}, false);
    Expect({.carries = {{"848 1", 0xB0}}, .locks = 2},
           {open, "484a", "848 2", "848 1", "486a", "close"}, false);
    Expect({.carries = {{"849", 5}}}, {open, "484a", "848 2", "849", "486a", "close"}, false);
}

}  // namespace
