// Creating, filling and deleting folders.
//
//     KB_CopyFileDeepA("C:\\New.mpg", "D:\\Films\\2004\\New.mpg", true);  // creates D:\Films\2004
//
// No function reports more than its result; the thread's last error is what the system's calls
// leave there. Any thread may call them.
#pragma once

#include <kitbag/frame/export.h>
#include <windows.h>

/// Creates every folder along the path, with default security. What follows the last separator,
/// slash or backslash, is taken for a file name and is not created: "C:\a\b\" and "C:\a\b\c.txt"
/// both create C:\a and C:\a\b.
///
/// True where all of these folders exist afterwards. A null path and one of 260 characters or more
/// give false before anything is created; so does one that begins with a separator, as network
/// paths do.
KITBAG_PLAIN bool KB_CreatePathA(const char* path);
KITBAG_PLAIN bool KB_CreatePathW(const wchar_t* path);

/// Copies a file after having created the folders of its destination; failIfExists keeps an
/// existing destination. The created folders stay when the copy fails.
KITBAG_PLAIN bool KB_CopyFileDeepA(const char* source, const char* destination, bool failIfExists);
KITBAG_PLAIN bool KB_CopyFileDeepW(const wchar_t* source, const wchar_t* destination,
                                   bool failIfExists);

/// Deletes a folder with everything in it, as far as the system lets it: a file that cannot be
/// deleted (a read-only one, say) stays together with its folders. Nonzero where the folder itself
/// is gone; 0 also where it does not exist.
///
/// Junctions and symbolic links in it are deleted themselves; what they lead to stays. A link that
/// is named as the directory is followed: the folder that it leads to is emptied, and the link
/// goes.
///
/// Beware: a null or empty directory means the root of the current drive, and a drive alone ("C:")
/// that drive's root, not its current folder. Either is emptied.
KITBAG_PLAIN BOOL KB_DeleteDirectoryA(const char* directory);
KITBAG_PLAIN BOOL KB_DeleteDirectoryW(const wchar_t* directory);
