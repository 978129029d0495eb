#include <kitbag/com/registration_writer.h>
#include <kitbag/com/server_registration.h>
#include <kitbag/com/type_library.h>
#include <kitbag/frame/debug_trace.h>
#include <kitbag/frame/export.h>
#include <kitbag/frame/guard.h>
#include <kitbag/frame/module_record.h>
#include <kitbag/frame/resource_ids.h>
#include <kitbag/frame/text_conversion.h>
#include <kitbag/pages.h>

#include <string>

namespace kitbag {

namespace {

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
    wchar_t text[39];
    ::StringFromGUID2(identifier, text, static_cast<int>(std::size(text)));
    return text;
}

HRESULT Unregister() {
    const HRESULT classes = moduleRecord.UpdateRegistry(false);
    const HRESULT typeLibrary = UnregisterOwnTypeLibrary();
    return FAILED(classes) ? classes : typeLibrary;
}

HRESULT Register() {
    const HRESULT result = Guarded(
        [] {
            const HRESULT classes = moduleRecord.UpdateRegistry(true);
            return FAILED(classes) ? classes : RegisterOwnTypeLibrary();
        },
        E_OUTOFMEMORY);
    // Half a registration would make programs fail later and less plainly.
    if (FAILED(result)) Unregister();
    return result;
}

}  // namespace

HRESULT UpdatePageFactoryRegistration(bool install) {
    const Replacements replacements = {
        {L"CLSID", TextOf(CLSID_KivPageFactory)},
        {L"TYPELIB", TextOf(LIBID_Kitbag)},
        {L"MODULE", LibraryFile()},
    };
    const std::wstring script = ScriptText();
    constexpr LONG missing = ERROR_RESOURCE_DATA_NOT_FOUND;
    if (script.empty()) return HRESULT_FROM_WIN32(missing);
    try {
        const auto roots = ParseRegistrationScript(script, replacements);
        return install ? WriteRegistration(roots) : RemoveRegistration(roots);
    } catch (const RegistrationScriptError& error) {
        DebugTrace("UpdatePageFactoryRegistration: Line %ld of the script wants %s\n", error.line,
                   error.expected);
        constexpr LONG broken = ERROR_INVALID_DATA;
        return HRESULT_FROM_WIN32(broken);
    }
}

}  // namespace kitbag

// Called by the system's registration tool, with the right to write HKEY_CLASSES_ROOT. A failed
// registration takes everything back, also what an earlier one left.
KITBAG_PLAIN HRESULT WINAPI DllRegisterServer() {
    return kitbag::Guarded([] { return kitbag::Register(); }, E_OUTOFMEMORY);
}

// Takes back what is there and answers the first failure; S_OK, too, where nothing was registered.
KITBAG_PLAIN HRESULT WINAPI DllUnregisterServer() {
    return kitbag::Guarded([] { return kitbag::Unregister(); }, E_OUTOFMEMORY);
}
