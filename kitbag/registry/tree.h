// What a section of the settings holds, and its deletion.
//
//     TWinString<char> key;
//     for (DWORD i = 0; KB_EnumKeyTStringA("Channels", i, key); ++i) Load(key);  // "Channels\0001"
//
// Sections are built as for single values (stored_values.h). The counting and enumerating functions
// open the section for reading; where it does not exist they count 0 or answer false. An index past
// the end answers false too. Keys are enumerated in the registry's order, values in its own.
//
// No lock is taken: while other threads change a section, an enumeration shows what it meets. No
// function says why it failed.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <windows.h>

#include <string>

/// Deletes one value. Like every deletion it creates the section first where that is missing:
/// callers rely on finding the section after having cleaned it.
KITBAG_PLAIN bool KB_DeleteValueA(const char* section, const char* name);
KITBAG_PLAIN bool KB_DeleteValueW(const wchar_t* section, const wchar_t* name);

/// Deletes a key of the section, with everything below it. A null or empty name deletes nothing and
/// answers false.
KITBAG_PLAIN bool KB_DeleteKeyA(const char* section, const char* subKey);
KITBAG_PLAIN bool KB_DeleteKeyW(const wchar_t* section, const wchar_t* subKey);

/// Deletes the section's key, with everything below it. Backslashes at the section's beginning do
/// not count, so that "\Audio", as KB_EnumKeyA names a key of the root, is deleted like "Audio". A
/// section that is null, empty or nothing but backslashes deletes nothing and answers false: the
/// settings as a whole cannot be deleted by accident.
KITBAG_PLAIN bool KB_DeleteSectionA(const char* section);
KITBAG_PLAIN bool KB_DeleteSectionW(const wchar_t* section);

/// The number of keys directly in the section.
KITBAG_PLAIN int KB_GetKeyCountA(const char* section);
KITBAG_PLAIN int KB_GetKeyCountW(const wchar_t* section);

/// The key at an index. On entry length is the buffer's size in characters, terminator included; on
/// success it is the number of characters written, terminator not counted.
///
/// The A form gives the key's path relative to the settings root: the section (null counts as
/// empty), a backslash, the name. The W form gives the name alone. On failure length is as it was;
/// the content of a buffer that was too small is what the registry leaves in it.
KITBAG_PLAIN bool KB_EnumKeyA(const char* section, DWORD index, char* name, DWORD* length);
KITBAG_PLAIN bool KB_EnumKeyW(const wchar_t* section, DWORD index, wchar_t* name, DWORD* length);

/// The same into a string object, which is left as it was on failure. Names of at most 254
/// characters are found.
KITBAG_PLAIN bool KB_EnumKeyTStringA(const char* section, DWORD index, TWinString<char>& name);
KITBAG_PLAIN bool KB_EnumKeyTStringW(const wchar_t* section, DWORD index, std::wstring& name);

/// The number of values in the section's key.
KITBAG_PLAIN int KB_GetValueCountA(const char* section);
KITBAG_PLAIN int KB_GetValueCountW(const wchar_t* section);

/// The name of the value at an index; the buffer's rules are those of KB_EnumKeyW.
KITBAG_PLAIN bool KB_EnumValueA(const char* section, DWORD index, char* name, DWORD* length);
KITBAG_PLAIN bool KB_EnumValueW(const wchar_t* section, DWORD index, wchar_t* name, DWORD* length);
KITBAG_PLAIN bool KB_EnumValueTStringA(const char* section, DWORD index, TWinString<char>& name);
KITBAG_PLAIN bool KB_EnumValueTStringW(const wchar_t* section, DWORD index, std::wstring& name);
