// Lines that must not compile. CTest compiles this file once for each of them, by its macro, and
// looks for what the compiler says; and once without any, which must compile.

#include <kitbag/settings.h>

struct Channel : kitbag::Row<Channel> {
#ifdef A_ROW_MADE_OF_ARGUMENTS
    explicit Channel(const char* newName) { name = newName; }
#endif
    kitbag::Setting<TStringValue> name{*this, "Name", "", kitbag::identifies};
};

struct Audio : kitbag::Section<Audio> {
    using Section::Section;

#if defined A_SETTING_WITH_AN_EMPTY_NAME
    kitbag::Setting<UInt32Value> volume{*this, "", 70};
#elif defined A_SETTING_WITHOUT_A_NAME
    kitbag::Setting<UInt32Value> volume{*this, 70};
#elif defined A_DEFAULT_OF_ANOTHER_TYPE
    kitbag::Setting<UInt32Value> volume{*this, "Volume", "loud"};
#elif defined A_TEXT_AS_TRUTH_VALUE
    kitbag::Setting<BooleanValue> volume{*this, "Volume", "yes"};
#elif defined A_NEGATIVE_DEFAULT
    kitbag::Setting<UInt32Value> volume{*this, "Volume", -1};
#elif defined A_LEVEL_THAT_IS_NONE
    kitbag::Setting<UInt32Value> volume{*this, "Volume", 70, {.level = 4 }};
#elif defined A_TYPE_THAT_IS_NO_VALUE
    kitbag::Setting<int> volume{*this, "Volume", 70};
#elif defined AN_IDENTIFIER_OUTSIDE_A_ROW
    kitbag::Setting<UInt32Value> volume{*this, "Volume", 70, kitbag::identifies};
#else
    kitbag::Setting<UInt32Value> volume{*this, "Volume", 70, {.range = {0, 100}}};
#endif
};

#ifdef A_ROW_OF_A_ROW
struct Radio : Channel {};
#else
using Radio = Channel;
#endif

struct Player : kitbag::Section<Player> {
    using Section::Section;
    Audio audio{*this, "Audio"};
    kitbag::Table<Radio> channels{*this, "Channels"};
};

void Use(Player& player) {
#if defined A_COPIED_SECTION
    Player copy = player;
#elif defined AN_ASSIGNMENT_OF_ANOTHER_TYPE
    player.channels[0].name = 7;
#elif defined AN_ASSIGNMENT_OF_ANOTHER_CLASS
    player.audio.volume = player.channels[0].name;
#elif defined A_READ_OF_ANOTHER_TYPE
    kitbag::Get("Audio", "Volume", 0.7);
#endif
    player.channels[0].name = "Arte";
}
