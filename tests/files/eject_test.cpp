#include <kitbag/files/eject.h>
#include <kitbag/frame/win_string.h>
#include <tests/support/windows_98.h>

#include <map>

namespace {

using namespace kitbag::test;

/// What the system was asked, each call behind a blank; and what it answers: the type of a drive,
/// the error of a DOS call, how often any other call fails before it succeeds.
std::string calls;
std::map<std::string, int> answers;

template <class... Arguments>
int& Ask(const char* format, Arguments... arguments) {
    TWinString<char> call;
    call.Format(format, arguments...);
    calls += ' ' + call;
    return answers[call];
}

UINT WINAPI DriveType(const char* root) { return static_cast<UINT>(Ask("%s", root)); }
HANDLE WINAPI Open(const char* name, DWORD mode, DWORD share, void*, DWORD how, DWORD flag, void*) {
    Ask("%s,%lx,%lx,%lx,%lx", name, mode, share, how, flag);
    return nullptr;
}
BOOL WINAPI Control(HANDLE, DWORD code, BYTE* in, DWORD size, void* out, DWORD room, void*, void*) {
    if (size < 28) return Ask(size ? "%lx=%d" : "%lx", code, size ? *in : 0)-- <= 0;
    // A DOS call, named by ECX and EBX and, where it locks a medium, by the operation.
    auto& [ebx, edx, ecx, eax, edi, esi, flags] = *reinterpret_cast<DWORD(*)[7]>(in);
    BYTE none[2] = {}, *medium = ecx == 0x848 ? reinterpret_cast<BYTE*>(edx) : none;
    if (medium[0] == 2) medium[1] = static_cast<BYTE>(answers["locks"]);
    EXPECT_TRUE(code == 1 && room == 28 && out == in && eax == 0x440D &&
                ((medium == none ? edx : 0) | edi | esi | flags) == 0);
    eax = static_cast<DWORD>(Ask("%lx/%lx.%d", ecx, ebx, medium[0]));
    flags = eax != 0;
    return TRUE;
}
BOOL WINAPI Close(HANDLE) { return Ask("close")-- <= 0; }
void WINAPI Wait(DWORD time) { Ask("wait%lu", time); }

void Expect(decltype(answers) given, const std::string& expected, bool result, char letter = 'e') {
    const ImportPatch driveType("GetDriveTypeA", DriveType), open("CreateFileA", Open),
        control("DeviceIoControl", Control), close("CloseHandle", Close), wait("Sleep", Wait);
    calls.clear();
    answers.swap(given);
    answers.insert({{"e:\\", DRIVE_CDROM}, {"E:\\", DRIVE_REMOVABLE}});
    EXPECT_EQ(result, KB_EjectVolume(letter)) << expected;
    EXPECT_EQ(expected, calls);
}

TEST(Eject, TakesOneStepAfterTheOtherOnNt) {
    // Lock, dismount, allow removal, eject.
    const std::string steps = " 90018 90020 2d4804=0 2d4808 close";
    std::string cd = " e:\\ \\\\.\\e:,80000000,3,3,0";
    Expect({{"e:\\", DRIVE_FIXED}}, " e:\\", false);
    Expect({{"90020", 1}}, cd + " 90018 90020 close", true);
    Expect({{"close", 1}}, " E:\\ \\\\.\\E:,c0000000,3,3,0" + steps, false, 'E');
    for (const char letter : {'@', '[', '`', '{'}) Expect({}, "", false, letter);
    for (int i = 1; i < 20; ++i) cd += " 90018 wait500";
    Expect({{"90018", 19}}, cd + steps, true);
    Expect({{"90018", 20}}, cd + " 90018 close", true);
}

TEST(Eject, AsksDosOn9x) {
    const Windows98 windows98;
    const std::string locked = " \\\\.\\vwin32,0,0,0,4000000 484a/5.0", asked = locked + " 848/5.2",
                      end = " 486a/5.0 close";
    Expect({{"locks", 2}}, asked + " 848/5.1 848/5.1 849/5.0" + end, true, 'E');
    Expect({{"484a/5.0", 1}, {"848/5.2", 1}, {"486a/5.0", 1}},
           locked + " 84a/5.0 848/5.2 849/5.0 486a/5.0 86a/5.0 close", true);
    Expect({{"484a/5.0", 1}, {"84a/5.0", 1}}, locked + " 84a/5.0 close", false);
    Expect({{"848/5.2", 0xB0}, {"849/5.0", 5}}, asked + " 849/5.0" + end, false);
    Expect({{"848/5.2", 5}}, asked + end, false);
}

}  // namespace
