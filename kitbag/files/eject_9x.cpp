#include <kitbag/files/eject_ways.h>
#include <kitbag/frame/owned.h>
#include <windows.h>

namespace kitbag {

namespace {

/// The registers of a DOS call, as the vwin32 device takes and returns them.
struct Registers {
    DWORD ebx = 0;
    DWORD edx = 0;
    DWORD ecx = 0;
    DWORD eax = 0;
    DWORD edi = 0;
    DWORD esi = 0;
    DWORD flags = 0;
};
static_assert(sizeof(Registers) == 28);

/// What the lock requests for a medium carry.
struct MediumLock {
    BYTE operation;
    BYTE locks;
};
static_assert(sizeof(MediumLock) == 2);

constexpr DWORD kDosDeviceControl = 1;
constexpr DWORD kGenericBlockDeviceRequest = 0x440D;
constexpr DWORD kCarry = 1;

// Requests: the category in bits 8 to 15, the minor code below it.
constexpr DWORD kLockVolume = 0x4A;
constexpr DWORD kUnlockVolume = 0x6A;
constexpr DWORD kVolumeCategories[] = {0x4800, 0x0800};
constexpr DWORD kLockMedium = 0x0848;
constexpr DWORD kEjectMedium = 0x0849;

constexpr BYTE kReleaseLock = 1;
constexpr BYTE kAskForLocks = 2;

constexpr DWORD kErrorNotSupported = 0x01;
constexpr DWORD kErrorNotLocked = 0xB0;

/// A drive, as DOS sees it through the vwin32 device.
class DosDrive {
 public:
    explicit DosDrive(char letter)
        : device_(
              ::CreateFileA(R"(\\.\vwin32)", 0, 0, nullptr, 0, FILE_FLAG_DELETE_ON_CLOSE, nullptr)),
          number_(static_cast<DWORD>((letter & ~0x20) - 64)) {}

    explicit operator bool() const { return static_cast<bool>(device_); }

    bool LockVolume() const { return CallForVolume(kLockVolume); }
    bool UnlockVolume() const { return CallForVolume(kUnlockVolume); }
    bool EjectMedium() const { return Succeeds({.ebx = number_, .ecx = kEjectMedium}); }

    bool ReleaseMedium() const {
        MediumLock lock{kAskForLocks, 0};
        Registers registers = ForLock(lock);
        if (!Call(registers) || !IsLockStatus(registers)) return false;
        lock.operation = kReleaseLock;
        for (int locks = lock.locks; locks > 0; --locks)
            if (!Succeeds(ForLock(lock))) return false;
        return true;
    }

 private:
    Registers ForLock(MediumLock& lock) const {
        return {.ebx = number_, .edx = reinterpret_cast<DWORD>(&lock), .ecx = kLockMedium};
    }

    /// A medium that nobody locked, or a drive that knows no locks, counts as having none.
    static bool IsLockStatus(const Registers& registers) {
        const DWORD error = registers.eax;
        return !(registers.flags & kCarry) || error == kErrorNotLocked ||
               error == kErrorNotSupported;
    }

    /// Lock level and permissions are 0. Drives know one of the two categories.
    bool CallForVolume(DWORD minorCode) const {
        for (const DWORD category : kVolumeCategories)
            if (Succeeds({.ebx = number_, .ecx = category | minorCode})) return true;
        return false;
    }

    bool Succeeds(Registers registers) const {
        return Call(registers) && !(registers.flags & kCarry);
    }

    bool Call(Registers& registers) const {
        registers.eax = kGenericBlockDeviceRequest;
        DWORD returned = 0;
        return ::DeviceIoControl(device_.Get(), kDosDeviceControl, &registers, sizeof registers,
                                 &registers, sizeof registers, &returned, nullptr);
    }

    FileHandle device_;
    DWORD number_;
};

}  // namespace

bool EjectOn9x(char driveLetter) {
    const DosDrive drive(driveLetter);
    if (!drive || !drive.LockVolume()) return false;
    const bool ejected = drive.ReleaseMedium() && drive.EjectMedium();
    drive.UnlockVolume();
    return ejected;
}

}  // namespace kitbag
