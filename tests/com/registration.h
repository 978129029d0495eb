// Registration that no other program sees.
#pragma once

#include <kitbag/registry/dump.h>
#include <olectl.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>

#include <regex>

namespace kitbag::test {

/// HKEY_CLASSES_ROOT is a settings section, whose dump shows what registration did.
struct Registration : testing::Test {
    Registration() { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes.Get()); }
    ~Registration() override { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }

    /// The keys, each with its values behind it: "|\A|='text of A'|\A\B|".
    static std::string Classes() {
        TWinString<char> dump;
        KB_DumpRegistryA("Classes", dump);
        return std::regex_replace(dump, std::regex("(---.*\n.*)?<p>\n(Software.*?Classes)?"), "|");
    }

    const RawKey classes{"Classes"};
};

/// With a script of the test's own, and without the type library.
struct ScriptedRegistration : Registration {
    ScriptedRegistration() { typeLibraryAnswer = S_OK; }

    static inline std::string script;
    static inline HRESULT typeLibraryAnswer;

    ImportPatch lock{"LockResource",
                     +[](HGLOBAL) WINAPI { return static_cast<void*>(script.data()); }};
    ImportPatch size{"SizeofResource",
                     +[](HMODULE, HRSRC) WINAPI { return static_cast<DWORD>(script.size()); }};
    ImportPatch typeLibrary{
        "RegisterTypeLib", +[](ITypeLib*, LPOLESTR, LPOLESTR) WINAPI { return typeLibraryAnswer; }};
};

}  // namespace kitbag::test
