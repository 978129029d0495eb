// Replaces one system function in the shipping library, to fake it or to make it fail.
//
//     ImportPatch patch("CopyFileA", +[](LPCSTR, LPCSTR, BOOL) WINAPI -> BOOL { return FALSE; });
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <map>

namespace kitbag::test {

template <class Record>
Record* At(HMODULE module, auto offset) {
    return reinterpret_cast<Record*>(reinterpret_cast<BYTE*>(module) + offset);
}

/// Where the addresses of the functions stand that the module imports.
inline std::map<std::string, DWORD_PTR*> ImportsOf(const char* file) {
    HMODULE module = ::GetModuleHandleA(file);
    const LONG headers = At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew;
    const auto& optional = At<IMAGE_NT_HEADERS>(module, headers)->OptionalHeader;
    const DWORD table = optional.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    std::map<std::string, DWORD_PTR*> imports;
    for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, table); library->Name; ++library) {
        auto* slot = At<DWORD_PTR>(module, library->FirstThunk);
        for (auto* name = At<DWORD>(module, library->OriginalFirstThunk); *name; ++name, ++slot)
            if (!IMAGE_SNAP_BY_ORDINAL(*name))
                imports[At<IMAGE_IMPORT_BY_NAME>(module, *name)->Name] = slot;
    }
    return imports;
}

/// The names of everything that the library imports.
inline std::vector<std::string> ImportedNames() {
    std::vector<std::string> names;
    for (const auto& [name, slot] : ImportsOf("Kitbag.dll")) names.push_back(name);
    return names;
}

/// While it lives, the module's calls of the named import go to another function; only that
/// module's calls do. A name that is not imported fails the test.
class ImportPatch {
 public:
    ImportPatch(const char* name, auto* fake, const char* module = "Kitbag.dll")
        : slot_(ImportsOf(module)[name]) {
        EXPECT_NE(nullptr, slot_) << name << " is not imported";
        Write(reinterpret_cast<DWORD_PTR>(fake));
    }
    ~ImportPatch() { Write(original_); }
    ImportPatch(ImportPatch&&) = delete;

 private:
    void Write(DWORD_PTR address) {
        DWORD protection = 0;
        if (::VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &protection))
            original_ = std::exchange(*slot_, address);
    }

    DWORD_PTR* const slot_;
    DWORD_PTR original_ = 0;
};

}  // namespace kitbag::test
