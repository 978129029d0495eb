// The settings of a program that uses the layer, in as many kinds as there are.
#pragma once

#include <kitbag/settings.h>

enum class Deinterlace { Off, Bob = 5, Adaptive };

/// In no namespace, as the names of rows' classes are stored.
struct Channel : kitbag::Row<Channel> {
    kitbag::Setting<TStringValue> name{*this, "Name", "", kitbag::identifies};
    kitbag::Setting<UInt32Value> frequency{*this, "Frequency", 506000, {.restart = true}};
    kitbag::List<UInt32Value> streams{*this, "Streams"};
};

struct Audio : kitbag::Section<Audio> {
    using Section::Section;
    kitbag::Setting<Int32Value> balance{*this, "Balance", -3, {.range = {-10, 10}}};
};

struct Player : kitbag::Section<Player> {
    using Section::Section;
    kitbag::Setting<UInt32Value> volume{*this,
                                        "Volume",
                                        70,
                                        {.level = 2,
                                         .range = {5, 100},
                                         .label = "Loudness",
                                         .text = "In per cent",
                                         .help = "audio.chm"}};
    kitbag::Setting<BooleanValue> passthrough{
        *this, "Passthrough", false, {.level = 1, .words = kitbag::Words::YesNo, .restart = true}};
    kitbag::Setting<GuidValue> output{*this, "Output", GUID{1, 2, 3, {4}}};
    kitbag::Setting<ByteArrayValue> key{*this, "Key", {1, 2}};
    kitbag::Setting<TStringValue> skin{*this, "Skin", "Midnight"};
    kitbag::Setting<kitbag::WideTextValue> title{*this, "Title", L"日本語"};
    kitbag::Setting<FilenameValue> folder{
        *this, "Folder", "C:\\Music", {.directory = true, .filter = "*.mp3"}};
    kitbag::Choice<Deinterlace> deinterlace{
        *this,
        "Deinterlace",
        Deinterlace::Adaptive,
        {{Deinterlace::Off, "Off"}, {Deinterlace::Adaptive, "Adaptive"}},
        {.reboot = true, .hidden = true}};
    Audio audio{*this, "Audio", {.text = "What is heard"}};
    kitbag::Table<Channel> channels{*this, "Channels", {.restart = true}};
    kitbag::List<TStringValue> recent{*this, "Recent files"};
};
