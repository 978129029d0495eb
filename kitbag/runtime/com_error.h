// A readable error text for the COM caller of the current thread.
//
//     if (!FileExists(path)) {
//         KB_SetIErrorInfoA("The skin has no page script");
//         return E_FAIL;  // a script host shows the text
//     }
#pragma once

#include <kitbag/frame/export.h>

/// Makes a new error object with this description the thread's current one, for the COM caller to
/// fetch with GetErrorInfo; its other fields stay empty. A null text is an empty description. The A
/// form passes the text through the ANSI code page. True when the error object was set; after a
/// false the thread's former one is still there.
///
/// Per thread, without shared state. The thread should have initialised COM as a single-threaded
/// apartment: the call then leaves the count of initialisations as it was. It works on any other
/// thread too, and COM stays initialised there for good.
KITBAG_PLAIN bool KB_SetIErrorInfoA(const char* description);
KITBAG_PLAIN bool KB_SetIErrorInfoW(const wchar_t* description);
