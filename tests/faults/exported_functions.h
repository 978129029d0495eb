// The functions that the built library exports, as its file lists them.
#pragma once

#include <tests/support/import_patch.h>

#include <algorithm>
#include <map>
#include <span>
#include <string>
#include <string_view>

namespace kitbag::test {

/// Their names by their addresses, without those of classes.
inline const std::map<const void*, std::string>& ExportedFunctions() {
    static const auto names = [] {
        HMODULE library = ::GetModuleHandleA("Kitbag.dll");
        const auto& headers =
            *At<IMAGE_NT_HEADERS>(library, At<IMAGE_DOS_HEADER>(library, 0)->e_lfanew);
        const auto& table = *At<IMAGE_EXPORT_DIRECTORY>(
            library,
            headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress);
        std::map<const void*, std::string> found;
        for (DWORD i = 0; i < table.NumberOfNames; ++i) {
            const std::string_view name =
                At<char>(library, At<DWORD>(library, table.AddressOfNames)[i]);
            // The compiler exports the COM server's functions under their decorated names, too.
            const bool isPlain = name.starts_with("KB_") || name.starts_with("Dll");
            if (isPlain && name.find('@') == name.npos)
                found[reinterpret_cast<const void*>(::GetProcAddress(library, name.data()))] = name;
        }
        return found;
    }();
    return names;
}

/// The name of an exported function. What a program holds may be the linker's jump to it.
std::string NameOf(auto* function) {
    const auto* code = reinterpret_cast<const BYTE*>(function);
    constexpr BYTE kJumpThroughImport[] = {0xff, 0x25};
    if (std::ranges::equal(kJumpThroughImport, std::span(code, 2)))
        code = **reinterpret_cast<const BYTE* const* const*>(code + 2);
    return ExportedFunctions().at(code);
}

}  // namespace kitbag::test
