// Typed access to single values of the application's settings.
//
//     DWORD volume = 70;
//     KB_GetDWORDA("Audio", "Volume", &volume);  // still 70 where nothing is stored
//     KB_SetDWORDA("Audio", "Volume", 55);
//
// The settings lie below "Software\Tarnwick\Vidmoor\Configuration" in HKEY_LOCAL_MACHINE. A section
// is a key path relative to that root, which may hold several levels separated by backslashes; it
// is used as it stands, and a null or empty one is the root itself. A null or empty name is the
// key's default value, as everywhere in the registry.
//
// Every function opens the section's key, does its work and closes the key again; nothing is cached
// or locked, so any thread may call any of them at any time. All return true on success and do not
// say why they failed: a missing section or value, a value of another type or size, an output that
// cannot be written, an error of the registry or a lack of memory all give false. Getters never
// create anything and leave their output untouched when they fail. Setters create every missing key
// along the section's path.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <windows.h>
#include <wtypes.h>

#include <string>

/// A REG_DWORD value as a truth value: anything but 0 is true. Stored as 1 or 0.
KITBAG_PLAIN bool KB_GetBoolA(const char* section, const char* name, bool* value);
KITBAG_PLAIN bool KB_GetBoolW(const wchar_t* section, const wchar_t* name, bool* value);
KITBAG_PLAIN bool KB_SetBoolA(const char* section, const char* name, bool value);
KITBAG_PLAIN bool KB_SetBoolW(const wchar_t* section, const wchar_t* name, bool value);

/// A REG_DWORD value. Nothing else is read as a number: neither four bytes of REG_BINARY nor digits
/// in a string.
KITBAG_PLAIN bool KB_GetDWORDA(const char* section, const char* name, DWORD* value);
KITBAG_PLAIN bool KB_GetDWORDW(const wchar_t* section, const wchar_t* name, DWORD* value);
KITBAG_PLAIN bool KB_SetDWORDA(const char* section, const char* name, DWORD value);
KITBAG_PLAIN bool KB_SetDWORDW(const wchar_t* section, const wchar_t* name, DWORD value);

/// The same value as a signed number.
KITBAG_PLAIN bool KB_GetIntA(const char* section, const char* name, int* value);
KITBAG_PLAIN bool KB_GetIntW(const wchar_t* section, const wchar_t* name, int* value);
KITBAG_PLAIN bool KB_SetIntA(const char* section, const char* name, int value);
KITBAG_PLAIN bool KB_SetIntW(const wchar_t* section, const wchar_t* name, int value);

/// Reads a REG_SZ value into a buffer; size is in characters (A: bytes, W: 16-bit characters).
///
/// The stored bytes must be fewer than the buffer's, and no terminator is added: the buffer holds
/// exactly what is stored, which for texts written by the setters includes the terminator. An empty
/// text is stored as no bytes: reading it succeeds and writes nothing into the buffer. Callers that
/// read empty texts, or what other programs wrote, clear the buffer first.
KITBAG_PLAIN bool KB_GetStringA(const char* section, const char* name, char* buffer, DWORD size);
KITBAG_PLAIN bool KB_GetStringW(const wchar_t* section, const wchar_t* name, wchar_t* buffer,
                                DWORD size);

/// Writes a REG_SZ value; a null text is stored as an empty one.
///
/// The registry is handed the characters without their terminator. In both text forms it sees the
/// zero that follows them and stores it too, so that a non-empty text reads back whole with every
/// getter; an empty text is stored as no bytes at all.
KITBAG_PLAIN bool KB_SetStringA(const char* section, const char* name, const char* text);
KITBAG_PLAIN bool KB_SetStringW(const wchar_t* section, const wchar_t* name, const wchar_t* text);

/// A REG_SZ value as a string object. Reading replaces the object's content by the stored
/// characters but the last, which is taken to be the terminator whatever it is; no stored bytes
/// empty the object. Writing stores the characters before the object's first zero.
KITBAG_PLAIN bool KB_GetTStringA(const char* section, const char* name, TWinString<char>& text);
KITBAG_PLAIN bool KB_GetTStringW(const wchar_t* section, const wchar_t* name, std::wstring& text);
KITBAG_PLAIN bool KB_SetTStringA(const char* section, const char* name,
                                 const TWinString<char>& text);
KITBAG_PLAIN bool KB_SetTStringW(const wchar_t* section, const wchar_t* name,
                                 const std::wstring& text);

/// A REG_SZ value as a BSTR, up to its first zero.
///
/// Reading wants a pointer to a BSTR that is not null; it is overwritten without being freed, and
/// the caller owns the old one and the new one. The A forms pass the text through the ANSI code
/// page. Writing a null BSTR stores an empty text.
KITBAG_PLAIN bool KB_GetBSTRA(const char* section, const char* name, BSTR* text);
KITBAG_PLAIN bool KB_GetBSTRW(const wchar_t* section, const wchar_t* name, BSTR* text);
KITBAG_PLAIN bool KB_SetBSTRA(const char* section, const char* name, BSTR text);
KITBAG_PLAIN bool KB_SetBSTRW(const wchar_t* section, const wchar_t* name, BSTR text);

/// The size in bytes of a value of any type. The registry writes the size itself and may do so for
/// a failed call too. The A form counts the bytes of a string in its 8-bit form.
KITBAG_PLAIN bool KB_GetDataSizeA(const char* section, const char* name, DWORD* size);
KITBAG_PLAIN bool KB_GetDataSizeW(const wchar_t* section, const wchar_t* name, DWORD* size);

/// Copies a value of any type into a buffer of bufferSize bytes. A value that does not fit fails. A
/// null buffer asks for the size alone. returnedSize, which may be null, receives the number of
/// bytes stored.
KITBAG_PLAIN bool KB_GetDataA(const char* section, const char* name, DWORD bufferSize, void* buffer,
                              DWORD* returnedSize);
KITBAG_PLAIN bool KB_GetDataW(const wchar_t* section, const wchar_t* name, DWORD bufferSize,
                              void* buffer, DWORD* returnedSize);

/// Writes a REG_BINARY value of size bytes.
KITBAG_PLAIN bool KB_SetDataA(const char* section, const char* name, DWORD size, const void* data);
KITBAG_PLAIN bool KB_SetDataW(const wchar_t* section, const wchar_t* name, DWORD size,
                              const void* data);
