// Media setup: a component of an application that declares its settings, loads them, shows them to
// users of every level, changes them and saves them.

#include <kitbag/kitbag.h>

#include <cstdio>
#include <memory>

namespace {

constexpr char kSettings[] = "Media setup\\Recording";
constexpr char kPrograms[] = "Media setup";

/// A number whose values have names.
class Quality : public UInt32Enum {
 public:
    Quality() { Quality::InitialiseElements(); }
    using UInt32Enum::operator=;
    void InitialiseElements() override {
        AddElement(0, "Long play");
        AddElement(1, "Standard");
        AddElement(2, "High");
    }
};

/// The settings of one screen, saved and shown as one value.
class RecordingSettings : public ValueCollection {
 public:
    RecordingSettings() {
        RecordingSettings::DeclareValues();
        quality.SetDefaultValue(1);
        folder.SetDefaultValue("C:\\Recordings");
        folder.SetIsDirectory(true);
        bufferSeconds.SetDefaultValue(30);

        // The smaller the level, the more detailed the view.
        quality.SetMinimumUserInterfaceLevel(Value::ValueAction{3});
        folder.SetMinimumUserInterfaceLevel(Value::ValueAction{2});
        bufferSeconds.SetMinimumUserInterfaceLevel(Value::ValueAction{1});
        bufferSeconds.SetValueAction(Value::RestartNeededAction);
        traceDriver.SetMinimumUserInterfaceLevel(Value::ValueAction{3});
        traceDriver.SetValueAction(Value::HiddenAction);
        traceDriver.Type(1);
    }
    using ValueCollection::operator=;
    void DeclareValues() override {
        DeclareValue(quality, "Quality");
        DeclareValue(folder, "Folder");
        DeclareValue(bufferSeconds, "Buffer in seconds");
        DeclareValue(traceDriver, "Trace the driver");
    }

    Quality quality;
    FilenameValue folder;
    UInt32Value bufferSeconds;
    BooleanValue traceDriver;
};

/// Explains the settings; the values ask it.
class Help : public ValueInfoSource {
 public:
    bool GetDisplayName(const Value&, TWinString<char>&) override { return false; }
    bool GetDescription(const Value& value, TWinString<char>& text) override {
        if (value.GetValueName() != "Buffer in seconds") return false;
        text = "How far live television can be rewound";
        return true;
    }
    bool GetHelpFile(const Value&, TWinString<char>&) override { return false; }
};

/// For a user of any level; KB_UILevelShowValue answers for the level of this one.
bool IsShown(const Value& value, int level) {
    if (level == 0) return true;
    return !value.HasValueAction(Value::HiddenAction) &&
           KB_CompareUserInterfaceLevels(value.GetMinimumUserInterfaceLevel(), level);
}

TWinString<char> TextOf(const Value& value) {
    const UInt32Enum* named = KB_GetAsUInt32Enum(&value);
    return named ? named->ToString() : value.SaveStringDataOnly();
}

void ShowScreen(const RecordingSettings& settings, int level) {
    std::printf("\nSettings for users of level %d%s\n", level,
                level == KB_GetUserInterfaceLevel() ? " (this user)" : "");
    for (int i = 0; i < settings.size(); ++i) {
        const Value& value = *settings[i];
        if (!IsShown(value, level)) {
            std::printf("  %-18s (hidden)\n", value.GetDisplayName().c_str());
            continue;
        }
        const bool restarts = value.HasValueAction(Value::RestartNeededAction);
        std::printf("  %-18s %-18s%s %s\n", value.GetDisplayName().c_str(), TextOf(value).c_str(),
                    restarts ? " [after a restart]" : "", value.GetDescription().c_str());
    }
}

/// What an options dialog does: the user edits a working copy, which is then assigned.
void Edit(RecordingSettings& settings) {
    UInt32Value edited = settings.bufferSeconds;
    edited.SetValue(120);
    settings.bufferSeconds = edited;
    std::printf("\nBuffer changed to %lu seconds; restart needed: %s\n",
                settings.bufferSeconds.GetValue(), settings.RestartNeeded() ? "yes" : "no");
}

void AddProgram(ValueTable& programs, const char* name, const char* executable) {
    auto program = std::make_unique<ExternalProgramValueTableEntry>();
    program->DisplayName.SetValue(name);
    program->Executable.SetValue(executable);
    // The table takes two programs of one name; this component does not want them.
    if (programs.FindEntry(program->GetIdent())) return;
    if (programs.AddEntry(program.get())) static_cast<void>(program.release());
}

void ShowPrograms(const char* heading, const ValueTable& programs) {
    std::printf("\n%s\n", heading);
    for (int i = 0; i < programs.size(); ++i)
        if (const auto* program = KB_GetAsExternalProgramValueTableEntry(programs[i]))
            std::printf("  %d. %-12s %s\n", i + 1, program->DisplayName.GetValue().c_str(),
                        program->Executable.GetFilename().c_str());
}

void ShowFolders(const ValueTable& folders) {
    std::printf("\nFolders that music is read from\n");
    for (int i = 0; i < folders.size(); ++i)
        if (const auto* folder = KB_GetAsMediaLocationValueTableEntry(folders[i]))
            std::printf("  %s%s\n", folder->Directory.GetValue().c_str(),
                        folder->AllDrives ? " (on every drive)" : "");
}

}  // namespace

int main() {
    Help help;
    RecordingSettings settings;
    settings.bufferSeconds.SetValueInfoSource(&help);
    settings.LoadRegistry(kSettings);
    for (int level = 3; level >= 0; --level) ShowScreen(settings, level);
    Edit(settings);
    settings.SaveRegistry(kSettings);

    ExternalProgramValueTable programs(kPrograms);
    programs.SetValueName("Programs");
    programs.LoadRegistry(kPrograms);
    AddProgram(programs, "Tag editor", "C:\\Tools\\tags.exe");
    AddProgram(programs, "Burner", "C:\\Tools\\burn.exe");
    AddProgram(programs, "Cutter", "C:\\Tools\\cut.exe");
    ShowPrograms("External programs", programs);
    programs.MoveEntry(2, 0);
    ShowPrograms("The third one moved to the front", programs);
    programs.Sort("Display Name");
    ShowPrograms("Sorted by name", programs);
    programs.Save();

    MediaLocationValueTable folders(MediaLocationValueTable::AudioRead);
    ShowFolders(folders);

    TWinString<char> dump;
    KB_DumpRegistryA(kPrograms, dump);
    std::printf("\n%s", dump.c_str());
}
