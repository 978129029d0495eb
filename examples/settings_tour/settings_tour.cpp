// A tour of the settings functions: reads a media centre's configuration that another tool wrote,
// changes it, lists it, cleans it up and shows the result.
//
// Import examples/data/vidmoor.reg first (scripts/demo does).

#include <kitbag/kitbag.h>
#include <oleauto.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

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

void ReadTypedValues() {
    Heading("Typed values, with a default where nothing is stored");
    DWORD volume = 50;
    KB_GetDWORDA("Audio", "Volume", &volume);
    Show("volume", std::to_string(volume));
    int overscan = 0;
    KB_GetIntA("Screen", "Overscan right", &overscan);
    Show("overscan right (signed)", std::to_string(overscan));
    bool passthrough = false;
    KB_GetBoolA("Audio", "Dolby passthrough", &passthrough);
    Show("Dolby passthrough", passthrough ? "yes" : "no");
    TWinString<char> folder("C:\\Recordings");
    KB_GetTStringA("Recording", "Folder", folder);
    Show("recording folder", folder);
    TWinString<char> subtitles("off");
    const bool stored = KB_GetTStringA("Video", "Subtitles", subtitles);
    Show("subtitles", subtitles + (stored ? "" : "  (nothing stored, default kept)"));
    DWORD number = 0;
    Show("\"Output device\" as a number",
         KB_GetDWORDA("Audio", "Output device", &number) ? std::to_string(number) : "refused");
}

void ReadBlocks() {
    Heading("Blocks of data");
    DWORD size = 0;
    KB_GetDataSizeA("Remote control", "Key map", &size);
    std::vector<BYTE> keys(size);
    KB_GetDataA("Remote control", "Key map", size, keys.data(), nullptr);
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
        KB_GetTStringA("Audio", name, narrow);
        KB_GetTStringW(L"Audio", Wide(name).c_str(), wide);
        Show(name, ForConsole(FromAnsi(narrow)) + "  |  " + ForConsole(wide));
    }
}

void ListChannels() {
    Heading("Channels: the enumeration's results are sections themselves");
    TWinString<char> channel;
    for (DWORD i = 0; KB_EnumKeyTStringA("Channels", i, channel); ++i) {
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
    KB_SetDWORDA("Audio", "Volume", 55);
    KB_SetBoolA("Audio", "Mute", true);
    KB_SetTStringW(L"Audio", L"Second language", L"Ελληνικά");
    KB_SetStringA("Recording", "Folder", "E:\\Aufnahmen");
    const BYTE map[] = {0x20, 0x09};
    KB_SetDataA("Remote control", "Key map", sizeof map, map);
    KB_SetIntA("Plug-ins\\Weather\\Display", "Position", -1);
    for (const char* section : {"Audio", "Recording", "Plug-ins\\Weather\\Display"})
        ListValues(section);
}

void CleanUp() {
    Heading("Deletions");
    Show("value \"Delete watched\"",
         KB_DeleteValueA("Recording", "Delete watched") ? "deleted" : "not there");
    Show("the same once more",
         KB_DeleteValueA("Recording", "Delete watched") ? "deleted" : "not there");
    Show("channel 0003", KB_DeleteKeyA("Channels", "0003") ? "deleted" : "not there");
    Show("section \"Obsolete\"", KB_DeleteSectionA("Obsolete") ? "deleted with its keys" : "?");
    Show("all settings at once", KB_DeleteSectionA("") ? "deleted!" : "refused");
}

void ShowEverything() {
    Heading("What is stored now");
    TWinString<char> dump;
    KB_DumpRegistryA("", dump);
    std::printf("%s", ForConsole(FromAnsi(dump)).c_str());
}

}  // namespace

int main() {
    TWinString<char> author;
    if (!KB_GetTStringA("", "Configured by", author)) {
        std::printf("No settings found; import vidmoor.reg first.\n");
        return 1;
    }
    std::printf("Settings written by %s\n", author.c_str());
    ReadTypedValues();
    ReadBlocks();
    ReadBothTextForms();
    ListChannels();
    ChangeValues();
    CleanUp();
    ShowEverything();
    return 0;
}
