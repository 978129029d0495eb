// The version resources of modules.
//
//     DWORD major, minor, build;
//     if (KB_GetMemModuleVersion(nullptr, &major, &minor, &build))
//         ShowVersion(major, minor, build);
//
// Nothing is kept between calls: any thread may call the plain functions at any time.
#pragma once

#include <kitbag/frame/export.h>
#include <windows.h>
// Not part of a lean <windows.h>.
#include <winver.h>
#include <wtypes.h>

#include <memory>

/// The version resource of one module file, read once.
///
/// The inherited fields are the resource's fixed information; all are zero until Read succeeds in
/// reading them.
class KITBAG_API CModuleVersion : public VS_FIXEDFILEINFO {
 public:
    /// Keeps the file name as given, without copying it.
    explicit CModuleVersion(const char* file);
    CModuleVersion(const CModuleVersion&) = delete;
    CModuleVersion& operator=(const CModuleVersion&) = delete;
    virtual ~CModuleVersion();

    /// Reads the file's version resource; false where it has none. The strings' language and code
    /// page are those of the first entry of the resource's translation table, or 0 and 1252 where
    /// there is none.
    ///
    /// Meant to be called once: a second call clears the fixed information, and what the first one
    /// has read is lost and stays allocated, since callers may hold texts in it. Where the file has
    /// no version resource any more, the strings of the first call can still be asked for.
    bool Read();

    /// The string with this name ("CompanyName") in the resource's language; null where there is
    /// none or nothing was read. The object keeps the text.
    const char* GetStringValue(const char* name) const;

 private:
    struct Translation {
        WORD language;
        WORD codePage;
    };

    std::unique_ptr<BYTE[]> block_;
    Translation translation_;
    const char* file_;
};

/// The product version of a module file: the high and the low half of its upper word, and its whole
/// lower word as the build. The build's pointer may be null, the others may not. False, with the
/// outputs untouched, where the file has no version resource.
KITBAG_PLAIN bool KB_GetModuleVersionA(const char* file, DWORD* major, DWORD* minor, DWORD* build);
/// The same; the file's name passes through the ANSI code page.
KITBAG_PLAIN bool KB_GetModuleVersionW(const wchar_t* file, DWORD* major, DWORD* minor,
                                       DWORD* build);

/// The same for a loaded module; null is the process's executable. The values 1 to 31 are error
/// codes of old loading functions and no modules: they are refused.
KITBAG_PLAIN bool KB_GetMemModuleVersion(HMODULE module, DWORD* major, DWORD* minor, DWORD* build);

/// What identifies a module on one computer.
struct ModuleInfo {
    /// Set to sizeof(ModuleInfo) by the caller.
    DWORD size;
    BSTR moduleName;
    BSTR computerName;
    BSTR filePath;
    /// Both zero where the module has no version resource.
    DWORD productVersionMS;
    DWORD productVersionLS;
    BYTE firstBlock[16];
    BYTE secondBlock[16];
};
static_assert(sizeof(ModuleInfo) == 56);

/// Fills the record; the caller frees the three BSTRs. The two blocks are of the caller's making
/// and copied unread. A name that the system does not tell is empty.
///
/// False, with the record untouched, where its size is not set, a block cannot be read or memory is
/// lacking.
KITBAG_PLAIN bool KB_FillModuleInfo(ModuleInfo* record, HMODULE module, const char* moduleName,
                                    const void* firstBlock, const void* secondBlock);
