// The key of a settings section: where it lies and how it is opened.
#pragma once

#include <kitbag/frame/owned.h>
#include <kitbag/frame/registry_calls.h>
#include <kitbag/frame/text_form.h>
#include <kitbag/registry/settings_root.h>
#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <memory>

namespace kitbag {

/// The path of a section's key below HKEY_LOCAL_MACHINE: the root, one backslash and the section as
/// it stands; a null or empty section is the root itself. Takes heap memory only for sections
/// longer than kSectionInPlace characters.
template <class Ch>
class SettingsPath {
 public:
    static constexpr std::size_t kSectionInPlace = 260;

    // The characters behind the terminator are never read.
    // cppcheck-suppress uninitMemberVar
    explicit SettingsPath(const Ch* section) {
        const std::size_t length = Length(section);
        Ch* end = std::ranges::copy(kSettingsRoot<Ch>, Reserve(length)).out;
        if (length > 0) {
            *end++ = Ch{'\\'};
            end = std::copy_n(section, length, end);
        }
        *end = Ch{};
    }
    SettingsPath(const SettingsPath&) = delete;
    SettingsPath& operator=(const SettingsPath&) = delete;

    const Ch* Get() const { return longer_ ? longer_.get() : inPlace_; }

 private:
    Ch* Reserve(std::size_t sectionLength) {
        if (sectionLength <= kSectionInPlace) return inPlace_;
        longer_ =
            std::make_unique_for_overwrite<Ch[]>(kSettingsRoot<Ch>.size() + 1 + sectionLength + 1);
        return longer_.get();
    }

    Ch inPlace_[kSettingsRoot<Ch>.size() + 1 + kSectionInPlace + 1];
    std::unique_ptr<Ch[]> longer_;
};

/// The section's key, opened for reading; none where it does not exist.
template <class Ch>
RegistryKey OpenSection(const Ch* section) {
    return OpenedKey(HKEY_LOCAL_MACHINE, SettingsPath<Ch>(section).Get(), KEY_READ);
}

/// The section's key, opened for writing; every key missing along its path is created. Full
/// access, where storing a value takes less: whoever may store settings here may also delete them,
/// and everybody else is refused before anything is changed.
template <class Ch>
RegistryKey CreateSection(const Ch* section) {
    return CreatedKey(HKEY_LOCAL_MACHINE, SettingsPath<Ch>(section).Get(), KEY_ALL_ACCESS);
}

}  // namespace kitbag
