#include <gtest/gtest.h>
#include <tests/support/import_patch.h>

#include <utility>

namespace kitbag::test {

namespace {

struct Import {
    const char* name;
    DWORD_PTR* slot;
};

std::vector<Import> ImportsOf(HMODULE module) {
    auto* base = reinterpret_cast<BYTE*>(module);
    auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    auto* nt = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];

    std::vector<Import> imports;
    auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; library->Name; ++library) {
        auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* address = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
            auto* entry = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            imports.push_back({reinterpret_cast<const char*>(entry->Name),
                               reinterpret_cast<DWORD_PTR*>(&address->u1.Function)});
        }
    }
    return imports;
}

DWORD_PTR Write(DWORD_PTR* slot, DWORD_PTR value) {
    DWORD protection = 0;
    ::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    const DWORD_PTR previous = std::exchange(*slot, value);
    ::VirtualProtect(slot, sizeof *slot, protection, &protection);
    return previous;
}

}  // namespace

ImportPatch::ImportPatch(const char* name, DWORD_PTR fake, HMODULE module)
    : slot_(nullptr), original_(0) {
    for (const Import& import : ImportsOf(module))
        if (std::string(name) == import.name) slot_ = import.slot;
    EXPECT_NE(nullptr, slot_) << name << " is not imported";
    if (slot_) original_ = Write(slot_, fake);
}

ImportPatch::~ImportPatch() {
    if (slot_) Write(slot_, original_);
}

std::vector<std::string> ImportedNames(const char* module) {
    std::vector<std::string> names;
    for (const Import& import : ImportsOf(::GetModuleHandleA(module))) names.push_back(import.name);
    return names;
}

}  // namespace kitbag::test
