#include <gtest/gtest.h>
#include <kitbag/kitbag.h>
#include <tests/support/private_registry.h>

namespace {

using namespace kitbag::test;
using Text = TWinString<char>;

constexpr char kNew[] =
    "={Display Name='',Description='',Executable='',Arguments='',User Experience Level=2,"
    "Run in background=True,Wait for program to finish=False,"
    "Notify user when program has finished=True}";
constexpr char kSet[] =
    "={Display Name='Editor',Description='Edits',Executable='C:\\edit.exe',Arguments='%f',User "
    "Experience Level=1,Run in background=False,Wait for program to finish=True,"
    "Notify user when program has finished=False}";

void Set(ExternalProgramValueTableEntry& program) {
    program.DisplayName = Text("Editor");
    program.Description = Text("Edits");
    program.Executable = Text("C:\\edit.exe");
    program.Arguments = Text("%f");
    program.UserExperienceLevel.SetValue(1);
    program.RunInBackground.SetValue(false);
    program.WaitForFinish.SetValue(true);
    program.NotifyWhenFinished.SetValue(false);
}

TEST(ExternalProgramTable, HasRowsOfEightMembers) {
    ExternalProgramValueTableEntry program;
    EXPECT_EQ(kNew, program.ToString());
    EXPECT_EQ("Display Name=''|Description=''", program.GetIdent().GetValue());
    Set(program);
    EXPECT_EQ(kSet, program.ToString());
    EXPECT_EQ("Display Name='Editor'|Description='Edits'", program.GetIdent().GetValue());
    const ExternalProgramValueTableEntry copy(program);
    EXPECT_EQ(kSet, copy.ToString());
    EXPECT_EQ(program.GetIdent().GetValue(), copy.GetIdent().GetValue());
    EXPECT_EQ(&copy.Executable, copy.GetValue("Executable")) << "a copy declares its own members";
    ExternalProgramValueTableEntry assigned, through;
    assigned = program;
    EXPECT_EQ(kSet, assigned.ToString());
    static_cast<ValueTableEntry&>(through) = program;
    EXPECT_EQ(kSet, through.ToString());
    static_cast<ValueTableEntry&>(through) = MediaLocationValueTableEntry();
    EXPECT_EQ(kSet, through.ToString()) << "a row of another class";
}

TEST(ExternalProgramTable, KeepsProgramsUnderTheNameThatItWasGiven) {
    ExternalProgramValueTable programs("Tools");
    EXPECT_TRUE(programs.IsEmpty());
    programs.SetValueName("Programs");
    auto* program = new ExternalProgramValueTableEntry;
    Set(*program);
    programs.AddEntry(program);
    EXPECT_TRUE(
        programs.AddEntry(program->Copy() ? new ExternalProgramValueTableEntry(*program) : nullptr))
        << "two may be called alike";
    programs.Save();
    EXPECT_EQ(1u, RawKey("Tools\\Programs").NumberOf(L"Table Version"));
    ExternalProgramValueTable unnamed("Tools");
    EXPECT_EQ(0, unnamed.size());
    unnamed.SetValueName("Programs");
    unnamed.LoadRegistry("Tools");
    EXPECT_EQ(2, unnamed.size());
    // The constructor loads under the empty name: rows directly in the section.
    const ExternalProgramValueTable direct("Tools\\Programs");
    ASSERT_EQ(2, direct.size());
    EXPECT_EQ(kSet, direct[1]->ToString());
}

TEST(ExternalProgramTable, PassesOverRowsOfOtherClasses) {
    const ExternalProgramValueTable programs("Tools");
    EXPECT_EQ(nullptr, programs.EntryFactory("class MediaLocationValueTableEntry"));
    EXPECT_EQ(nullptr, programs.EntryFactory("class externalProgramValueTableEntry"));
    RawKey("Tools\\00000000").Set(L"ValueTableEntry Class", L"class MediaLocationValueTableEntry");
    RawKey("Tools\\00000001")
        .Set(L"ValueTableEntry Class", L"class ExternalProgramValueTableEntry");
    EXPECT_EQ(1, ExternalProgramValueTable("Tools").size());
}

TEST(ExternalProgramTable, TakesPlaceAndProgramsInAnAssignment) {
    ExternalProgramValueTable source("From"), target("To");
    source.SetValueName("Programs");
    target.SetValueName("Programs");
    source.AddEntry(new ExternalProgramValueTableEntry);
    target = source;
    EXPECT_EQ(1, target.size());
    target.Save();
    EXPECT_TRUE(RawKey::Exists("From\\Programs\\00000000"));
    EXPECT_FALSE(RawKey::Exists("To"));
    KB_DeleteSectionA("From");
    const ExternalProgramValueTable copy(source);
    copy.Save();
    EXPECT_TRUE(RawKey::Exists("From\\Programs\\00000000"));
}

TEST(ExternalProgramTable, HandsOutItsReplaceableParameters) {
    ExternalProgramValueTable programs("Tools");
    Text token = "token", first = "first", second = "second";
    EXPECT_FALSE(programs.GetReplaceableParam(0, token, first, second));
    EXPECT_EQ("token", token);
    EXPECT_EQ("first", first);
    EXPECT_EQ("second", second);
    programs.AddReplaceableParam("%f", "file", "the file");
    programs.AddReplaceableParam(nullptr, "x", "y");
    EXPECT_EQ(2u, programs.GetReplaceableParamCount());
    EXPECT_TRUE(programs.GetReplaceableParam(0, token, first, second));
    EXPECT_EQ("%f", token);
    EXPECT_EQ("file", first);
    EXPECT_EQ("the file", second);
    EXPECT_TRUE(programs.GetReplaceableParam(1, token, first, second));
    EXPECT_EQ("", token) << "of a null token";
    EXPECT_FALSE(programs.GetReplaceableParam(2, token, first, second));

    ExternalProgramValueTable target("Tools");
    target.AddReplaceableParam("%t", "time", "the time");
    target = programs;
    EXPECT_EQ(1u, target.GetReplaceableParamCount()) << "an assignment leaves them";
    EXPECT_EQ(0u, ExternalProgramValueTable(programs).GetReplaceableParamCount());
    programs.ResetReplaceableParams();
    EXPECT_EQ(0u, programs.GetReplaceableParamCount());
}

}  // namespace
