#include <gtest/gtest.h>
#include <kitbag/files/eject.h>
#include <kitbag/frame/win_string.h>
#include <tests/support/windows_98.h>

#include <map>

namespace {

using kitbag::test::ImportPatch;

using Answers = std::map<std::string, int>;

/// What the system was asked, each call's name behind a blank; and what it answers: the type of a
/// drive, the error of a DOS call, how often any other call fails before it succeeds.
std::string calls;
Answers answers;

template <class... Arguments>
int& Ask(const char* format, Arguments... arguments) {
    TWinString<char> call;
    call.Format(format, arguments...);
    calls += ' ' + call;
    return answers[call];
}

UINT WINAPI DriveType(const char* root) { return static_cast<UINT>(Ask("%s", root)); }
HANDLE WINAPI Open(const char* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES*, DWORD how,
                   DWORD flags, HANDLE) {
    const int failures = Ask("%s,%lx,%lx,%lx,%lx", name, access, share, how, flags);
    return failures ? INVALID_HANDLE_VALUE : nullptr;
}
BOOL WINAPI Control(HANDLE, DWORD code, void* in, DWORD size, void* out, DWORD outSize, DWORD*,
                    OVERLAPPED*) {
    if (size == 0) return Ask("%lx", code)-- <= 0;
    if (size == 1) return Ask("%lx=%d", code, *static_cast<BYTE*>(in))-- <= 0;
    EXPECT_TRUE(code == 1 && size == 28 && outSize == 28 && out == in);
    // A DOS call, named by ECX and EBX and, where it locks a medium, by the operation.
    auto& [ebx, edx, ecx, eax, edi, esi, flags] = *static_cast<DWORD(*)[7]>(in);
    auto* medium = ecx == 0x848 ? reinterpret_cast<BYTE*>(edx) : nullptr;
    if (medium && medium[0] == 2) medium[1] = static_cast<BYTE>(answers["locks"]);
    EXPECT_TRUE(eax == 0x440D && ((medium ? 0 : edx) | edi | esi | flags) == 0);
    const int error = Ask("%lx/%lx.%d", ecx, ebx, medium ? medium[0] : 0);
    flags = error != 0;
    eax = static_cast<DWORD>(error);
    return TRUE;
}
BOOL WINAPI Close(HANDLE) { return Ask("close")-- <= 0; }
void WINAPI Wait(DWORD time) { Ask("wait%lu", time); }

void Expect(const Answers& given, const std::string& expected, bool result, char letter = 'e') {
    const ImportPatch driveType("GetDriveTypeA", DriveType), open("CreateFileA", Open),
        control("DeviceIoControl", Control), close("CloseHandle", Close), wait("Sleep", Wait);
    calls.clear();
    answers = given;
    answers.insert({{"e:\\", DRIVE_CDROM}, {"E:\\", DRIVE_REMOVABLE}});
    EXPECT_EQ(result, KB_EjectVolume(letter)) << expected;
    EXPECT_EQ(expected, calls);
}

TEST(Eject, TakesOneStepAfterTheOtherOnNt) {
    // Lock, dismount, allow removal, eject.
    const std::string steps = " 90018 90020 2d4804=0 2d4808 close",
                      open = "\\\\.\\e:,80000000,3,3,0", cd = " e:\\ " + open;
    Expect({}, cd + steps, true);
    Expect({}, " E:\\ \\\\.\\E:,c0000000,3,3,0" + steps, true, 'E');
    Expect({{"e:\\", DRIVE_FIXED}}, " e:\\", false);
    Expect({{"90020", 1}}, cd + " 90018 90020 close", true);
    Expect({{"close", 1}}, cd + steps, false);
    for (const char letter : {'\0', '@', '[', '{'}) Expect({}, "", false, letter);
    std::string locks;
    for (int i = 1; i < 20; ++i) locks += " 90018 wait500";
    Expect({{"90018", 19}}, cd + locks + steps, true);
    Expect({{"90018", 20}}, cd + locks + " 90018 close", true);
    Expect({{open, 1}}, cd, false);
}

TEST(Eject, AsksDosOn9x) {
    const kitbag::test::Windows98 windows98;
    const std::string open = "\\\\.\\vwin32,0,0,0,4000000", end = " 486a/5.0 close",
                      locked = ' ' + open + " 484a/5.0 848/5.2", eject = " 849/5.0",
                      category8 = ' ' + open + " 484a/5.0 84a/5.0";
    Expect({{"locks", 2}}, locked + " 848/5.1 848/5.1" + eject + end, true);
    Expect({{open, 1}}, ' ' + open, false, 'E');
    Expect({{"484a/5.0", 1}, {"486a/5.0", 1}},
           category8 + " 848/5.2 849/5.0 486a/5.0 86a/5.0 close", true);
    Expect({{"484a/5.0", 1}, {"84a/5.0", 1}}, category8 + " close", false);
    for (const int error : {1, 0xB0}) Expect({{"848/5.2", error}}, locked + eject + end, true);
    Expect({{"848/5.2", 5}}, locked + end, false);
    Expect({{"848/5.1", 0xB0}, {"locks", 2}}, locked + " 848/5.1" + end, false);
    Expect({{"849/5.0", 5}}, locked + eject + end, false);
}

}  // namespace
