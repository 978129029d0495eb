#include <kitbag/files/eject.h>
#include <tests/support/own_process.h>
#include <tests/support/trace_capture.h>
#include <tests/support/windows_98.h>
#include <winioctl.h>

#include <map>

namespace {

using namespace kitbag::test;

using Answers = std::map<std::string, int>;

/// The calls of the system, a word each; and what they answer: the type of the drive, the error of
/// a DOS call, how often any other call fails before it succeeds.
std::string calls;
Answers answers;
/// The root that was asked for its type; the file that was opened, and how.
std::string root, opened;
DWORD dosDrive;

/// A DOS call that DOS does not get.
constexpr int kNoDos = -1;

int& Asked(const std::string& word) {
    calls += calls.empty() ? word : ' ' + word;
    return answers[word];
}

UINT WINAPI DriveType(const char* path) {
    root = path;
    return static_cast<UINT>(Asked("type"));
}
HANDLE WINAPI Open(const char* name, DWORD access, DWORD share, void*, DWORD how, DWORD flags,
                   HANDLE) {
    char details[80];
    ::wsprintfA(details, "%s %lx %lx %lx %lx", name, access, share, how, flags);
    opened = details;
    ::SetLastError(5);
    return Asked("open") > 0 ? INVALID_HANDLE_VALUE : nullptr;
}
BOOL WINAPI Close(HANDLE) { return Asked("close")-- <= 0; }
void WINAPI Wait(DWORD time) { Asked("wait" + std::to_string(time)); }

BOOL WINAPI ControlVolume(HANDLE, DWORD code, BYTE* input, DWORD size, void*, DWORD, void*, void*) {
    static const std::map<DWORD, const char*> words = {{FSCTL_LOCK_VOLUME, "lock"},
                                                       {FSCTL_DISMOUNT_VOLUME, "dismount"},
                                                       {IOCTL_STORAGE_MEDIA_REMOVAL, "allow"},
                                                       {IOCTL_STORAGE_EJECT_MEDIA, "eject"}};
    EXPECT_EQ(code == IOCTL_STORAGE_MEDIA_REMOVAL ? 1u : 0u, size);
    EXPECT_EQ(0, size ? *input : 0) << "prevents removal";
    return Asked(words.at(code))-- <= 0;
}

struct Registers {
    DWORD ebx, edx, ecx, eax, edi, esi, flags;
};

BOOL WINAPI ControlDos(HANDLE, DWORD code, Registers* registers, DWORD size, Registers* output,
                       DWORD room, void*, void*) {
    static const std::map<DWORD, const char*> words = {{0x484A, "lock48"},
                                                       {0x084A, "lock08"},
                                                       {0x486A, "unlock48"},
                                                       {0x086A, "unlock08"},
                                                       {0x0849, "eject"}};
    EXPECT_EQ(1u, code);
    EXPECT_EQ(28u, size);
    EXPECT_EQ(28u, room);
    EXPECT_EQ(registers, output);
    EXPECT_EQ(0x440Du, registers->eax);
    EXPECT_EQ(0u, registers->edi | registers->esi | registers->flags);
    dosDrive = registers->ebx;
    std::string word;
    if (registers->ecx == 0x0848) {
        auto* const locks = reinterpret_cast<BYTE*>(registers->edx);
        word = "operation" + std::to_string(locks[0]);
        if (locks[0] == 2) locks[1] = static_cast<BYTE>(answers["locks"]);
    } else {
        EXPECT_EQ(0u, registers->edx) << "permissions";
        word = words.at(registers->ecx);
    }
    const int error = Asked(word);
    registers->eax = static_cast<DWORD>(error);
    registers->flags = error > 0 ? 1 : 2;
    return error != kNoDos;
}

struct Row {
    const char* about;
    Answers answers;
    std::string calls;
    bool result;
};

void Expect(const Row& row, auto* control, char letter = 'e') {
    const ImportPatch type("GetDriveTypeA", DriveType), open("CreateFileA", Open),
        close("CloseHandle", Close), wait("Sleep", Wait), device("DeviceIoControl", control);
    calls.clear();
    answers = row.answers;
    answers.insert({"type", DRIVE_CDROM});
    EXPECT_EQ(row.result, KB_EjectVolume(letter)) << row.about;
    EXPECT_EQ(row.calls, calls) << row.about;
}

TEST(Eject, TakesOneStepAfterTheOtherOnNt) {
    std::string patience = "type open";
    for (int attempt = 1; attempt < 20; ++attempt) patience += " lock wait500";
    const Row rows[] = {
        {"in order", {}, "type open lock dismount allow eject close", true},
        {"not opened", {{"open", 1}}, "type open", false},
        {"locked at last", {{"lock", 19}}, patience + " lock dismount allow eject close", true},
        {"never locked", {{"lock", 20}}, patience + " lock close", true},
        {"not dismounted", {{"dismount", 1}}, "type open lock dismount close", true},
        {"not allowed", {{"allow", 1}}, "type open lock dismount allow close", true},
        {"not ejected", {{"eject", 1}}, "type open lock dismount allow eject close", true},
        {"not closed", {{"close", 1}}, "type open lock dismount allow eject close", false},
        {"unknown drive", {{"type", DRIVE_UNKNOWN}}, "type", false},
        {"no drive", {{"type", DRIVE_NO_ROOT_DIR}}, "type", false},
        {"fixed drive", {{"type", DRIVE_FIXED}}, "type", false},
        {"network drive", {{"type", DRIVE_REMOTE}}, "type", false},
        {"memory", {{"type", DRIVE_RAMDISK}}, "type", false},
    };
    for (const Row& row : rows) Expect(row, ControlVolume);
}

TEST(Eject, OpensADriveAsItsKindWants) {
    TraceCapture trace;
    Expect({"CD", {{"open", 1}}, "type open", false}, ControlVolume, 'a');
    trace.Expect({"Error 5: CreateFile\n"});
    EXPECT_EQ("a:\\", root);
    EXPECT_EQ(R"(\\.\a: 80000000 3 3 0)", opened);
    Expect({"disk", {{"type", DRIVE_REMOVABLE}, {"open", 1}}, "type open", false}, ControlVolume,
           'Z');
    EXPECT_EQ("Z:\\", root);
    EXPECT_EQ(R"(\\.\Z: c0000000 3 3 0)", opened);
}

TEST(Eject, AsksForLettersOnly) {
    for (const char letter : {'A', 'Z', 'a', 'z'})
        Expect({"a letter", {{"open", 1}}, "type open", false}, ControlVolume, letter);
    for (const char letter : {'@', '[', '`', '{', '1', '\0', '\xc4'})
        Expect({"no letter", {}, "", false}, ControlVolume, letter);
}

TEST(Eject, AsksDosOn9x) {
    if (RanInAProcessOfItsOwn()) return;
    const Windows98 windows98;
    const std::string locked = "open lock48 operation2", end = " unlock48 close";
    const Row rows[] = {
        {"no locks", {}, locked + " eject" + end, true},
        {"two locks", {{"locks", 2}}, locked + " operation1 operation1 eject" + end, true},
        {"not opened", {{"open", 1}}, "open", false},
        {"other category",
         {{"lock48", 1}, {"unlock48", 1}},
         "open lock48 lock08 operation2 eject unlock48 unlock08 close",
         true},
        {"not locked", {{"lock48", 1}, {"lock08", 1}}, "open lock48 lock08 close", false},
        {"medium is not locked", {{"operation2", 0xB0}}, locked + " eject" + end, true},
        {"locks are not known", {{"operation2", 1}}, locked + " eject" + end, true},
        {"no lock status", {{"operation2", 5}}, locked + end, false},
        {"no lock status from DOS", {{"operation2", kNoDos}}, locked + end, false},
        {"a lock stays", {{"locks", 2}, {"operation1", 5}}, locked + " operation1" + end, false},
        {"not ejected", {{"eject", 5}}, locked + " eject" + end, false},
        {"not ejected by DOS", {{"eject", kNoDos}}, locked + " eject" + end, false},
    };
    for (const Row& row : rows) Expect(row, ControlDos);
    EXPECT_EQ(R"(\\.\vwin32 0 0 0 4000000)", opened);
    for (const char letter : {'@', '['}) Expect({"no letter", {}, "", false}, ControlDos, letter);
    for (const auto& [letter, number] :
         std::map<char, DWORD>{{'A', 1}, {'Z', 26}, {'a', 1}, {'z', 26}}) {
        Expect({"a letter", {}, locked + " eject" + end, true}, ControlDos, letter);
        EXPECT_EQ(number, dosDrive) << letter;
    }
}

}  // namespace
