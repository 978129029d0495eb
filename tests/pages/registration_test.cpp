#include <kitbag/pages.h>
#include <tests/pages/dump_key.h>
#include <tests/support/import_patch.h>
#include <tests/support/temporary_folder.h>
#include <tests/support/trace_capture.h>

#include <fstream>
#include <string>
#include <string_view>

namespace {

using namespace kitbag::test;

std::string script;

void* WINAPI LockScript(HGLOBAL) { return script.data(); }
DWORD WINAPI SizeOfScript(HMODULE, HRSRC) { return static_cast<DWORD>(script.size()); }

HRESULT WINAPI RefuseTypeLibrary(ITypeLib*, LPOLESTR, LPOLESTR) { return TYPE_E_REGISTRYACCESS; }
HRESULT WINAPI SkipTypeLibrary(ITypeLib*, LPOLESTR, LPOLESTR) { return S_OK; }

HRESULT WINAPI RefuseLibraries(LPCOLESTR file, REGKIND kind, ITypeLib** library) {
    if (std::wstring_view(file).ends_with(L".dll")) return TYPE_E_CANTLOADLIBRARY;
    return ::LoadTypeLibEx(file, kind, library);
}

std::string FileOf(HMODULE module) {
    char path[MAX_PATH];
    ::GetModuleFileNameA(module, path, sizeof path);
    return path;
}

/// HKEY_CLASSES_ROOT replaced by an empty key below the test's private HKEY_LOCAL_MACHINE.
class Registration : public testing::Test {
 protected:
    Registration() {
        ::RegCreateKeyA(HKEY_LOCAL_MACHINE, "Classes", &classes_);
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, classes_);
    }
    ~Registration() override {
        ::RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        ::RegDeleteTreeA(classes_, nullptr);
        ::RegCloseKey(classes_);
    }

    static HRESULT Call(const char* name, const char* library) {
        return reinterpret_cast<HRESULT(WINAPI*)()>(
            reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleA(library), name)))();
    }
    static HRESULT Register(const char* library = "Kitbag.dll") {
        return Call("DllRegisterServer", library);
    }
    static HRESULT Unregister(const char* library = "Kitbag.dll") {
        return Call("DllUnregisterServer", library);
    }

    static void Create(const char* path) {
        HKEY key = nullptr;
        ::RegCreateKeyA(HKEY_CLASSES_ROOT, path, &key);
        ::RegCloseKey(key);
    }

    std::string Classes() { return DumpKey(classes_); }

    HKEY classes_ = nullptr;
};

class RegistrationScripts : public Registration {
 protected:
    ImportPatch lock_{"LockResource", LockScript};
    ImportPatch size_{"SizeofResource", SizeOfScript};
    ImportPatch typeLibrary_{"RegisterTypeLib", SkipTypeLibrary};
    TraceCapture trace_;
};

TEST_F(Registration, WritesAClassAndTakesItBack) {
    for (const char* shared : {"CLSID\\Another program's", "Interface", "TypeLib"}) Create(shared);
    const std::string before = Classes();
    ASSERT_EQ(S_OK, Register());
    ASSERT_EQ(S_OK, Register());
    const std::string file = FileOf(::GetModuleHandleA("Kitbag.dll"));
    const std::string id = "{E58C6519-2F38-4027-9DEF-5E6D4033F561}";
    const std::string classes = Classes();
    for (const std::string& line : {
             "Kitbag.KivPageFactory\\CLSID\\:=" + id,
             "CLSID\\" + id + "\\InprocServer32\\:=" + file,
             "CLSID\\" + id + "\\InprocServer32\\:ThreadingModel=Apartment",
             "{158702B0-E0E4-4270-87FD-658F293BAE5E}\\1.0\\0\\win32\\:=" + file,
         })
        EXPECT_NE(std::string::npos, classes.find(line + '\n')) << line << "\nin\n" << classes;
    EXPECT_EQ(S_OK, Unregister());
    EXPECT_EQ(S_OK, Unregister());
    EXPECT_EQ(before, Classes());
}

TEST_F(Registration, LeavesNothingWhereItFails) {
    Create("CLSID");
    const ImportPatch refuse("RegisterTypeLib", RefuseTypeLibrary);
    EXPECT_EQ(TYPE_E_REGISTRYACCESS, Register());
    EXPECT_EQ("CLSID\n", Classes());
}

TEST_F(Registration, FindsTheTypeLibraryInAFileOfItsOwn) {
    const TemporaryFolder folder;
    const auto library = folder / "Second.dll";
    HMODULE kitbag = ::GetModuleHandleA("Kitbag.dll");
    std::filesystem::copy_file(FileOf(kitbag), library);
    HRSRC resource = ::FindResourceA(kitbag, MAKEINTRESOURCEA(1), "TYPELIB");
    std::ofstream(folder / "Second.tlb", std::ios::binary)
        .write(static_cast<const char*>(::LockResource(::LoadResource(kitbag, resource))),
               static_cast<std::streamsize>(::SizeofResource(kitbag, resource)));

    HMODULE second = ::LoadLibraryW(library.c_str());
    {
        const ImportPatch refuse("LoadTypeLibEx", RefuseLibraries, "Second.dll");
        for (const char* shared : {"CLSID", "Interface", "TypeLib"}) Create(shared);
        EXPECT_EQ(S_OK, Register("Second.dll"));
        EXPECT_NE(std::string::npos,
                  Classes().find("\\win32\\:=" + (folder / "Second.tlb").string()));
        EXPECT_EQ(S_OK, Unregister("Second.dll"));
        EXPECT_EQ("CLSID\nInterface\nTypeLib\n", Classes());
    }
    ::FreeLibrary(second);
}

TEST_F(RegistrationScripts, AreWrittenAndTakenBack) {
    struct {
        const char* script;
        const char* existing;
        const char* written;
        const char* takenBack;
    } const cases[] = {
        {"", "A", "A\n", "A\n"},
        {"HKCR { A = s x { val N = d 0x10 B val M = d 10 } } HKCR { C }", nullptr,
         "A\nA\\:=x\nA\\:M=10\nA\\:N=16\nA\\B\nC\n", ""},
        // A key goes when nothing of others is in it.
        {"HKCR { A = s x { val N = s y B } }", "A\\Foreign",
         "A\nA\\:=x\nA\\:N=y\nA\\B\nA\\Foreign\n", "A\nA\\Foreign\n"},
        {"HKCR { ForceRemove A { B } }", "A\\Old\\Older", "A\nA\\B\n", ""},
        {"HKCR { NoRemove A { val N = s x B } }", nullptr, "A\nA\\:N=x\nA\\B\n", "A\n"},
        {"HKCR { Delete A }", "A\\Old", "", ""},
        {"HKCR\n{ // 'comment\n'Delete'=s'it''s {100%%}' // }\n}", nullptr,
         "Delete\nDelete\\:=it's {100%}\n", ""},
        {"HKCR { %CLSID% = s %TYPELIB% }", nullptr,
         "{E58C6519-2F38-4027-9DEF-5E6D4033F561}\n{E58C6519-2F38-4027-9DEF-5E6D4033F561}\\:="
         "{158702B0-E0E4-4270-87FD-658F293BAE5E}\n",
         ""},
        // What all programs share stays, whatever the script says.
        {"HKCR { ForceRemove CLSID { A } typelib { A } }", "CLSID\\Foreign",
         "CLSID\nCLSID\\A\nCLSID\\Foreign\ntypelib\ntypelib\\A\n",
         "CLSID\nCLSID\\Foreign\ntypelib\n"},
    };
    for (const auto& each : cases) {
        script = each.script;
        if (each.existing) Create(each.existing);
        EXPECT_EQ(S_OK, Register()) << script;
        EXPECT_EQ(each.written, Classes()) << script;
        EXPECT_EQ(S_OK, Unregister()) << script;
        EXPECT_EQ(each.takenBack, Classes()) << script;
        EXPECT_EQ(S_OK, Unregister()) << script;
        ::RegDeleteTreeA(classes_, nullptr);
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
        {"HKCR { } }", 2, "a root key"},
        {"HKCR { A = }", 2, "s or d"},
        {"HKCR { A = x 'y' }", 2, "s or d"},
        {"HKCR { A = s }", 2, "a text"},
        {"HKCR {\n A = s 'no end\n}", 3, "an apostrophe"},
        {"HKCR { val N\n= s x val M }", 3, "="},
        {"HKCR { A = s '%NONE%' }", 2, "a known replacement"},
        {"HKCR { A = s '100%' }", 2, "a percent sign"},
        {"HKCR { ForceRemove '' }", 2, "a plain name before this"},
        {"HKCR { ForceRemove A\\B }", 2, "a plain name before this"},
        {"HKCR { Delete clsid }", 2, "a key of our own before this"},
        {"HKCR { A = d 0x }", 2, "a number of 32 bits before this"},
        {"HKCR { A = d 4294967296 }", 2, "a number of 32 bits before this"},
        {"HKCR { A = d -1 }", 2, "a number of 32 bits before this"},
    };
    for (const auto& each : cases) {
        script = std::string("HKCR { Good }\n") + each.script;
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_DATA), Register()) << script;
        EXPECT_EQ("", Classes()) << script;
        const std::string trace = "UpdatePageFactoryRegistration: Line " +
                                  std::to_string(each.line) + " of the script wants " +
                                  each.wanted + '\n';
        // Once for writing, once for taking back.
        trace_.Expect({trace, trace});
    }
}

}  // namespace
