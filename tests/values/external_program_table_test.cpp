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
    ExternalProgramValueTableEntry program, through;
    EXPECT_EQ(kNew, program.ToString());
    Set(program);
    const ExternalProgramValueTableEntry copy(program);
    EXPECT_EQ(kSet, copy.ToString());
    EXPECT_EQ("Display Name='Editor'|Description='Edits'", copy.GetIdent().GetValue());
    EXPECT_EQ(&copy.Executable, copy.GetValue("Executable")) << "a copy declares its own members";
    static_cast<ValueTableEntry&>(through) = program;
    static_cast<ValueTableEntry&>(through) = MediaLocationValueTableEntry();
    EXPECT_EQ(kSet, through.ToString()) << "a row of another class changes nothing";
}

TEST(ExternalProgramTable, KeepsProgramsUnderTheNameThatItWasGiven) {
    ExternalProgramValueTable programs("Tools");
    programs.SetValueName("Programs");
    auto* program = new ExternalProgramValueTableEntry;
    Set(*program);
    programs.AddEntry(program);
    EXPECT_TRUE(programs.AddEntry(new ExternalProgramValueTableEntry(*program)))
        << "two may be called alike";
    programs.Save();
    EXPECT_EQ(1u, RawKey("Tools\\Programs").NumberOf(L"Table Version"));
    RawKey("Tools\\Programs\\00000002")
        .Set(L"ValueTableEntry Class", L"class MediaLocationValueTableEntry");
    ExternalProgramValueTable unnamed("Tools");
    EXPECT_EQ(0, unnamed.size());
    unnamed.SetValueName("Programs");
    unnamed.LoadRegistry("Tools");
    EXPECT_EQ(2, unnamed.size()) << "without the row of another class";
    // The constructor loads under the empty name: rows directly in the section.
    const ExternalProgramValueTable direct("Tools\\Programs");
    ASSERT_EQ(2, direct.size());
    EXPECT_EQ(kSet, direct[1]->ToString());
    EXPECT_EQ(nullptr, direct.EntryFactory("class externalProgramValueTableEntry"));
}

TEST(ExternalProgramTable, TakesPlaceAndProgramsInAnAssignment) {
    ExternalProgramValueTable source("From"), target("To");
    source.SetValueName("Programs");
    target.SetValueName("Programs");
    source.AddEntry(new ExternalProgramValueTableEntry);
    target = source;
    for (const auto& taken : {target, ExternalProgramValueTable(source)}) {
        KB_DeleteSectionA("From");
        taken.Save();
        EXPECT_TRUE(RawKey::Exists("From\\Programs\\00000000"));
    }
    EXPECT_FALSE(RawKey::Exists("To"));
}

TEST(ExternalProgramTable, HandsOutItsReplaceableParameters) {
    ExternalProgramValueTable programs("Tools"), target("Tools");
    programs.AddReplaceableParam("%f", "file", "the file");
    programs.AddReplaceableParam(nullptr, "x", "y");
    EXPECT_EQ(2u, programs.GetReplaceableParamCount());
    const struct {
        unsigned long index;
        bool found;
        const char *token, *first, *second;
    } rows[] = {{0, true, "%f", "file", "the file"},
                {1, true, "", "x", "y"},
                {2, false, "old", "old", "old"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.index);
        Text token = "old", first = "old", second = "old";
        EXPECT_EQ(row.found, programs.GetReplaceableParam(row.index, token, first, second));
        EXPECT_EQ(row.token, token);
        EXPECT_EQ(row.first, first);
        EXPECT_EQ(row.second, second);
    }
    target.AddReplaceableParam("%t", "time", "the time");
    target = programs;
    EXPECT_EQ(1u, target.GetReplaceableParamCount()) << "an assignment leaves them";
    EXPECT_EQ(0u, ExternalProgramValueTable(programs).GetReplaceableParamCount());
    programs.ResetReplaceableParams();
    EXPECT_EQ(0u, programs.GetReplaceableParamCount());
}

}  // namespace
