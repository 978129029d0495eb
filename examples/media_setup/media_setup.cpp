// Media setup: a component of an application that declares its settings, shows them to users of
// every level, changes them in a working copy and keeps a table of programs.

#include <kitbag/kitbag.h>
#include <kitbag/settings.h>

#include <cstdio>

enum class Quality { LongPlay, Standard, High };

// The smaller the level, the more detailed the view that shows a setting.
struct Recording : kitbag::Section<Recording> {
    using Section::Section;
    kitbag::Choice<Quality> quality{*this,
                                    "Quality",
                                    Quality::Standard,
                                    {{Quality::LongPlay, "Long play"},
                                     {Quality::Standard, "Standard"},
                                     {Quality::High, "High"}}};
    kitbag::Setting<FilenameValue> folder{
        *this, "Folder", "C:\\Recordings", {.level = 2, .directory = true}};
    kitbag::Setting<UInt32Value> bufferSeconds{*this,
                                               "Buffer in seconds",
                                               30,
                                               {.level = 1,
                                                .range = {5, 600},
                                                .restart = true,
                                                .text = "How far live television can be rewound"}};
    kitbag::Setting<BooleanValue> traceDriver{
        *this, "Trace the driver", false, {.words = kitbag::Words::OnOff, .hidden = true}};
};

struct Program : kitbag::Row<Program> {
    kitbag::Setting<TStringValue> name{*this, "Display Name", "", kitbag::identifies};
    kitbag::Setting<FilenameValue> executable{*this, "Executable", ""};
};

struct MediaSetup : kitbag::Section<MediaSetup> {
    using Section::Section;
    Recording recording{*this, "Recording"};
    kitbag::Table<Program> programs{*this, "Programs", {.unique = true}};
};

namespace {

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

void ShowScreen(const ValueCollection& settings, int level) {
    std::printf("\nSettings for users of level %d%s\n", level,
                level == KB_GetUserInterfaceLevel() ? " (this user)" : "");
    for (int i = 0; i < settings.size(); ++i) {
        const Value& value = *settings[i];
        const bool isShown = IsShown(value, level);
        const bool restarts = isShown && value.HasValueAction(Value::RestartNeededAction);
        std::printf("  %-18s %-18s%s %s\n", value.GetDisplayName().c_str(),
                    isShown ? TextOf(value).c_str() : "(hidden)",
                    restarts ? " [after a restart]" : "",
                    isShown ? value.GetDescription().c_str() : "");
    }
}

void ShowPrograms(const char* heading, const kitbag::Table<Program>& programs) {
    std::printf("\n%s\n", heading);
    for (const Program& program : programs)
        std::printf("  %-12s %s\n", program.name.Get().c_str(),
                    program.executable.GetFilename().c_str());
}

void AddProgram(kitbag::Table<Program>& programs, const char* name, const char* executable) {
    Program program;
    program.name = name;
    program.executable = executable;
    programs.push_back(program);
}

}  // namespace

int main() {
    MediaSetup setup("Media setup");
    for (int level = 3; level >= 0; --level) ShowScreen(setup.recording, level);

    const auto edited = setup.Edit();
    edited->recording.bufferSeconds = 120;
    setup = *edited;
    std::printf("\nBuffer changed to %lu seconds; restart needed: %s\n",
                setup.recording.bufferSeconds.Get(), setup.RestartNeeded() ? "yes" : "no");

    AddProgram(setup.programs, "Tag editor", "C:\\Tools\\tags.exe");
    AddProgram(setup.programs, "Burner", "C:\\Tools\\burn.exe");
    AddProgram(setup.programs, "Cutter", "C:\\Tools\\cut.exe");
    ShowPrograms("External programs", setup.programs);
    setup.programs.MoveEntry(2, 0);
    ShowPrograms("The third one moved to the front", setup.programs);
    setup.programs.Sort("Display Name");
    ShowPrograms("Sorted by name", setup.programs);

    TWinString<char> dump;
    KB_DumpRegistryA("Media setup", dump);
    std::printf("\n%s", dump.c_str());
}
