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
    static inline std::string script;

    const ImportPatch patches[3] = {
        {"LockResource", +[](HGLOBAL) WINAPI -> void* { return script.data(); }},
        {"SizeofResource", +[](HMODULE, HRSRC) WINAPI -> DWORD { return script.size(); }},
        {"RegisterTypeLib", +[](ITypeLib*, LPOLESTR, LPOLESTR) WINAPI { return S_OK; }}};
};

}  // namespace kitbag::test
