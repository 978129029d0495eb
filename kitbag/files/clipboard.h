// Plain text on the system's clipboard, as CF_TEXT in the ANSI code page.
#pragma once

#include <kitbag/frame/export.h>
#include <windows.h>
#include <wtypes.h>

/// Puts a text on the clipboard in place of all that is there; characters that the code page lacks
/// become its replacement character. False for a null text (the clipboard is left alone), where
/// another program holds the clipboard open, or where the text could not be placed (the clipboard
/// is empty then).
KITBAG_PLAIN bool KB_CopyText(const wchar_t* text);

/// Gets the clipboard's text. The BSTR is overwritten without being freed, and the caller owns the
/// old one and the new one; it is untouched where the answer is false, as without text there.
KITBAG_PLAIN bool KB_PasteText(BSTR* text);
