#include <kitbag/com/registration_writer.h>
#include <kitbag/com/server_registration.h>
#include <kitbag/com/type_library.h>
#include <kitbag/frame/class_object_map.h>
#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/export.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/module_record.h>
#include <kitbag/frame/resource_ids.h>
#include <kitbag/frame/text_conversion.h>

#include <iterator>
#include <string>
#include <utility>

namespace kitbag {

namespace {

using Roots = std::vector<RegistrationRoot>;

/// Empty where the resource cannot be had.
std::wstring ScriptText() {
    HINSTANCE module = moduleRecord.resourceInstance;
    HRSRC resource =
        ::FindResourceA(module, MAKEINTRESOURCEA(KITBAG_REGISTRATION_SCRIPT), "REGISTRY");
    HGLOBAL loaded = resource ? ::LoadResource(module, resource) : nullptr;
    const auto* text = loaded ? static_cast<const char*>(::LockResource(loaded)) : nullptr;
    if (!text) return {};
    return ToWide(std::string(text, ::SizeofResource(module, resource)).c_str());
}

std::wstring TextOf(const GUID& identifier) {
    // 32 digits, 4 hyphens, 2 braces and the terminator.
    wchar_t text[39];
    ::StringFromGUID2(identifier, text, static_cast<int>(std::size(text)));
    return text;
}

/// What the script says for all classes.
Roots ReadScript(const std::wstring& script) {
    Replacements replacements = {
        {L"TYPELIB", TextOf(*typeLibraryId)},
        {L"MODULE", LibraryFile()},
    };
    Roots roots;
    for (const auto* entry = classObjectMap; entry->classId; ++entry) {
        replacements[L"CLSID"] = TextOf(*entry->classId);
        replacements[L"PROGID"] = entry->progId;
        replacements[L"DESCRIPTION"] = entry->description;
        for (RegistrationRoot& root : ParseRegistrationScript(script, replacements))
            roots.push_back(std::move(root));
    }
    return roots;
}

/// Writes the classes' registration, or takes it back.
HRESULT UpdateClasses(HRESULT (*update)(const Roots& roots)) {
    const std::wstring script = ScriptText();
    constexpr LONG missing = ERROR_RESOURCE_DATA_NOT_FOUND;
    if (script.empty()) return HRESULT_FROM_WIN32(missing);
    try {
        const Roots roots = ReadScript(script);
        const SectionLock lock(moduleRecord.objectMapSection);
        return update(roots);
    } catch (const RegistrationScriptError& error) {
        DebugTrace("UpdateClasses: Line %ld of the script wants %s\n", error.line, error.expected);
        constexpr LONG broken = ERROR_INVALID_DATA;
        return HRESULT_FROM_WIN32(broken);
    }
}

}  // namespace

HRESULT UnregisterServer() {
    const HRESULT classes = UpdateClasses(RemoveRegistration);
    const HRESULT typeLibrary = UnregisterOwnTypeLibrary();
    return FAILED(classes) ? classes : typeLibrary;
}

HRESULT RegisterServer() {
    const HRESULT result = Guarded(
        [] {
            const HRESULT classes = UpdateClasses(WriteRegistration);
            return FAILED(classes) ? classes : RegisterOwnTypeLibrary();
        },
        E_OUTOFMEMORY);
    if (FAILED(result)) UnregisterServer();
    return result;
}

}  // namespace kitbag

// Called by the system's registration tool, with the right to write HKEY_CLASSES_ROOT.
KITBAG_PLAIN HRESULT WINAPI DllRegisterServer() {
    return kitbag::Guarded(kitbag::RegisterServer, E_OUTOFMEMORY);
}

KITBAG_PLAIN HRESULT WINAPI DllUnregisterServer() {
    return kitbag::Guarded(kitbag::UnregisterServer, E_OUTOFMEMORY);
}
