#include <gtest/gtest.h>
#include <kitbag/com/registration_script.h>
#include <kitbag/frame/text_conversion.h>

#include <ostream>

namespace {

using namespace kitbag;
using Entry = RegistrationEntry;

std::string Shown(const std::vector<Entry>& entries) {
    static constexpr const char* kKinds[] = {"Key", "OwnKey", "SharedKey", "DeletedKey", "Value"};
    std::string text;
    for (const Entry& entry : entries) {
        text += text.empty() ? "" : ", ";
        text += kKinds[static_cast<int>(entry.kind)] + (" " + ToNarrow(entry.name.c_str()));
        if (entry.data && entry.data->index() == 0)
            text += "='" + ToNarrow(std::get<std::wstring>(*entry.data).c_str()) + '\'';
        if (entry.data && entry.data->index() == 1)
            text += '=' + std::to_string(std::get<DWORD>(*entry.data));
        if (!entry.entries.empty()) text += '{' + Shown(entry.entries) + '}';
    }
    return text;
}

/// What is read, or the line of the fault and what was expected there: "2: a name".
std::string Read(const std::string& script) {
    const Replacements replacements = {{L"NAME", L"a {name}"}, {L"NEST", L"%NAME%"}};
    try {
        const auto roots = ParseRegistrationScript(ToWide(script.c_str()), replacements);
        std::string text;
        for (const RegistrationRoot& root : roots) text += Shown(root.entries) + ';';
        return text;
    } catch (const RegistrationScriptError& error) {
        return std::to_string(error.line) + ": " + error.expected;
    }
}

struct Row {
    const char* about;
    const char* entries;
    const char* expected;
};

TEST(RegistrationScript, IsReadIntoItsEntries) {
    const Row rows[] = {
        {"nothing", "", ";"},
        {"every kind of entry", "A ForceRemove B NoRemove C Delete D val E = d 1",
         "Key A, OwnKey B, SharedKey C, DeletedKey D, Value E=1;"},
        {"a quoted keyword is a name", "'Delete' 'val' 's' = s s",
         "Key Delete, Key val, Key s='s';"},
        {"entries within entries", "A = s x { B { val C = s y } } D",
         "Key A='x'{Key B{Value C='y'}}, Key D;"},
        {"what has entries need not have any", "A { }", "Key A;"},
        {"every kind of blank", "\tA\r\n=\ts\r\nx ", "Key A='x';"},
        {"quoted text", "A = s 'b {c} = d // e'", "Key A='b {c} = d // e';"},
        {"apostrophes in a text", "A = s 'it''s' B = s ''''", "Key A='it's', Key B=''';"},
        {"a quote ends a bare word", "A'B'", "Key A, Key B;"},
        {"comments", "// { \n A // B\n C /D", "Key A, Key C, Key /D;"},
        {"numbers", "val A = d 4294967295 val B = d 0xFf val C = d 0",
         "Value A=4294967295, Value B=255, Value C=0;"},
        {"replacements, once, wherever they stand", "%NAME% = s 'x%NAME%y' %NEST% 100%%",
         "Key a {name}='xa {name}y', Key %NAME%, Key 100%;"},
    };
    for (const auto& [about, entries, expected] : rows)
        EXPECT_EQ(expected, Read("HKCR {" + std::string(entries) + '}')) << about;
}

TEST(RegistrationScript, HasFourRoots) {
    const auto roots = ParseRegistrationScript(L"HKCR { } HKCU { } HKLM { } HKU { }", {});
    HKEY const expected[] = {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS};
    ASSERT_EQ(std::size(expected), roots.size());
    for (std::size_t i = 0; i < roots.size(); ++i) EXPECT_EQ(expected[i], roots[i].key) << i;
    EXPECT_EQ("", Read(""));
}

TEST(RegistrationScript, LeavesTheKeysOfAllProgramsToThem) {
    for (const std::string key :
         {"AppID", "CLSID", "Component Categories", "Hardware", "Interface", "MIME", "SAM",
          "Security", "Software", "System", "TypeLib", "clsid", "TYPELIB"}) {
        const std::string quoted = '\'' + key + '\'';
        const std::string shared = "SharedKey " + key;
        EXPECT_EQ(shared + ';', Read("HKCR { " + quoted + " }"));
        EXPECT_EQ(shared + ';', Read("HKCR { ForceRemove " + quoted + " }"));
        EXPECT_EQ("1: a key of our own before this", Read("HKCR { Delete " + quoted + " }"));
        // Below a key of our own the name is ours, too, and so is a value of it.
        EXPECT_EQ("Key A{OwnKey " + key + ", DeletedKey " + key + "};",
                  Read("HKCR { A { ForceRemove " + quoted + " Delete " + quoted + " } }"));
        EXPECT_EQ("Value " + key + "=1;", Read("HKCR { val " + quoted + " = d 1 }"));
    }
}

TEST(RegistrationScript, TellsTheLineOfAFaultAndWhatItWants) {
    const Row rows[] = {
        {"an unknown root", "} HKXX {", "3: a root key"},
        {"no end", "A {\n B", "4: a name"},
        {"an identifier that is not quoted", "A {\n {158702B0-E0E4-4270-87FD-658F293BAE5E} = s x }",
         "4: a name"},
        {"an unquoted identifier for a text", "A\n = s\n {158702B0-E0E4-4270-87FD-658F293BAE5E}",
         "5: a text"},
        {"no name", "A = s x = s y", "3: a name"},
        {"an empty name", "''", "3: a plain name before this"},
        {"a path", "ForceRemove A\\B", "3: a plain name before this"},
        {"no data", "A =\n }", "4: s or d"},
        {"a quoted kind of data", "A = 's' y", "3: s or d"},
        {"a value without data", "val A\n val B", "4: ="},
        {"a text without an end", "A = s 'no end\n'", "3: an apostrophe"},
        {"a percent sign alone", "A = s '100%'", "3: a percent sign"},
        {"an unknown replacement", "%OTHER%", "3: a known replacement"},
        {"a number of 33 bits", "val A = d 4294967296", "3: a number of 32 bits before this"},
        {"a hexadecimal number without digits", "val A = d 0x",
         "3: a number of 32 bits before this"},
        {"a negative number", "val A = d -1", "3: a number of 32 bits before this"},
    };
    for (const auto& [about, entries, expected] : rows)
        EXPECT_EQ(expected, Read("HKCR { Good }\nHKCR\n{ " + std::string(entries))) << about;
}

TEST(RegistrationScript, OfTheLibraryHasNoFault) {
    HMODULE library = ::GetModuleHandleA("Kitbag.dll");
    HRSRC resource = ::FindResourceA(library, MAKEINTRESOURCEA(1), "REGISTRY");
    const auto* text = static_cast<const char*>(::LockResource(::LoadResource(library, resource)));
    ASSERT_NE(nullptr, text);
    Replacements replacements;
    for (const wchar_t* name : {L"CLSID", L"PROGID", L"DESCRIPTION", L"TYPELIB", L"MODULE"})
        replacements[name] = L"x";
    try {
        const auto script = ToWide(std::string(text, ::SizeofResource(library, resource)).c_str());
        EXPECT_EQ(1u, ParseRegistrationScript(script, replacements).size());
    } catch (const RegistrationScriptError& error) {
        FAIL() << "kitbag/pages/kitbag.rgs(" << error.line << "): expected " << error.expected;
    }
}

}  // namespace
