#include <gtest/gtest.h>
#include <kitbag/files/eject.h>
#include <kitbag/frame/win_string.h>
#include <tests/support/import_patch.h>
#include <tests/support/trace_capture.h>

#include <map>

namespace {

using kitbag::test::ImportPatch;

/// What the system was asked, each call's name behind a blank; and what it answers: how often a
/// call fails before it succeeds, the error that a DOS call returns with its carry flag.
struct System {
    UINT driveType = DRIVE_CDROM;
    std::map<std::string, int> failures{};
    std::map<std::string, DWORD> carries{};
    BYTE locks = 0;
    std::string calls{};
    TWinString<char> last{};

    template <class... Arguments>
    bool Call(const char* format, Arguments... arguments) {
        last.Format(format, arguments...);
        calls += ' ' + last;
        return failures[last]-- <= 0;
    }
} fake;

UINT WINAPI DriveType(const char* root) { return fake.Call("%s", root), fake.driveType; }
HANDLE WINAPI Open(const char* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES*, DWORD how,
                   DWORD flags, HANDLE) {
    const bool isOpen = fake.Call("%s,%lx,%lx,%lx,%lx", name, access, share, how, flags);
    ::SetLastError(ERROR_ACCESS_DENIED);
    return isOpen ? nullptr : INVALID_HANDLE_VALUE;
}
BOOL WINAPI Control(HANDLE, DWORD code, void* in, DWORD size, void* out, DWORD outSize, DWORD*,
                    OVERLAPPED*) {
    if (size == 0) return fake.Call("%lx", code);
    if (size == 1) return fake.Call("%lx=%d", code, *static_cast<BYTE*>(in));
    EXPECT_TRUE(code == 1 && size == 28 && outSize == 28 && out == in);
    // A DOS call, named by ECX and EBX and, where it locks a medium, by the operation.
    auto& [ebx, edx, ecx, eax, edi, esi, flags] = *static_cast<DWORD(*)[7]>(in);
    auto* medium = ecx == 0x848 ? reinterpret_cast<BYTE*>(edx) : nullptr;
    if (medium && medium[0] == 2) medium[1] = fake.locks;
    EXPECT_TRUE(eax == 0x440D && ((medium ? 0 : edx) | edi | esi | flags) == 0);
    const bool result = fake.Call("%lx/%lx.%d", ecx, ebx, medium ? medium[0] : 0);
    flags = fake.carries.contains(fake.last);
    if (flags) eax = fake.carries[fake.last];
    return result;
}
BOOL WINAPI Close(HANDLE) { return fake.Call("close"); }
void WINAPI Wait(DWORD time) { fake.Call("wait%lu", time); }
BOOL WINAPI AnswerWindows98(OSVERSIONINFOA* version) {
    version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    return TRUE;
}

void Expect(const System& answers, const std::string& calls, bool result, char letter = 'e') {
    const ImportPatch driveType("GetDriveTypeA", DriveType), open("CreateFileA", Open),
        control("DeviceIoControl", Control), close("CloseHandle", Close), wait("Sleep", Wait);
    fake = answers;
    EXPECT_EQ(result, KB_EjectVolume(letter)) << calls;
    EXPECT_EQ(calls, fake.calls);
}

TEST(Eject, TakesOneStepAfterTheOtherOnNt) {
    // Lock, dismount, allow removal, eject.
    const std::string steps = " 90018 90020 2d4804=0 2d4808 close",
                      open = "\\\\.\\e:,80000000,3,3,0";
    const std::string cd = " e:\\ " + open;
    kitbag::test::TraceCapture trace;
    Expect({}, cd + steps, true);
    Expect({DRIVE_REMOVABLE}, " E:\\ \\\\.\\E:,c0000000,3,3,0" + steps, true, 'E');
    Expect({DRIVE_FIXED}, " e:\\", false);
    Expect({.failures = {{"90020", 1}}}, cd + " 90018 90020 close", true);
    Expect({.failures = {{"2d4804=0", 1}}}, cd + " 90018 90020 2d4804=0 close", true);
    Expect({.failures = {{"close", 1}}}, cd + steps, false);
    for (const char letter : {'\0', '1', '@', '[', '{', '\xe9'}) Expect({}, "", false, letter);
    std::string locks;
    for (int i = 1; i < 20; ++i) locks += " 90018 wait500";
    Expect({.failures = {{"90018", 19}}}, cd + locks + steps, true);
    Expect({.failures = {{"90018", 20}}}, cd + locks + " 90018 close", true);
    trace.Expect({});
    Expect({.failures = {{open, 1}}}, cd, false);
    trace.Expect({"Error 5: CreateFile\n"});
}

TEST(Eject, AsksDosOn9x) {
    const ImportPatch version("GetVersionExA", AnswerWindows98);
    const std::string open = "\\\\.\\vwin32,0,0,0,4000000", end = " 486a/5.0 close";
    const std::string locked = ' ' + open + " 484a/5.0 848/5.2", eject = " 849/5.0";
    const std::string category8 = ' ' + open + " 484a/5.0 84a/5.0";
    Expect({.locks = 2}, locked + " 848/5.1 848/5.1" + eject + end, true);
    Expect({.failures = {{open, 1}}}, ' ' + open, false, 'E');
    Expect({.carries = {{"484a/5.0", 1}, {"486a/5.0", 1}}},
           category8 + " 848/5.2 849/5.0 486a/5.0 86a/5.0 close", true);
    Expect({.carries = {{"484a/5.0", 1}, {"84a/5.0", 1}}}, category8 + " close", false);
    Expect({.carries = {{"848/5.2", 1}}}, locked + eject + end, true);
    Expect({.carries = {{"848/5.2", 0xB0}}}, locked + eject + end, true);
    Expect({.carries = {{"848/5.2", 5}}}, locked + end, false);
    Expect({.carries = {{"848/5.1", 0xB0}}, .locks = 2}, locked + " 848/5.1" + end, false);
    Expect({.carries = {{"849/5.0", 5}}}, locked + eject + end, false);
}

}  // namespace
