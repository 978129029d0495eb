#include <kitbag/files/eject_ways.h>
#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/owned.h>
#include <windows.h>
#include <winioctl.h>

#include <string>

namespace kitbag {

namespace {

constexpr int kLockAttempts = 20;
constexpr DWORD kLockWait = 500;

void ReportError(const char* operation) {
    DebugTrace("Error %d: %s\n", static_cast<int>(::GetLastError()), operation);
}

/// The access that ejecting wants of a drive of this kind; none where it has no medium to eject.
DWORD AccessFor(UINT driveType) {
    if (driveType == DRIVE_REMOVABLE) return GENERIC_READ | GENERIC_WRITE;
    if (driveType == DRIVE_CDROM) return GENERIC_READ;
    return 0;
}

bool Control(const FileHandle& volume, DWORD code, void* input = nullptr, DWORD bytes = 0) {
    DWORD returned = 0;
    return ::DeviceIoControl(volume.Get(), code, input, bytes, nullptr, 0, &returned, nullptr);
}

bool Lock(const FileHandle& volume) {
    for (int attempt = 1; !Control(volume, FSCTL_LOCK_VOLUME); ++attempt) {
        if (attempt == kLockAttempts) return false;
        ::Sleep(kLockWait);
    }
    return true;
}

bool AllowRemoval(const FileHandle& volume) {
    PREVENT_MEDIA_REMOVAL request{FALSE};
    static_assert(sizeof request == 1);
    return Control(volume, IOCTL_STORAGE_MEDIA_REMOVAL, &request, sizeof request);
}

}  // namespace

bool EjectOnNt(char driveLetter) {
    const std::string drive{driveLetter, ':'};
    const DWORD access = AccessFor(::GetDriveTypeA((drive + '\\').c_str()));
    if (access == 0) return false;

    FileHandle volume(::CreateFileA((R"(\\.\)" + drive).c_str(), access,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                    nullptr));
    if (!volume) {
        ReportError("CreateFile");
        return false;
    }
    if (Lock(volume) && Control(volume, FSCTL_DISMOUNT_VOLUME) && AllowRemoval(volume))
        Control(volume, IOCTL_STORAGE_EJECT_MEDIA);
    // Not whether the medium was ejected: callers do not take a medium in use for an error.
    return ::CloseHandle(volume.Release());
}

}  // namespace kitbag
