#include <kitbag/registry/dump.h>
#include <kitbag/registry/tree.h>
#include <tests/pages/doubles.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>
#include <tests/support/trace_capture.h>

namespace {

using namespace kitbag::test;

std::string script;

void* WINAPI LockScript(HGLOBAL) { return script.data(); }
DWORD WINAPI SizeOfScript(HMODULE, HRSRC) { return static_cast<DWORD>(script.size()); }
HRESULT WINAPI RefuseTypeLibrary(ITypeLib*, LPOLESTR, LPOLESTR) { return TYPE_E_REGISTRYACCESS; }
HRESULT WINAPI SkipTypeLibrary(ITypeLib*, LPOLESTR, LPOLESTR) { return S_OK; }
HRESULT WINAPI LoadFromSeparateFile(LPCOLESTR file, REGKIND kind, ITypeLib** library) {
    if (!std::wstring_view(file).ends_with(L".tlb")) return TYPE_E_CANTLOADLIBRARY;
    return ::LoadTypeLibEx(L"Kitbag.dll", kind, library);
}

/// HKEY_CLASSES_ROOT is a settings section, whose dump shows what registration did.
class Registration : public testing::Test {
 protected:
    Registration() { ::RegOverridePredefKey(HKEY_CLASSES_ROOT, RawKey("Classes").Get()); }
    ~Registration() override {
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        KB_DeleteSectionA("Classes");
    }

    static HRESULT Call(const char* name) {
        return reinterpret_cast<HRESULT(WINAPI*)()>(
            reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA("Kitbag.dll"), name)))();
    }
    static HRESULT Register() { return Call("DllRegisterServer"); }
    static HRESULT Unregister() { return Call("DllUnregisterServer"); }

    /// The keys with their values, without what stands in every line.
    static std::string Classes() {
        TWinString<char> dump;
        KB_DumpRegistryA("Classes", dump);
        for (const std::string& noise : {std::string("------- HKEY_LOCAL_MACHINE -------\n"),
                                         std::string(kRoot) + "\\Classes", std::string("<p>")})
            for (size_t at; (at = dump.find(noise)) != dump.npos;) dump.erase(at, noise.size());
        return dump;
    }
};

class RegistrationScripts : public Registration {
 protected:
    ImportPatch lock_{"LockResource", LockScript};
    ImportPatch size_{"SizeofResource", SizeOfScript};
    ImportPatch typeLibrary_{"RegisterTypeLib", SkipTypeLibrary};
    TraceCapture trace_;
};

TEST_F(Registration, LeavesNothingWhereItFails) {
    RawKey("Classes\\CLSID\\Another program's");
    const std::string before = Classes();
    const ImportPatch refuse("RegisterTypeLib", RefuseTypeLibrary);
    EXPECT_EQ(TYPE_E_REGISTRYACCESS, Register());
    EXPECT_EQ(before, Classes());
    EXPECT_EQ(S_OK, Unregister());
}

TEST_F(Registration, FindsTheTypeLibraryInAFileOfItsOwn) {
    const ImportPatch load("LoadTypeLibEx", LoadFromSeparateFile);
    EXPECT_EQ(S_OK, Register());
    EXPECT_NE(std::string::npos, Classes().find("\\Kitbag.tlb'\n"));
}

TEST_F(RegistrationScripts, AreWrittenAndTakenBack) {
    struct {
        const char* script;
        const char* existing;
        const char* written;
        const char* takenBack;
    } const cases[] = {
        {"HKCR { A = s x { val N = d 0x10 B val M = d 10 } } HKCR { C }", "",
         "\n\\A\n='x'\nM=10 (0xa)\nN=16 (0x10)\n\\A\\B\n\\C\n", "\n"},
        // A key goes when nothing of others is in it.
        {"HKCR { A = s x { val N = s y B } }", "\\A\\Foreign",
         "\n\\A\n='x'\nN='y'\n\\A\\B\n\\A\\Foreign\n", "\n\\A\n\\A\\Foreign\n"},
        {"HKCR { ForceRemove A { B } }", "\\A\\Old\\Older", "\n\\A\n\\A\\B\n", "\n"},
        {"HKCR { NoRemove A { val N = s x B } }", "", "\n\\A\nN='x'\n\\A\\B\n", "\n\\A\n"},
        {"HKCR { Delete A }", "\\A\\Old", "\n", "\n"},
        {"HKCR\n{ // 'comment\n'Delete'=s'it''s {100%%}' // }\n}", "",
         "\n\\Delete\n='it's {100%}'\n", "\n"},
        {"HKCR { A = s %TYPELIB% }", "", "\n\\A\n='{158702B0-E0E4-4270-87FD-658F293BAE5E}'\n",
         "\n"},
        // What all programs share stays, whatever the script says.
        {"HKCR { ForceRemove clsid { A } TypeLib { A } }", "\\CLSID\\Foreign",
         "\n\\CLSID\n\\CLSID\\A\n\\CLSID\\Foreign\n\\TypeLib\n\\TypeLib\\A\n",
         "\n\\CLSID\n\\CLSID\\Foreign\n\\TypeLib\n"},
    };
    for (const auto& each : cases) {
        script = each.script;
        RawKey(std::string("Classes") + each.existing);
        EXPECT_EQ(S_OK, Register()) << script;
        EXPECT_EQ(each.written, Classes()) << script;
        for (const int again : {1, 2}) {
            EXPECT_EQ(S_OK, Unregister()) << script << again;
            EXPECT_EQ(each.takenBack, Classes()) << script << again;
        }
        for (const char* key : {"A", "CLSID", "TypeLib"}) KB_DeleteKeyA("Classes", key);
    }
}

TEST_F(RegistrationScripts, AreRefusedWholeWhereALineIsBroken) {
    struct {
        const char* script;
        int line;
        const char* wanted;
    } const cases[] = {
        {"HKXX { }", 2, "a root key"},
        {"HKCR", 2, "{"},
        {"HKCR {\n A {\n B }", 4, "a name"},
        {"HKCR { A = x 'y' }", 2, "s or d"},
        {"HKCR { A = s }", 2, "a text"},
        {"HKCR {\n A = s 'no end\n}", 3, "an apostrophe"},
        {"HKCR { val N\nval M }", 3, "="},
        {"HKCR { A = s '%NONE%' }", 2, "a known replacement"},
        {"HKCR { A = s '100%' }", 2, "a percent sign"},
        {"HKCR { ForceRemove '' }", 2, "a plain name before this"},
        {"HKCR { ForceRemove A\\B }", 2, "a plain name before this"},
        {"HKCR { Delete clsid }", 2, "a key of our own before this"},
        {"HKCR { A = d 4294967296 }", 2, "a number of 32 bits before this"},
        {"HKCR { A = d -1 }", 2, "a number of 32 bits before this"},
    };
    for (const auto& each : cases) {
        script = std::string("HKCR { Good }\n") + each.script;
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_DATA), Register()) << script;
        EXPECT_EQ("\n", Classes()) << script;
        TWinString<char> trace;
        trace.Format("UpdatePageFactoryRegistration: Line %d of the script wants %s\n", each.line,
                     each.wanted);
        // Once for writing, once for taking back.
        trace_.Expect({trace, trace});
    }
}

}  // namespace
