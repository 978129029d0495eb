// Questions about the machine that the process runs on.
//
// Any thread may call these functions. Answers that cannot change while the process runs are kept
// for its life; of racing first calls each stores the same answer.
#pragma once

#include <kitbag/frame/export.h>
#include <windows.h>

/// True where the system belongs to the Windows NT family, false on Windows 95, 98 and ME.
///
/// The system is asked once. Where it does not answer, the result is false and the next call asks
/// again.
KITBAG_PLAIN bool KB_IsNT();

/// True where a user can see the windows of this process: always on Windows 9x; on Windows NT where
/// the flags of the process's window station are WSF_VISIBLE and nothing else. Asked once; a window
/// station that is missing or cannot be read counts as invisible.
KITBAG_PLAIN bool KB_IsInteractiveSession();

/// The processor's speed in MHz: KB_GetCPUSpeedNT on Windows NT, else KB_GetCPUSpeedCalculated.
/// Like both of these it may keep the calling thread busy for one to two seconds.
KITBAG_PLAIN int KB_GetCPUSpeed();

/// The processor's speed in MHz, measured with KB_GetCPUSpeedCalculated where the registry knows
/// the processor's speed ("~MHz") or does not know the processor at all; 0 where it knows the
/// processor but not its speed.
KITBAG_PLAIN int KB_GetCPUSpeedNT();

/// The processor's speed in MHz, measured against the system's tick count; the calling thread is
/// busy for one to two seconds. Only the low half of the processor's time stamp is read, so that
/// speeds from 4,295 MHz on come out modulo that.
KITBAG_PLAIN DWORD KB_GetCPUSpeedCalculated();

/// The processor's brand string without the spaces around it; empty where it holds nothing
/// printable. That the processor has a brand string is not checked. The caller frees the text with
/// the runtime library's free; null where there is no memory for it.
KITBAG_PLAIN char* KB_GetVendorString();

/// Two lines about the processor, "CPUID '<brand string>'" and "CPU <speed>Mhz", from
/// KB_GetVendorString and KB_GetCPUSpeed. The caller frees the text with the runtime library's
/// free; null where there is no memory for it.
KITBAG_PLAIN char* KB_GetSystemDescription();
