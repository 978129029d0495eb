// The settings of a media player, as its program declares them. Nothing here knows of a window.
#pragma once

#include <kitbag/settings.h>

enum class Deinterlace { Off, Bob, Adaptive };
enum class Quality { LongPlay, Standard, High };

struct Sound : kitbag::Section<Sound> {
    using Section::Section;
    kitbag::Setting<UInt32Value> volume{
        *this, "Volume", 70, {.range = {0, 100}, .text = "Loudness at the start, in per cent."}};
    kitbag::Setting<BooleanValue> mute{
        *this,
        "Mute",
        false,
        {.label = "Start without sound", .text = "The remote control turns it on."}};
    kitbag::Setting<BooleanValue> passthrough{
        *this,
        "Dolby passthrough",
        false,
        {.level = 2,
         .restart = true,
         .text =
             "Hands the sound to the amplifier as it was broadcast. Volume has no effect then."}};
    kitbag::Setting<Int32Value> delay{
        *this,
        "Delay",
        0,
        {.level = 1,
         .range = {-500, 500},
         .label = "Delay (ms)",
         .text = "Positive where the sound runs ahead of the picture."}};
};

struct Picture : kitbag::Section<Picture> {
    using Section::Section;
    kitbag::Choice<Deinterlace> deinterlace{
        *this,
        "Deinterlace",
        Deinterlace::Adaptive,
        {{Deinterlace::Off, "Off"}, {Deinterlace::Bob, "Bob"}, {Deinterlace::Adaptive, "Adaptive"}},
        {.text = "How the two halves of a television picture become one."}};
    kitbag::Setting<UInt32Value> brightness{
        *this, "Brightness", 128, {.level = 2, .range = {0, 255}}};
    kitbag::Setting<BooleanValue> overlay{
        *this,
        "Overlay",
        true,
        {.level = 1,
         .reboot = true,
         .label = "Use the hardware overlay",
         .text = "The graphics driver reserves its memory when the computer starts."}};
};

struct Channel : kitbag::Row<Channel> {
    kitbag::Setting<TStringValue> name{
        *this, "Name", "", kitbag::identifies, {.text = "As the programme guide calls it."}};
    kitbag::Setting<UInt32Value> frequency{
        *this, "Frequency", 506000, {.range = {47000, 862000}, .label = "Frequency (kHz)"}};
    kitbag::Setting<BooleanValue> locked{*this,
                                         "Locked",
                                         false,
                                         {.words = kitbag::Words::YesNo,
                                          .label = "Locked",
                                          .text = "Asks for the children's code."}};
};

struct Television : kitbag::Section<Television> {
    using Section::Section;
    kitbag::Setting<UInt32Value> rewind{*this,
                                        "Buffer",
                                        30,
                                        {.level = 2,
                                         .range = {5, 600},
                                         .restart = true,
                                         .label = "Rewind (minutes)",
                                         .text = "How far live television can be rewound."}};
    kitbag::Table<Channel> channels{
        *this,
        "Channels",
        {.unique = true, .text = "In the order of the remote control's channel keys."}};
};

struct Recording : kitbag::Section<Recording> {
    using Section::Section;
    kitbag::Setting<FilenameValue> folder{
        *this,
        "Folder",
        "C:\\Recordings",
        {.directory = true, .mustExist = true, .text = "An hour of television takes up to 4 GB."}};
    kitbag::Choice<Quality> quality{*this,
                                    "Quality",
                                    Quality::Standard,
                                    {{Quality::LongPlay, "Long play"},
                                     {Quality::Standard, "Standard"},
                                     {Quality::High, "High"}}};
    kitbag::Setting<FilenameValue> cutter{*this,
                                          "Cutter",
                                          "",
                                          {.level = 2,
                                           .mustExist = true,
                                           .filter = "Programs|*.exe",
                                           .label = "Program that cuts",
                                           .text = "Started with the recording's file name."}};
};

struct Service : kitbag::Section<Service> {
    using Section::Section;
    kitbag::Setting<BooleanValue> trace{
        *this,
        "Trace the driver",
        false,
        {.hidden = true, .text = "Slows the player down; for support."}};
    kitbag::Setting<ByteArrayValue> remoteCode{
        *this,
        "Remote code",
        {0x1F, 0x2E, 0x80, 0x0C},
        {.level = 0, .text = "What the receiver takes for its own remote control."}};
    kitbag::Setting<GuidValue> renderer{
        *this,
        "Renderer",
        GUID{0x70E102B0, 0x5556, 0x11CE, {0x97, 0xC0, 0, 0xAA, 0, 0x55, 0x59, 0x5A}},
        {.level = 0, .restart = true, .text = "Class identifier of the video renderer."}};
};

struct Player : kitbag::Section<Player> {
    using Section::Section;
    kitbag::Setting<kitbag::WideTextValue> title{
        *this,
        "Title",
        L"Living room",
        {.text = "Shown on the start page and to other players in the house."}};
    kitbag::Setting<BooleanValue> resume{
        *this, "Resume", true, {.label = "Continue films where they were left"}};
    kitbag::List<FilenameValue> recent{
        *this, "Recent files", {.text = "Offered on the start page, the first one on top."}};
    Sound sound{*this, "Sound", {.text = "What is heard, and through which cable."}};
    Picture picture{*this, "Picture", {.text = "How films and television are drawn."}};
    Television television{*this, "Television", {.text = "What the tuner receives."}};
    Recording recording{*this, "Recording", {.text = "Where recordings go and how they are made."}};
    Service service{*this, "Service", {.level = 0, .text = "For the people who repair it."}};
};
