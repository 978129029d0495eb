#include <kitbag/registry/dump.h>
#include <olectl.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>

#include <regex>

namespace {

using namespace kitbag::test;

ComPtr<IClassFactory> ClassObject() {
    ComPtr<IClassFactory> object;
    EXPECT_EQ(S_OK, ::DllGetClassObject(CLSID_KivPageFactory, IID_PPV_ARGS(&object)));
    return object;
}

TEST(ClassObject, KeepsTheLibraryLoadedThroughItsFactoriesAndLocks) {
    EXPECT_EQ(ClassObject(), ClassObject());
    ComPtr<IKivPageFactory> factory;
    EXPECT_EQ(S_OK, ClassObject()->CreateInstance(nullptr, IID_PPV_ARGS(&factory)));
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    ClassObject()->LockServer(TRUE);
    factory.Reset();
    EXPECT_EQ(S_FALSE, ::DllCanUnloadNow());
    ClassObject()->LockServer(FALSE);
    EXPECT_EQ(S_OK, ::DllCanUnloadNow());
    void* out = &out;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, ::DllGetClassObject(IID_NULL, IID_IUnknown, &out));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(E_POINTER, ::DllGetClassObject(CLSID_KivPageFactory, IID_IUnknown, nullptr));
}

std::string script;

void* WINAPI LockScript(HGLOBAL) { return script.data(); }
DWORD WINAPI SizeOfScript(HMODULE, HRSRC) { return static_cast<DWORD>(script.size()); }
HRESULT answer = S_OK;
HRESULT WINAPI RegisterNothing(ITypeLib*, LPOLESTR, LPOLESTR) { return answer; }

/// HKEY_CLASSES_ROOT is a settings section, whose dump shows what registration did.
struct Registration : testing::Test {
    Registration() { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, RawKey("Classes").Get()); }
    ~Registration() override { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }

    /// The keys, each with its values behind it.
    static std::string Classes() {
        TWinString<char> dump;
        KB_DumpRegistryA("Classes", dump);
        return std::regex_replace(dump, std::regex("(---.*\n.*)?<p>\n(Software.*Classes)?"), "|");
    }

    ImportPatch lock{"LockResource", LockScript};
    ImportPatch size{"SizeofResource", SizeOfScript};
    ImportPatch typeLibrary{"RegisterTypeLib", RegisterNothing};
};

TEST_F(Registration, WritesWhatTheScriptSaysAndTakesItBack) {
    // What a script has for HKEY_CLASSES_ROOT, a key that is there, what is there after it was
    // written and after it was taken back.
    const char* const cases[][4] = {
        {"A = s x { val N = d 0x10 B val M = d 10 } Delete Old } HKCR { C", "\\Old\\Older",
         "|\\A|='x'|M=10 (0xa)|N=16 (0x10)|\\A\\B|\\C|", "|"},
        {"ForceRemove A { B }", "\\A\\Old", "|\\A|\\A\\B|", "|"},
        {"// 'comment }\n'Delete'=s'it''s {100%%} %TYPELIB%'", "",
         "|\\Delete|='it's {100%} {158702B0-E0E4-4270-87FD-658F293BAE5E}'|", "|"},
        // What all programs share stays whatever the script says, and so does what others are in.
        {"ForceRemove clsid { A = s x { val N = s y B } } NoRemove D { E } TypeLib { A }",
         "\\CLSID\\A\\Foreign",
         "|\\CLSID|\\CLSID\\A|='x'|N='y'|\\CLSID\\A\\B|\\CLSID\\A\\Foreign|\\D|\\D\\E|\\TypeLib|"
         "\\TypeLib\\A|",
         "|\\CLSID|\\CLSID\\A|\\CLSID\\A\\Foreign|\\D|\\TypeLib|"},
    };
    for (const auto& [entries, existing, written, takenBack] : cases) {
        script = std::string("HKCR\n{") + entries + '}';
        RawKey(std::string("Classes") + existing);
        EXPECT_EQ(S_OK, ::DllRegisterServer()) << script;
        EXPECT_EQ(written, Classes()) << script;
        EXPECT_EQ(S_OK, ::DllUnregisterServer()) << script;
        EXPECT_EQ(takenBack, Classes()) << script;
    }
}

TEST_F(Registration, LeavesNothingWhereALineIsBrokenOrTheTypeLibraryFails) {
    for (const char* broken : {"A = s 'no end\n}", "A { B }", "A = x 'y' }", "A = d 4294967296 }",
                               "val N }", "A = s '%NONE%' }", "A = s '100%' }",
                               "ForceRemove A\\B }", "Delete clsid }", "} HKCR", "} HKXX { }"}) {
        script = std::string("HKCR { Good }\nHKCR {\n") + broken;
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_DATA), ::DllRegisterServer()) << script;
        EXPECT_EQ("|", Classes()) << script;
    }
    script = "HKCR { A { B } }";
    answer = TYPE_E_REGISTRYACCESS;
    EXPECT_EQ(answer, ::DllRegisterServer());
    EXPECT_EQ("|", Classes());
}

}  // namespace
