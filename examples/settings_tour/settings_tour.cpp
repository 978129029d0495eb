// A tour of the settings functions: writes a media centre's configuration, reads it, changes it,
// lists it and cleans it up.
//
// Everything happens in a section of the tour's own, which is gone at the end: it can be run where
// the application is installed.

#include <kitbag/kitbag.h>
#include <oleauto.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr char kTour[] = "Settings tour";
constexpr char kAudio[] = "Settings tour\\Audio";
constexpr char kChannels[] = "Settings tour\\Channels";
constexpr char kRecording[] = "Settings tour\\Recording";
constexpr char kRemoteControl[] = "Settings tour\\Remote control";
constexpr char kScreen[] = "Settings tour\\Screen";

std::wstring FromAnsi(const std::string& text) {
    const int bytes = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(
        ::MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, wide.data(), bytes)));
    return wide;
}

std::string ForConsole(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    std::string utf8(3 * text.size(), '\0');
    utf8.resize(static_cast<std::size_t>(
        ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(),
                              static_cast<int>(utf8.size()), nullptr, nullptr)));
    return utf8;
}

std::wstring Wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

void Heading(const char* text) { std::printf("\n== %s\n", text); }

void Show(const char* what, const std::string& value) {
    std::printf("   %-28s %s\n", what, value.c_str());
}

void WriteChannel(const char* key, const wchar_t* name, DWORD kilohertz, bool isHidden) {
    const std::string section = std::string(kChannels) + '\\' + key;
    KB_SetTStringW(Wide(section).c_str(), L"Name", name);
    KB_SetDWORDA(section.c_str(), "Frequency", kilohertz);
    KB_SetBoolA(section.c_str(), "Hidden", isHidden);
}

/// The tour's section, with the settings that the tour begins with; it goes when the tour ends.
class TourSection {
 public:
    TourSection() {
        // Of a tour that was interrupted.
        KB_DeleteSectionA(kTour);
        KB_SetDWORDA(kAudio, "Volume", 70);
        KB_SetBoolA(kAudio, "Dolby passthrough", true);
        KB_SetStringA(kAudio, "Output device", "Speakers (USB DAC)");
        KB_SetTStringW(Wide(kAudio).c_str(), L"Preferred language", L"Français");
        KB_SetTStringW(Wide(kAudio).c_str(), L"Second language", L"日本語");
        KB_SetIntA(kScreen, "Overscan right", -4);
        KB_SetStringA(kRecording, "Folder", "D:\\Recordings");
        KB_SetBoolA(kRecording, "Delete watched", false);
        const BYTE keys[] = {0x1b, 0, 0x26, 1, 0x28, 2, 0x0d, 5};
        KB_SetDataA(kRemoteControl, "Key map", sizeof keys, keys);
        WriteChannel("0001", L"Das Erste", 506'000, false);
        WriteChannel("0002", L"TV5 Monde Québec", 11'567'000, false);
        WriteChannel("0003", L"Первый канал", 12'322'000, true);
    }
    ~TourSection() { KB_DeleteSectionA(kTour); }
    TourSection(const TourSection&) = delete;
    TourSection& operator=(const TourSection&) = delete;
};

void ReadTypedValues() {
    Heading("Typed values, with a default where nothing is stored");
    DWORD volume = 50;
    KB_GetDWORDA(kAudio, "Volume", &volume);
    Show("volume", std::to_string(volume));
    int overscan = 0;
    KB_GetIntA(kScreen, "Overscan right", &overscan);
    Show("overscan right (signed)", std::to_string(overscan));
    bool passthrough = false;
    KB_GetBoolA(kAudio, "Dolby passthrough", &passthrough);
    Show("Dolby passthrough", passthrough ? "yes" : "no");
    TWinString<char> folder("C:\\Recordings");
    KB_GetTStringA(kRecording, "Folder", folder);
    Show("recording folder", folder);
    TWinString<char> subtitles("off");
    const bool stored = KB_GetTStringA(kScreen, "Subtitles", subtitles);
    Show("subtitles", subtitles + (stored ? "" : "  (nothing stored, default kept)"));
    DWORD number = 0;
    Show("\"Output device\" as a number",
         KB_GetDWORDA(kAudio, "Output device", &number) ? std::to_string(number) : "refused");
}

void ReadBlocks() {
    Heading("Blocks of data");
    DWORD size = 0;
    KB_GetDataSizeA(kRemoteControl, "Key map", &size);
    std::vector<BYTE> keys(size);
    KB_GetDataA(kRemoteControl, "Key map", size, keys.data(), nullptr);
    TWinString<char> pair;
    for (std::size_t i = 0; i + 1 < keys.size(); i += 2) {
        pair.Format("0x%02x does command %d", keys[i], keys[i + 1]);
        Show(i == 0 ? "remote control key" : "", pair);
    }
}

void ReadBothTextForms() {
    Heading("The same text in both forms: the 8-bit one knows the ANSI code page only");
    for (const char* name : {"Preferred language", "Second language"}) {
        TWinString<char> narrow;
        std::wstring wide;
        KB_GetTStringA(kAudio, name, narrow);
        KB_GetTStringW(Wide(kAudio).c_str(), Wide(name).c_str(), wide);
        Show(name, ForConsole(FromAnsi(narrow)) + "  |  " + ForConsole(wide));
    }
}

void ListChannels() {
    Heading("Channels: the enumeration's results are sections themselves");
    TWinString<char> channel;
    for (DWORD i = 0; KB_EnumKeyTStringA(kChannels, i, channel); ++i) {
        BSTR name = ::SysAllocString(L"");
        BSTR placeholder = name;
        KB_GetBSTRW(Wide(channel).c_str(), L"Name", &name);
        DWORD kilohertz = 0;
        KB_GetDWORDA(channel.c_str(), "Frequency", &kilohertz);
        bool hidden = false;
        KB_GetBoolA(channel.c_str(), "Hidden", &hidden);
        TWinString<char> line;
        line.Format("%6lu.%03lu MHz  %s%s", kilohertz / 1000, kilohertz % 1000,
                    ForConsole(name).c_str(), hidden ? "  (hidden)" : "");
        Show(channel.c_str(), line);
        // Reading leaves the old text with its owner.
        if (name != placeholder) ::SysFreeString(placeholder);
        ::SysFreeString(name);
    }
}

void ListValues(const char* section) {
    std::printf("   [%s] %d keys, %d values:", section, KB_GetKeyCountA(section),
                KB_GetValueCountA(section));
    TWinString<char> name;
    for (DWORD i = 0; KB_EnumValueTStringA(section, i, name); ++i)
        std::printf("%s %s", i == 0 ? "" : ",", name.c_str());
    std::printf("\n");
}

void ChangeValues() {
    Heading("Changes, in sections that exist and in new ones");
    constexpr char kWeather[] = "Settings tour\\Plug-ins\\Weather\\Display";
    KB_SetDWORDA(kAudio, "Volume", 55);
    KB_SetBoolA(kAudio, "Mute", true);
    KB_SetTStringW(Wide(kAudio).c_str(), L"Second language", L"Ελληνικά");
    KB_SetStringA(kRecording, "Folder", "E:\\Aufnahmen");
    const BYTE map[] = {0x20, 0x09};
    KB_SetDataA(kRemoteControl, "Key map", sizeof map, map);
    KB_SetIntA(kWeather, "Position", -1);
    for (const char* section : {kAudio, kRecording, kWeather}) ListValues(section);
}

void CleanUp() {
    Heading("Deletions");
    Show("value \"Delete watched\"",
         KB_DeleteValueA(kRecording, "Delete watched") ? "deleted" : "not there");
    Show("the same once more",
         KB_DeleteValueA(kRecording, "Delete watched") ? "deleted" : "not there");
    Show("channel 0003", KB_DeleteKeyA(kChannels, "0003") ? "deleted" : "not there");
    Show("section \"Plug-ins\"",
         KB_DeleteKeyA(kTour, "Plug-ins") ? "deleted with its keys" : "not there");
    Show("no name at all", KB_DeleteKeyA(kTour, "") ? "deleted!" : "refused");
}

void ShowEverything() {
    Heading("What is stored now");
    TWinString<char> dump;
    KB_DumpRegistryA(kTour, dump);
    std::printf("%s", ForConsole(FromAnsi(dump)).c_str());
}

}  // namespace

int main() {
    const TourSection section;
    DWORD volume = 0;
    if (!KB_GetDWORDA(kAudio, "Volume", &volume)) {
        std::printf("The settings cannot be written; run the tour as an administrator.\n");
        return 1;
    }
    ReadTypedValues();
    ReadBlocks();
    ReadBothTextForms();
    ListChannels();
    ChangeValues();
    CleanUp();
    ShowEverything();
    return 0;
}
