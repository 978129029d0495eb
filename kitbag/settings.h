// Settings in modern C++: a layer of headers over the library's values, for programs. Each setting
// is declared in one line that the compiler checks, and is a Value: settings screens, visitors,
// levels, restart flags, tables and lists work on it as on every other one, and programs without
// the layer read and write the same registry.
//
//     #include <kitbag/settings.h>
//
//     enum class Deinterlace { Off, Bob, Adaptive };
//
//     struct Channel : kitbag::Row<Channel> {
//         kitbag::Setting<TStringValue> name{*this, "Name", "", kitbag::identifies};
//         kitbag::Setting<UInt32Value> frequency{*this, "Frequency", 506000};
//     };
//
//     struct Audio : kitbag::Section<Audio> {
//         using Section::Section;
//         kitbag::Setting<BooleanValue> mute{*this, "Mute", false, {.words =
//         kitbag::Words::YesNo}};
//     };
//
//     struct Player : kitbag::Section<Player> {
//         using Section::Section;
//         kitbag::Setting<UInt32Value> volume{
//             *this, "Volume", 70, {.range = {0, 100}, .text = "Loudness in per cent"}};
//         kitbag::Setting<BooleanValue> passthrough{
//             *this, "Dolby passthrough", false, {.level = 1, .restart = true}};
//         kitbag::Choice<Deinterlace> deinterlace{*this, "Deinterlace", Deinterlace::Adaptive,
//                                                 {{Deinterlace::Off, "Off"},
//                                                  {Deinterlace::Bob, "Bob"},
//                                                  {Deinterlace::Adaptive, "Adaptive"}}};
//         kitbag::Setting<kitbag::WideTextValue> title{*this, "Title", L"日本語"};
//         kitbag::Table<Channel> channels{*this, "Channels"};
//         kitbag::List<TStringValue> recent{*this, "Recent files"};
//         Audio audio{*this, "Audio"};          // the section Player\Audio
//     };
//
//     int main() {
//         Player player("Player");              // its section in the registry
//         if (player.volume > 50)               // read on first use, else the default
//             player.volume = 50;               // written at once
//         for (Channel& channel : player.channels) channel.frequency = channel.frequency + 8000;
//         player.recent.push_front("C:\\Recordings\\news.mpg");
//
//         auto edited = player.Edit();          // a working copy for a dialog
//         edited->passthrough = true;
//         player = *edited;                     // writes what differs
//         if (player.RestartNeeded()) AskForRestart();
//         player.volume.Reset();                // the default again
//
//         const auto brightness = kitbag::Get("Video", "Brightness", 128ul);
//         const auto device = kitbag::Find<std::wstring>(L"Audio", L"Output device");
//         Open(device.value_or(L"Speakers"));   // device.error() says why there is none
//
//         kitbag::SettingsWatch watch("Player", [] { NoteThatSettingsChanged(); });
//         Play(player);
//     }
//
// A section, as every value, is used from one thread at a time. Nothing here reports that the
// registry refuses a change: the setting then holds what the program set, as every value does.
#pragma once

#include <kitbag/settings/choice.h>
#include <kitbag/settings/find.h>
#include <kitbag/settings/list.h>
#include <kitbag/settings/row.h>
#include <kitbag/settings/section.h>
#include <kitbag/settings/setting.h>
#include <kitbag/settings/settings_watch.h>
#include <kitbag/settings/table.h>
#include <kitbag/settings/wide_text_value.h>
#include <kitbag/values/boolean_value.h>
#include <kitbag/values/byte_array_value.h>
#include <kitbag/values/filename_value.h>
#include <kitbag/values/guid_value.h>
#include <kitbag/values/number_values.h>
#include <kitbag/values/text_values.h>
#include <kitbag/values/user_interface_level.h>
#include <kitbag/values/value_casts.h>
