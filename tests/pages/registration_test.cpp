#include <kitbag/registry/dump.h>
#include <kitbag/registry/tree.h>
#include <olectl.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/trace_capture.h>

#include <algorithm>
#include <array>
#include <regex>

namespace {

using namespace kitbag::test;

std::string script;
std::wstring typeLibraryFile;
HRESULT typeLibraryAnswer = S_OK;

void* WINAPI LockScript(HGLOBAL) { return script.data(); }
DWORD WINAPI SizeOfScript(HMODULE, HRSRC) { return static_cast<DWORD>(script.size()); }
HRESULT WINAPI RegisterTypeLibrary(ITypeLib*, LPOLESTR file, LPOLESTR) {
    typeLibraryFile = file;
    return typeLibraryAnswer;
}
HRESULT WINAPI LoadFromSeparateFile(LPCOLESTR file, REGKIND kind, ITypeLib** library) {
    if (!std::wstring_view(file).ends_with(L".tlb")) return TYPE_E_CANTLOADLIBRARY;
    return ::LoadTypeLibEx(L"Kitbag.dll", kind, library);
}

/// HKEY_CLASSES_ROOT is a settings section, whose dump shows what registration did.
class Registration : public testing::Test {
 protected:
    Registration() { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, RawKey("Classes").Get()); }
    ~Registration() override { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }

    /// The keys with their values, in one line.
    static std::string Classes() {
        TWinString<char> dump;
        KB_DumpRegistryA("Classes", dump);
        const std::regex noise("^-.*\n.*<p>\n|Software.*Classes|<p>\n$|<p>");
        std::string classes = std::regex_replace(dump, noise, "");
        std::ranges::replace(classes, '\n', ' ');
        std::ranges::replace(classes, '\\', '/');
        return classes;
    }

    ImportPatch lock_{"LockResource", LockScript};
    ImportPatch size_{"SizeofResource", SizeOfScript};
    ImportPatch typeLibrary_{"RegisterTypeLib", RegisterTypeLibrary};
    TraceCapture trace_;
};

TEST_F(Registration, LeavesNothingWhereItFails) {
    script = "HKCR { A { B } CLSID { A } }";
    RawKey("Classes\\CLSID\\Foreign");
    typeLibraryAnswer = TYPE_E_REGISTRYACCESS;
    EXPECT_EQ(TYPE_E_REGISTRYACCESS, ::DllRegisterServer());
    EXPECT_EQ("/CLSID /CLSID/Foreign", Classes());
}

TEST_F(Registration, FindsTheTypeLibraryInAFileOfItsOwn) {
    const ImportPatch load("LoadTypeLibEx", LoadFromSeparateFile);
    EXPECT_EQ(S_OK, ::DllRegisterServer());
    EXPECT_TRUE(typeLibraryFile.ends_with(L"\\Kitbag.tlb"));
}

TEST_F(Registration, WritesWhatTheScriptSaysAndTakesItBack) {
    // What a script has for HKEY_CLASSES_ROOT, a key that is there, what is there after it was
    // written and after it was taken back.
    const std::array<const char*, 4> cases[] = {
        {"A = s x { val N = d 0x10 B val M = d 10 } } HKCR { C", "",
         "/A ='x' M=10 (0xa) N=16 (0x10) /A/B /C", ""},
        // A key goes when nothing of others is in it.
        {"A = s x { val N = s y B }", "\\A\\Foreign", "/A ='x' N='y' /A/B /A/Foreign",
         "/A /A/Foreign"},
        {"ForceRemove A { B }", "\\A\\Old\\Older", "/A /A/B", ""},
        {"NoRemove A { val N = s x B }", "", "/A N='x' /A/B", "/A"},
        {"Delete A", "\\A\\Old", "", ""},
        {"// 'comment }\n'Delete'=s'it''s {100%%}'", "", "/Delete ='it's {100%}'", ""},
        {"A = s %TYPELIB%", "", "/A ='{158702B0-E0E4-4270-87FD-658F293BAE5E}'", ""},
        // What all programs share stays, whatever the script says.
        {"ForceRemove clsid { A } TypeLib { A }", "\\CLSID\\Foreign",
         "/CLSID /CLSID/A /CLSID/Foreign /TypeLib /TypeLib/A", "/CLSID /CLSID/Foreign /TypeLib"},
    };
    for (const auto& [entries, existing, written, takenBack] : cases) {
        script = std::string("HKCR\n{") + entries + '}';
        RawKey(std::string("Classes") + existing);
        EXPECT_EQ(S_OK, ::DllRegisterServer()) << script;
        EXPECT_EQ(written, Classes()) << script;
        for (const int again : {1, 2}) {
            EXPECT_EQ(S_OK, ::DllUnregisterServer()) << script << again;
            EXPECT_EQ(takenBack, Classes()) << script << again;
        }
        for (const char* key : {"A", "CLSID", "TypeLib"}) KB_DeleteKeyA("Classes", key);
    }
}

TEST_F(Registration, RefusesAScriptWithABrokenLineWhole) {
    using namespace testing;
    for (const char* broken :
         {"A = s 'no end\n}", "A { B }", "A = x 'y' }", "A = s }", "A = d -1 }",
          "A = d 4294967296 }", "val N }", "A = s '%NONE%' }", "A = s '100%' }", "ForceRemove '' }",
          "ForceRemove A\\B }", "Delete clsid }", "} HKCR", "} HKXX { }"}) {
        script = std::string("HKCR { Good }\nHKCR {\n") + broken;
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_DATA), ::DllRegisterServer()) << script;
        EXPECT_EQ("", Classes()) << script;
    }
    EXPECT_EQ(kDiagnostic, !trace_.Lines().empty());
    EXPECT_THAT(trace_.Lines(),
                Each(StartsWith("UpdatePageFactoryRegistration: Line 3 of the script wants ")));
}

}  // namespace
