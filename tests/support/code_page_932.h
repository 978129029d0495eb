// Double-byte text in a process whose own code page is another: what a Japanese system does.
//
//     const CodePage932 japanese;
//     EXPECT_TRUE(KB_ValidateFilenameA(In932(L"\x8868").data(), false, false));  // bytes 95 5C
#pragma once

#include <tests/support/import_patch.h>

namespace kitbag::test {

/// The text's bytes in that code page. Those of U+8868 end with the byte of a backslash, those of
/// U+30DD with the byte of '|'.
inline std::string In932(const std::wstring& text) {
    std::string bytes(2 * text.size(), '\0');
    const int size =
        ::WideCharToMultiByte(932, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                              static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

/// While it lives, the library takes 8-bit text for code page 932. What it hands on to 8-bit system
/// functions (paths, above all) those still take for the process's own code page.
class CodePage932 {
    static UINT InsteadOf(UINT codePage) { return codePage == CP_ACP ? 932 : codePage; }

    ImportPatch leadByte_{"IsDBCSLeadByte",
                          +[](BYTE byte) WINAPI -> BOOL { return ::IsDBCSLeadByteEx(932, byte); }};
    ImportPatch toWide_{
        "MultiByteToWideChar",
        +[](UINT codePage, DWORD flags, const char* text, int size, wchar_t* wide, int room)
             WINAPI -> int {
            return ::MultiByteToWideChar(InsteadOf(codePage), flags, text, size, wide, room);
        }};
    ImportPatch toNarrow_{
        "WideCharToMultiByte",
        +[](UINT codePage, DWORD flags, const wchar_t* text, int size, char* bytes, int room,
            const char* unknown, BOOL* isAnyUnknown) WINAPI -> int {
            return ::WideCharToMultiByte(InsteadOf(codePage), flags, text, size, bytes, room,
                                         unknown, isAnyUnknown);
        }};
    ImportPatch toUpper_{
        "CharUpperBuffA", +[](char* text, DWORD size) WINAPI -> DWORD {
            std::wstring wide(size, L'\0');
            wide.resize(static_cast<std::size_t>(::MultiByteToWideChar(
                932, 0, text, static_cast<int>(size), wide.data(), static_cast<int>(size))));
            ::CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
            In932(wide).copy(text, size);
            return size;
        }};
};

}  // namespace kitbag::test
