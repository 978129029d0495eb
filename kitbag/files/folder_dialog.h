// Lets the user choose a folder.
//
//     char folder[MAX_PATH] = "C:\\Films";
//     if (KB_BrowseForFolderA(folder, "Where are your films?")) Use(folder);
#pragma once

#include <kitbag/frame/export.h>

/// Shows the shell's folder dialog, with the title as its text (null: none), and waits for the
/// user's choice.
///
/// path is a buffer of MAX_PATH characters: on entry the folder that the dialog opens on, on
/// success the chosen one. It stays as it was when the user cancels. A null path and one of 260
/// characters or more give false without a dialog.
///
/// The dialog has no owner window: it blocks only the calling thread, on which the caller has
/// initialised COM. Callers whose window must not be used meanwhile disable it themselves.
KITBAG_PLAIN bool KB_BrowseForFolderA(char* path, const char* title);
KITBAG_PLAIN bool KB_BrowseForFolderW(wchar_t* path, const wchar_t* title);
