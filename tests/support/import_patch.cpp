#include <gtest/gtest.h>
#include <tests/support/import_patch.h>

#include <map>
#include <utility>

namespace kitbag::test {

namespace {

template <class Record>
Record* At(HMODULE module, auto offset) {
    return reinterpret_cast<Record*>(reinterpret_cast<BYTE*>(module) + offset);
}

/// Where the addresses of the imported functions stand.
std::map<std::string, DWORD_PTR*> ImportsOf(HMODULE module) {
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

DWORD_PTR Write(DWORD_PTR* slot, DWORD_PTR value) {
    DWORD protection = 0;
    ::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    return std::exchange(*slot, value);
}

}  // namespace

ImportPatch::ImportPatch(const char* name, DWORD_PTR fake, HMODULE module)
    : slot_(ImportsOf(module)[name]) {
    EXPECT_NE(nullptr, slot_) << name << " is not imported";
    if (slot_) original_ = Write(slot_, fake);
}

ImportPatch::~ImportPatch() {
    if (slot_) Write(slot_, original_);
}

std::vector<std::string> ImportedNames() {
    std::vector<std::string> names;
    for (const auto& import : ImportsOf(::GetModuleHandleA("Kitbag.dll")))
        names.push_back(import.first);
    return names;
}

}  // namespace kitbag::test
