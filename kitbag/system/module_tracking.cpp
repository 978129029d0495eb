#include <kitbag/frame/caller_memory.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/owned.h>
#include <kitbag/frame/registry_calls.h>
#include <kitbag/frame/text_form.h>
#include <kitbag/system/link_time.h>
#include <kitbag/system/module_tracking.h>

#include <optional>

namespace kitbag {

namespace {

// Beside the settings root, below HKEY_LOCAL_MACHINE.
constexpr char kVersionKey[] = "Software\\Tarnwick\\Vidmoor\\Version";
constexpr char kRunOnceKey[] = "Software\\Tarnwick\\Vidmoor\\RunOnce";

/// Full access even where a value is only read: what may not be changed counts as missing, for an
/// application that cannot write there cannot keep track either.
RegistryKey OpenFully(const char* path) {
    return OpenedKey(HKEY_LOCAL_MACHINE, path, KEY_ALL_ACCESS);
}

/// Four bytes are taken for a link time whatever their type.
std::optional<DWORD> StoredTime(const char* valueName) {
    const RegistryKey key = OpenFully(kVersionKey);
    DWORD time = 0;
    DWORD bytes = sizeof time;
    if (!key || QueryValue(key.Get(), valueName, nullptr, &time, &bytes) != ERROR_SUCCESS)
        return std::nullopt;
    return time;
}

std::optional<DWORD> StoreLinkTime(const char* file, const char* valueName) {
    const RegistryKey key = CreatedKey(HKEY_LOCAL_MACHINE, kVersionKey, KEY_ALL_ACCESS);
    const auto time = LinkTime(file);
    if (key && time) SetValue(key.Get(), valueName, REG_DWORD, &*time, sizeof *time);
    return time;
}

bool GetStoredLinkTime(const char* file, const char* valueName, DWORD* storedTime,
                       DWORD* currentTime, bool update) {
    if (!IsWritable(storedTime) || (update && !IsWritable(currentTime))) return false;
    const auto stored = StoredTime(valueName);
    *storedTime = stored.value_or(0);
    if (update) *currentTime = StoreLinkTime(file, valueName).value_or(0);
    return stored.has_value();
}

bool IsNewModule(const char* file, const char* valueName) {
    DWORD stored = 0;
    DWORD current = 0;
    return !GetStoredLinkTime(file, valueName, &stored, &current, true) || current > stored;
}

bool IsNewerModule(const char* file, const char* valueName, DWORD time) {
    DWORD stored = 0;
    DWORD current = 0;
    return !GetStoredLinkTime(file, valueName, &stored, &current, true) || stored < time;
}

bool ForgetModule(const char* valueName) {
    const RegistryKey key = OpenFully(kVersionKey);
    return key && DeleteValue(key.Get(), valueName) == ERROR_SUCCESS;
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_GetStoredLinkTime(const char* file, const char* valueName, DWORD* storedTime,
                          DWORD* currentTime, bool update) {
    return Guarded([&] {
        return kitbag::GetStoredLinkTime(file, valueName, storedTime, currentTime, update);
    });
}
bool KB_IsNewModule(const char* file, const char* valueName) {
    return Guarded([&] { return kitbag::IsNewModule(file, valueName); });
}
bool KB_IsNewerModule(const char* file, const char* valueName, DWORD time) {
    return Guarded([&] { return kitbag::IsNewerModule(file, valueName, time); });
}
bool KB_ForceNewModule(const char*, const char* valueName) {
    return Guarded([&] { return kitbag::ForgetModule(valueName); });
}
bool KB_IsFirstRun() {
    return Guarded([] { return static_cast<bool>(kitbag::OpenFully(kitbag::kRunOnceKey)); });
}
