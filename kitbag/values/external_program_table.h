// ExternalProgramValueTable: the programs that the user can launch from the application.
//
//     ExternalProgramValueTable programs("External programs");
//     programs.SetValueName("Programs");
//     programs.LoadRegistry("External programs");
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/frame/win_string.h>
#include <kitbag/values/boolean_value.h>
#include <kitbag/values/filename_value.h>
#include <kitbag/values/number_values.h>
#include <kitbag/values/text_values.h>
#include <kitbag/values/value_table.h>

#include <vector>

/// One program. Display name and description identify it.
class KITBAG_API ExternalProgramValueTableEntry : public ValueTableEntry {
 public:
    ExternalProgramValueTableEntry();
    ExternalProgramValueTableEntry(const ExternalProgramValueTableEntry& other);

    ExternalProgramValueTableEntry& operator=(const ExternalProgramValueTableEntry& other) =
        default;
    ExternalProgramValueTableEntry& operator=(const ValueTableEntry& other) override;
    using ValueTableEntry::operator=;

    Value* Copy() const override;
    void DeclareValues() override;
    void Accept(CValueVisitor& visitor) const override;

    TStringValue DisplayName;
    TStringValue Description;
    FilenameValue Executable;
    TStringValue Arguments;
    /// The user interface level at which the program is offered; 2 by default.
    UInt32Value UserExperienceLevel;
    /// True by default.
    BooleanValue RunInBackground;
    BooleanValue WaitForFinish;
    /// True by default.
    BooleanValue NotifyWhenFinished;

 private:
    // Its meaning is the application's; here it only travels with the row.
    bool marked_ = true;
};

/// Does not ask for unique identifiers: two programs may be called alike. Accepts visitors as a
/// ValueTable.
class KITBAG_API ExternalProgramValueTable : public ValueTable {
 public:
    /// Loads at once. The table has no name yet, so this is the tree of the empty name, the section
    /// itself; an owner that names the table loads again. Components that keep their programs
    /// directly in a section rely on the first load. It knows no rows of a derived table's classes:
    /// such a table empties itself and loads again in its own constructor.
    explicit ExternalProgramValueTable(const TWinString<char>& section);
    /// Copies have no replaceable parameters. An assignment takes the programs and the section, and
    /// leaves the target its value name and its replaceable parameters.
    ExternalProgramValueTable(const ExternalProgramValueTable& other);
    ExternalProgramValueTable& operator=(const ExternalProgramValueTable& other);
    using ValueTable::operator=;

    Value* Copy() const override;
    ValueTableEntry* EntryFactory(const TWinString<char>& className) const override;
    /// Saves to the constructor's section, under the table's present name.
    void Save() const;

    /// The texts that the application replaces in a program's arguments. The token is not copied:
    /// it must outlive the table.
    void AddReplaceableParam(const char* token, const TWinString<char>& first,
                             const TWinString<char>& second);
    unsigned long GetReplaceableParamCount() const;
    /// False, and the texts as they were, where there is no such index.
    bool GetReplaceableParam(unsigned long index, TWinString<char>& token, TWinString<char>& first,
                             TWinString<char>& second) const;
    void ResetReplaceableParams();

 private:
    struct ReplaceableParam {
        const char* token;
        TWinString<char> first;
        TWinString<char> second;
    };

    // Written, and copied with the table; only its place in the layout matters.
    bool loaded_ = false;
    TWinString<char> section_;
    std::vector<ReplaceableParam> replaceableParams_;
};
