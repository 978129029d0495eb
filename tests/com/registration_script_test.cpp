#include <tests/com/registration.h>
#include <tests/support/trace_capture.h>

namespace {

using namespace kitbag::test;

struct RegistrationScript : ScriptedRegistration {};

TEST_F(RegistrationScript, IsReadIntoItsEntries) {
    const struct {
        const char *about, *entries, *written;
    } rows[] = {
        {"nothing", "", "|"},
        {"quoted keywords are names", "'Delete' 'val' 's' = s s", R"(|\Delete|\s|='s'|\val|)"},
        {"entries in entries", "A = s x { B { val C = s y } } D", R"(|\A|='x'|\A\B|C='y'|\D|)"},
        {"every kind of blank, empty braces", "\tA\r\n=\ts\r\nx { } ", R"(|\A|='x'|)"},
        {"quoted text", "A = s 'b {c} = d // e'", R"(|\A|='b {c} = d // e'|)"},
        {"apostrophes in a text", "A = s 'it''s' B = s ''''", R"(|\A|='it's'|\B|='''|)"},
        {"a quote ends a bare word", "A'B'", R"(|\A|\B|)"},
        {"comments", "// { \n A // B\n C /D", R"(|\/D|\A|\C|)"},
        {"numbers", "val CLSID = d 0 val M = d 4294967295 val N = d 0xFf",
         "|CLSID=0 (0x0)|M=-1 (0xffffffff)|N=255 (0xff)|"},
        {"percent signs", "100%% = s '%%PROGID%%'", R"(|\100%|='%PROGID%'|)"},
    };
    for (const auto& [about, entries, written] : rows) {
        ::RegDeleteTreeA(classes.Get(), nullptr);
        script = "HKCR {" + std::string(entries) + '}';
        EXPECT_EQ(S_OK, ::DllRegisterServer()) << about;
        EXPECT_EQ(written, Classes()) << about;
    }
}

TEST_F(RegistrationScript, HasFourRoots) {
    const RawKey user("User"), users("Users");
    ::RegOverridePredefKey(HKEY_CURRENT_USER, user.Get());
    ::RegOverridePredefKey(HKEY_USERS, users.Get());
    script = "HKCR { A } HKCU { B } HKU { C } HKLM { D }";
    EXPECT_EQ(S_OK, ::DllRegisterServer());
    for (HKEY root : {HKEY_CURRENT_USER, HKEY_USERS}) ::RegOverridePredefKey(root, nullptr);
    for (const char* section : {"Classes\\A", "User\\B", "Users\\C"})
        EXPECT_TRUE(RawKey::Exists(section)) << section;
    EXPECT_EQ(ERROR_SUCCESS, ::RegDeleteKeyA(HKEY_LOCAL_MACHINE, "D"));
}

TEST_F(RegistrationScript, LeavesTheKeysOfAllProgramsToThem) {
    for (const std::string key :
         {"AppID", "CLSID", "Component Categories", "Hardware", "Interface", "MIME", "SAM",
          "Security", "Software", "System", "TypeLib", "typelib"}) {
        SCOPED_TRACE(key);
        script = "HKCR { ForceRemove '" + key + "' { A } }";
        EXPECT_EQ(S_OK, ::DllRegisterServer());
        EXPECT_EQ(S_OK, ::DllUnregisterServer());
        EXPECT_TRUE(RawKey::Exists("Classes\\" + key));
        script = "HKCR { Delete '" + key + "' }";
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_DATA), ::DllRegisterServer());
    }
}

TEST_F(RegistrationScript, IsReadBeforeAnythingIsWrittenAndTellsTheLineOfAFault) {
    const struct {
        const char *about, *entries, *line;
    } rows[] = {
        {"an unknown root", "} HKXX {", "3 of the script wants a root key"},
        {"no end", "A {\n B", "4 of the script wants a name"},
        {"an identifier without quotes", "A {\n {158702B0}", "4 of the script wants a name"},
        {"such an identifier for a text", "A\n = s\n {158702B0}", "5 of the script wants a text"},
        {"no name", "A = s x = s y", "3 of the script wants a name"},
        {"an empty name", "''", "3 of the script wants a plain name before this"},
        {"a path", "ForceRemove A\\B", "3 of the script wants a plain name before this"},
        {"all classes", "Delete CLSID", "3 of the script wants a key of our own before this"},
        {"no data", "A =\n }", "4 of the script wants s or d"},
        {"a quoted kind of data", "A = 's' y", "3 of the script wants s or d"},
        {"a value without data", "val A\n val B", "4 of the script wants ="},
        {"a text without an end", "A = s 'no end\n'", "3 of the script wants an apostrophe"},
        {"a percent sign alone", "A = s '100%'", "3 of the script wants a percent sign"},
        {"an unknown name", "%OTHER%", "3 of the script wants a known replacement"},
        {"33 bits", "val A = d 4294967296",
         "3 of the script wants a number of 32 bits before this"},
        {"no digits", "val A = d 0x", "3 of the script wants a number of 32 bits before this"},
    };
    TraceCapture trace;
    for (const auto& [about, entries, line] : rows) {
        SCOPED_TRACE(about);
        script = "HKCR { Good }\nHKCR\n{ " + std::string(entries);
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_DATA), ::DllRegisterServer());
        EXPECT_EQ("|", Classes());
        // What failed is taken back, by the same script.
        const std::string told = "UpdateClasses: Line " + std::string(line) + '\n';
        trace.Expect({told, told});
    }
}

}  // namespace
