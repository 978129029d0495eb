#include <kitbag/values/element_trees.h>
#include <kitbag/values/external_program_table.h>

#include <utility>

ExternalProgramValueTableEntry::ExternalProgramValueTableEntry() {
    UserExperienceLevel.SetDefaultValue(2);
    RunInBackground.SetDefaultValue(true);
    NotifyWhenFinished.SetDefaultValue(true);
    ExternalProgramValueTableEntry::DeclareValues();
}

ExternalProgramValueTableEntry::ExternalProgramValueTableEntry(
    const ExternalProgramValueTableEntry& other)
    : ValueTableEntry(other),
      DisplayName(other.DisplayName),
      Description(other.Description),
      Executable(other.Executable),
      Arguments(other.Arguments),
      UserExperienceLevel(other.UserExperienceLevel),
      RunInBackground(other.RunInBackground),
      WaitForFinish(other.WaitForFinish),
      NotifyWhenFinished(other.NotifyWhenFinished),
      marked_(other.marked_) {
    ExternalProgramValueTableEntry::DeclareValues();
}

ExternalProgramValueTableEntry& ExternalProgramValueTableEntry::operator=(
    const ValueTableEntry& other) {
    return kitbag::AssignRow(*this, other);
}

Value* ExternalProgramValueTableEntry::Copy() const {
    return new ExternalProgramValueTableEntry(*this);
}

void ExternalProgramValueTableEntry::DeclareValues() {
    DeclareValue(DisplayName, "Display Name", true);
    DeclareValue(Description, "Description", true);
    DeclareValue(Executable, "Executable", false);
    DeclareValue(Arguments, "Arguments", false);
    DeclareValue(UserExperienceLevel, "User Experience Level", false);
    DeclareValue(RunInBackground, "Run in background", false);
    DeclareValue(WaitForFinish, "Wait for program to finish", false);
    DeclareValue(NotifyWhenFinished, "Notify user when program has finished", false);
}

void ExternalProgramValueTableEntry::Accept(CValueVisitor& visitor) const { visitor.Visit(*this); }

ExternalProgramValueTable::ExternalProgramValueTable(const TWinString<char>& section)
    : section_(section) {
    ValueTable::LoadRegistry(section);
    loaded_ = true;
}

ExternalProgramValueTable::ExternalProgramValueTable(const ExternalProgramValueTable& other)
    : ValueTable(other), loaded_(other.loaded_), section_(other.section_) {}

ExternalProgramValueTable& ExternalProgramValueTable::operator=(
    const ExternalProgramValueTable& other) {
    // Before the rows, in one of which the other may lie.
    auto section = other.section_;
    loaded_ = other.loaded_;
    ValueTable::operator=(other);
    section_.swap(section);
    return *this;
}

Value* ExternalProgramValueTable::Copy() const { return new ExternalProgramValueTable(*this); }

ValueTableEntry* ExternalProgramValueTable::EntryFactory(const TWinString<char>& className) const {
    return className == "class ExternalProgramValueTableEntry" ? new ExternalProgramValueTableEntry
                                                               : nullptr;
}

void ExternalProgramValueTable::Save() const { SaveRegistry(section_); }

void ExternalProgramValueTable::AddReplaceableParam(const char* token,
                                                    const TWinString<char>& first,
                                                    const TWinString<char>& second) {
    replaceableParams_.push_back({token, first, second});
}

unsigned long ExternalProgramValueTable::GetReplaceableParamCount() const {
    return static_cast<unsigned long>(replaceableParams_.size());
}

bool ExternalProgramValueTable::GetReplaceableParam(unsigned long index, TWinString<char>& token,
                                                    TWinString<char>& first,
                                                    TWinString<char>& second) const {
    if (index >= replaceableParams_.size()) return false;
    const ReplaceableParam& param = replaceableParams_[index];
    token = param.token ? param.token : "";
    first = param.first;
    second = param.second;
    return true;
}

void ExternalProgramValueTable::ResetReplaceableParams() { replaceableParams_.clear(); }
