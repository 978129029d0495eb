#include <kitbag/files/folder_dialog.h>
#include <kitbag/frame/file_calls.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/text_form.h>
#include <shlobj.h>
#include <wrl/client.h>

#include <memory>

namespace kitbag {

namespace {

using Microsoft::WRL::ComPtr;

/// An item list of the shell's, freed by the shell's allocator.
struct FreeByShell {
    IMalloc* allocator;
    void operator()(ITEMIDLIST* items) const { allocator->Free(items); }
};
using ItemList = std::unique_ptr<ITEMIDLIST, FreeByShell>;

template <class Ch>
BOOL PathOf(const ITEMIDLIST* items, Ch* path) {
    return PickForm<Ch>(::SHGetPathFromIDListA, ::SHGetPathFromIDListW)(items, path);
}

// The 16-bit form sends its 16-bit text with the 8-bit message codes, too; the pairing is part of
// the function's contract.

template <class Ch>
void Send(HWND dialog, UINT message, WPARAM flag, const Ch* text) {
    PickForm<Ch>(::SendMessageA, ::SendMessageW)(dialog, message, flag,
                                                 reinterpret_cast<LPARAM>(text));
}

template <class Ch>
void SelectFolder(HWND dialog, const Ch* initialPath) {
    Ch current[MAX_PATH] = {};
    if (!initialPath) CurrentFolder(MAX_PATH, current);
    Send(dialog, BFFM_SETSELECTIONA, TRUE, initialPath ? initialPath : current);
}

template <class Ch>
void ShowSelectedPath(HWND dialog, const ITEMIDLIST* selected) {
    Ch path[MAX_PATH];
    if (PathOf(selected, path)) Send(dialog, BFFM_SETSTATUSTEXTA, FALSE, path);
}

template <class T>
const T* Pointer(LPARAM parameter) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): messages carry pointers as integers
    return reinterpret_cast<const T*>(parameter);
}

template <class Ch>
int CALLBACK OnDialogEvent(HWND dialog, UINT event, LPARAM parameter, LPARAM initialPath) {
    if (event == BFFM_INITIALIZED) SelectFolder(dialog, Pointer<Ch>(initialPath));
    if (event == BFFM_SELCHANGED) ShowSelectedPath<Ch>(dialog, Pointer<ITEMIDLIST>(parameter));
    return 0;
}

template <class Ch>
using DialogOf = std::conditional_t<std::is_same_v<Ch, char>, BROWSEINFOA, BROWSEINFOW>;

template <class Ch>
bool BrowseForFolder(Ch* path, const Ch* title) {
    if (!path || Length(path) >= MAX_PATH) return false;
    ComPtr<IMalloc> allocator;
    if (FAILED(::SHGetMalloc(&allocator))) return false;

    DialogOf<Ch> dialog{};
    dialog.lpszTitle = title;
    dialog.ulFlags = BIF_RETURNONLYFSDIRS | BIF_STATUSTEXT;
    dialog.lpfn = OnDialogEvent<Ch>;
    dialog.lParam = reinterpret_cast<LPARAM>(path);
    const ItemList chosen(PickForm<Ch>(::SHBrowseForFolderA, ::SHBrowseForFolderW)(&dialog),
                          {allocator.Get()});
    return chosen && PathOf(chosen.get(), path);
}

}  // namespace

}  // namespace kitbag

using kitbag::Guarded;

bool KB_BrowseForFolderA(char* path, const char* title) {
    return Guarded([&] { return kitbag::BrowseForFolder(path, title); });
}
bool KB_BrowseForFolderW(wchar_t* path, const wchar_t* title) {
    return Guarded([&] { return kitbag::BrowseForFolder(path, title); });
}
