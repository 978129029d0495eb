// Deleting a registry key with everything below it.
#pragma once

#include <kitbag/frame/owned.h>
#include <kitbag/frame/registry_calls.h>
#include <kitbag/frame/text_form.h>
#include <windows.h>

#include <iterator>

namespace kitbag {

/// Deletes a key and all keys below it; what was deleted before an error stays deleted.
template <class Ch>
LSTATUS DeleteTree(HKEY parent, const Ch* name) {
    // Without this the parent itself would be deleted.
    if (Length(name) == 0) return ERROR_BADKEY;

    RegistryKey key;
    LSTATUS status = OpenKey(parent, name, DELETE | KEY_ENUMERATE_SUB_KEYS, key);
    while (status == ERROR_SUCCESS) {
        Ch child[256];
        DWORD length = std::size(child);
        // Always the first one: the previous child is gone.
        status = EnumerateKeyEx(key.Get(), 0, child, &length);
        if (status == ERROR_NO_MORE_ITEMS) return DeleteKey(parent, name);
        if (status == ERROR_SUCCESS) status = DeleteTree<Ch>(key.Get(), child);
    }
    return status;
}

}  // namespace kitbag
