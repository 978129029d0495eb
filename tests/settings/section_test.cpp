// Sections and their settings, against the registry as the system shows it and against the classes
// and functions that programs without the layer use.

#include <gmock/gmock.h>
#include <kitbag/kitbag.h>
#include <tests/settings/player.h>
#include <tests/support/import_patch.h>
#include <tests/support/private_registry.h>

#include <cstdlib>
#include <tuple>

namespace {

using namespace kitbag::test;
using testing::ElementsAre;
using Text = TWinString<char>;

template <class T>
T As(T value) {
    return value;
}

/// What the settings hold, each taken as the plain type that it converts to.
auto HeldBy(const Player& player) {
    return std::tuple(As<unsigned long>(player.volume), As<bool>(player.passthrough),
                      As<GUID>(player.output).Data1, As<std::vector<unsigned char>>(player.key),
                      As<std::string>(player.skin), As<std::wstring>(player.title),
                      As<std::string>(player.folder), As<Deinterlace>(player.deinterlace),
                      As<long>(player.audio.balance));
}
using Held = decltype(HeldBy({}));

TEST(Section, HoldsTheDefaultsWhereNothingIsStoredAndStoresNone) {
    const Player player("Player");
    EXPECT_EQ(
        Held(70, false, 1, {1, 2}, "Midnight", L"日本語", "C:\\Music", Deinterlace::Adaptive, -3),
        HeldBy(player));
    EXPECT_FALSE(player.title == L"日本誤") << "alike in the code page";
    EXPECT_TRUE(player.folder.IsDirectory());
    EXPECT_TRUE(player.channels.empty());
    EXPECT_TRUE(player.IsDefault());
    EXPECT_FALSE(RawKey::Exists("Player"));
}

TEST(Section, WritesEveryChangeAtOnceAsTheClassesBelowStoreIt) {
    Player player("Player");
    player.volume = 55;
    player.passthrough = true;
    player.output = GUID{0x20400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    player.key = std::vector<unsigned char>{7, 0, 8};
    player.skin = "Dawn";
    player.title = L"Первый";
    player.folder = "D:\\";
    player.deinterlace = Deinterlace::Off;
    player.audio.balance = -7;

    const RawKey key("Player");
    const std::pair<const wchar_t*, DWORD> numbers[] = {
        {L"Volume", 55}, {L"Passthrough", 1}, {L"Folder/Is directory", 1}, {L"Deinterlace", 0}};
    for (const auto& [name, number] : numbers) EXPECT_EQ(number, key.NumberOf(name)) << name;
    const std::pair<const wchar_t*, const wchar_t*> texts[] = {
        {L"Output", L"{00020400-0000-0000-C000-000000000046}"},
        {L"Skin", L"Dawn"},
        {L"Title", L"Первый"},
        {L"Folder", L"D:\\"},
        {L"Folder/filter", L"*.mp3"}};
    for (const auto& [name, text] : texts) EXPECT_EQ(text, key.TextOf(name));
    EXPECT_EQ(static_cast<DWORD>(-7), RawKey("Player\\Audio").NumberOf(L"Balance"));
    EXPECT_EQ(Held(55, true, 0x20400, {7, 0, 8}, "Dawn", L"Первый", "D:\\", Deinterlace::Off, -7),
              HeldBy(Player("Player")));
}

TEST(Section, ReadsWhatProgramsWithoutTheLayerWrote) {
    FilenameValue folder("Player", "Folder", true);
    folder.SetIsDirectory(false);
    folder.SetValue("D:\\a.mp3");
    GuidValue("Player", "Output", true).SetValue(GUID{9, 0, 0, {}});
    KB_SetDWORDA("Player", "Volume", 6);
    KB_SetBoolA("Player", "Passthrough", true);
    KB_SetDataA("Player", "Key", 1, "k");
    KB_SetStringA("Player", "Skin", "Dawn");
    KB_SetStringW(L"Player", L"Title", L"映画");
    KB_SetDWORDA("Player", "Deinterlace", 0);
    KB_SetIntA("Player\\Audio", "Balance", -1);
    const Player player("Player");
    EXPECT_EQ(Held(6, true, 9, {'k'}, "Dawn", L"映画", "D:\\a.mp3", Deinterlace::Off, -1),
              HeldBy(player));
    EXPECT_FALSE(player.folder.IsDirectory());
}

TEST(Section, ReadsASettingOnFirstUseAndAgainWhenItIsLoaded) {
    Player player("Player");
    const RawKey key("Player");
    key.Set(L"Volume", 6u);
    EXPECT_EQ(6u, player.volume.Get());
    key.Set(L"Volume", 7u);
    EXPECT_EQ(6u, player.volume.Get());
    player.LoadRegistry();
    EXPECT_EQ(7u, player.volume.Get());
    player.volume.SetAutoRegistrySource(false);
    for (const DWORD number : {8u, 9u}) {
        key.Set(L"Volume", number);
        EXPECT_EQ(number, player.volume.Get()) << "uncached";
    }
    player.key = std::vector<unsigned char>{5};
    ::RegDeleteValueW(key.Get(), L"Key");
    player.LoadRegistry();
    EXPECT_THAT(player.key.Get(), ElementsAre(1, 2)) << "an array too takes its default";
}

int blocks = 0;
void* CountedBlock(std::size_t size) { return ++blocks, std::malloc(size); }

TEST(Section, ReadsASettingThatWasReadBeforeWithoutAHeapBlock) {
    const Player player("Player");
    const auto readAll = [&] {
        return std::tuple(player.volume.Get(), player.audio.balance.Get(), player.passthrough.Get(),
                          player.output.Get().Data1, player.key.Get().size(),
                          player.skin.Get().size(), player.title.Get().size(),
                          player.folder.Get().size(), player.deinterlace.Get());
    };
    const auto first = readAll();
    const ImportPatch inTheLibrary("_Znwj", CountedBlock);
    const ImportPatch inTheProgram("_Znwj", CountedBlock, nullptr);
    EXPECT_EQ(first, readAll());
    EXPECT_EQ(0, blocks);
    static_cast<void>(player.Edit());
    EXPECT_NE(0, blocks) << "they are counted";
}

TEST(Section, WithoutAPlaceIsLoadedAndSavedWhereItsOwnerSays) {
    Player player;
    player.volume = 6;
    player.audio.balance = 1;
    EXPECT_FALSE(RawKey::Exists("Elsewhere"));
    player.SaveRegistry("Elsewhere");
    EXPECT_EQ(6u, RawKey("Elsewhere").NumberOf(L"Volume"));
    Player loaded;
    loaded.LoadRegistry("Elsewhere");
    EXPECT_TRUE(loaded.SameAs(player)) << loaded.ToString();
    EXPECT_EQ(1, loaded.audio.balance.Get());
}

TEST(Section, KeepsNumbersInTheirRangesWhoeverSetsThem) {
    Player player("Player");
    const std::pair<long long, DWORD> rows[] = {{99, 99}, {100, 100}, {101, 100},
                                                {4, 5},   {-1, 5},    {1LL << 32, 100}};
    for (const auto& [number, held] : rows) {
        player.volume = number;
        EXPECT_EQ(held, RawKey("Player").NumberOf(L"Volume")) << "of " << number;
    }
    static_cast<UInt32Value&>(player.volume).SetValue(2);
    EXPECT_EQ(5u, player.volume.Get());
    RawKey("Player").Set(L"Volume", 200u);
    player.LoadRegistry();
    EXPECT_EQ(100u, player.volume.Get());
    EXPECT_EQ(200u, RawKey("Player").NumberOf(L"Volume")) << "a load writes nothing";
}

TEST(Section, HoldsNoNumberThatIsNoEnumerator) {
    Player player("Player");
    player.deinterlace = Deinterlace::Off;
    player.deinterlace = Deinterlace::Bob;
    static_cast<UInt32Value&>(player.deinterlace).SetValue(9);
    EXPECT_EQ(Deinterlace::Off, player.deinterlace.Get());
    EXPECT_EQ("Off", player.deinterlace.ToString());
    RawKey("Player").Set(L"Deinterlace", 9u);
    player.LoadRegistry();
    EXPECT_EQ(Deinterlace::Adaptive, player.deinterlace.Get());
}

TEST(Section, ResetsItsSettingsByDeletingThem) {
    Player player("Player");
    player.Reset();
    EXPECT_FALSE(RawKey::Exists("Player")) << "nothing to delete";
    player.volume = 6;
    player.folder = "D:\\";
    player.title = L"映画";
    player.audio.balance = 1;
    player.recent.push_back("a");
    EXPECT_FALSE(player.audio.IsDefault());
    player.volume.Reset();
    EXPECT_EQ(70u, player.volume.Get());
    EXPECT_TRUE(player.volume.IsDefault());
    EXPECT_FALSE(RawKey("Player").Has(L"Volume"));
    EXPECT_FALSE(player.IsDefault());
    player.Reset();
    EXPECT_TRUE(player.IsDefault());
    EXPECT_EQ(0, KB_GetValueCountA("Player"));
    EXPECT_EQ(0, KB_GetValueCountA("Player\\Audio"));
    EXPECT_FALSE(RawKey::Exists("Player\\Recent files"));
}

TEST(Section, CopiesASettingWithWhatIsStoredAndWithoutItsPlace) {
    RawKey("Player").Set(L"Volume", 6u);
    const Player player("Player");
    auto copy = player.volume;
    UInt32Value plain = player.volume;
    EXPECT_EQ(6u, copy.Get());
    EXPECT_EQ(6u, plain.GetValue());
    copy = 7;
    plain.SetValue(8);
    EXPECT_EQ(6u, RawKey("Player").NumberOf(L"Volume"));
}

/// The texts that a settings screen shows.
std::string TextsOf(const Value& value) {
    return value.GetDisplayName() + '|' + value.GetDescription() + '|' + value.GetHelpFile();
}

TEST(Section, TellsSettingsScreensWhatWasDeclared) {
    const auto player = Player("Player").Edit();
    EXPECT_EQ("Loudness|In per cent|audio.chm", TextsOf(player->volume));
    EXPECT_EQ("Skin||", TextsOf(player->skin));
    EXPECT_EQ("Audio|What is heard|", TextsOf(player->audio));
    EXPECT_EQ(2, player->volume.GetMinimumUserInterfaceLevel());
    EXPECT_EQ(3, player->skin.GetMinimumUserInterfaceLevel());
    EXPECT_EQ(3, player->channels.GetMinimumUserInterfaceLevel());
    EXPECT_EQ("No", player->passthrough.SaveStringDataOnly());
    EXPECT_TRUE(player->passthrough.HasValueAction(Value::RestartNeededAction));
    EXPECT_TRUE(player->deinterlace.HasValueAction(Value::RebootNeededAction));
    EXPECT_FALSE(KB_UILevelShowValue(&player->deinterlace)) << "hidden";
    EXPECT_TRUE(KB_UILevelShowValue(&player->skin));
    UInt32Value sliced = player->volume;
    EXPECT_EQ("Volume||", TextsOf(sliced)) << "declared texts belong to the setting";
}

TEST(Section, IsVisitedAndCastAsTheClassesBelow) {
    const Player player("Player");
    EXPECT_TRUE(KB_GetAsValueCollection(&player.audio));
    EXPECT_TRUE(KB_GetAsUInt32Value(&player.volume));
    EXPECT_TRUE(KB_GetAsTStringValue(&player.title)) << "a 16-bit text, as its base";
    EXPECT_TRUE(KB_GetAsUInt32Enum(&player.deinterlace));
    EXPECT_TRUE(KB_GetAsValueTable(&player.channels));
    EXPECT_TRUE(KB_GetAsValueList(&player.recent));
    const Channel channel;
    EXPECT_TRUE(KB_GetAsValueTableEntry(&channel));
    EXPECT_EQ("Title='\\x65e5\\x672c\\x8a9e'", player.title.ToString());
}

struct Texts : ValueInfoSource {
    bool GetDisplayName(const Value&, Text& text) override { return text = "Own", true; }
    bool GetDescription(const Value&, Text&) override { return false; }
    bool GetHelpFile(const Value&, Text&) override { return false; }
};

TEST(Section, GivesAWorkingCopyThatIsWhole) {
    Texts texts;
    Player player("Player");
    RawKey("Player").Set(L"Volume", 6u);
    player.skin.SetValueInfoSource(&texts);
    player.skin.SetMinimumUserInterfaceLevel(Value::ValueAction{1});
    player.recent.push_back("a");
    const auto edited = player.Edit();
    EXPECT_EQ(player.size(), edited->size());
    EXPECT_EQ(&edited->volume, edited->GetValue("Volume"));
    EXPECT_TRUE(edited->SameAs(player)) << edited->ToString();
    EXPECT_EQ(6u, edited->volume.Get());
    EXPECT_EQ("Own||", TextsOf(edited->skin));
    EXPECT_EQ(1, edited->skin.GetMinimumUserInterfaceLevel());
    EXPECT_TRUE(edited->title.IsDefault());
    edited->volume = 7;
    edited->audio.balance = 9;
    edited->recent.clear();
    EXPECT_EQ(6u, RawKey("Player").NumberOf(L"Volume"));
    EXPECT_FALSE(RawKey::Exists("Player\\Audio"));
    EXPECT_EQ(1, player.recent.size());
    const std::unique_ptr<Value> copy(player.Copy());
    EXPECT_TRUE(player.SameAs(*copy)) << "as programs copy that know a Value alone";
}

TEST(Section, WritesOfAnAssignedCopyWhatDiffersAndAsksForARestartThenOnly) {
    Player player("Player");
    const auto edited = player.Edit();
    edited->volume = 60;
    player = *edited;
    EXPECT_EQ(60u, RawKey("Player").NumberOf(L"Volume"));
    EXPECT_EQ(1, KB_GetValueCountA("Player"));
    EXPECT_FALSE(player.RestartNeeded());
    edited->passthrough = true;
    edited->deinterlace = Deinterlace::Off;
    edited->audio.balance = 2;
    static_cast<Value&>(player) = *edited;
    EXPECT_EQ(1u, RawKey("Player").NumberOf(L"Passthrough"));
    EXPECT_EQ(2u, RawKey("Player\\Audio").NumberOf(L"Balance"));
    EXPECT_TRUE(player.RestartNeeded());
    EXPECT_TRUE(player.RebootNeeded());
    player = *edited;
    EXPECT_FALSE(player.RestartNeeded()) << "nothing differs any more";
    EXPECT_FALSE(player.RebootNeeded());
    EXPECT_TRUE(player.passthrough.HasValueAction(Value::RestartNeededAction));
    edited->folder.SetFilterString("*.wav");
    player = *edited;
    EXPECT_EQ(L"*.wav", RawKey("Player").TextOf(L"Folder/filter")) << "of the same path";
}

TEST(Section, TakesAPlainCopyOfASettingFromADialogOfOld) {
    Player player("Player");
    BooleanValue edited = player.passthrough;
    edited.SetDefaultValue(true);
    edited.SetValue(true);
    player.passthrough = edited;
    EXPECT_EQ(1u, RawKey("Player").NumberOf(L"Passthrough"));
    EXPECT_TRUE(player.RestartNeeded());
    EXPECT_FALSE(player.passthrough.IsDefault()) << "the default is the declaration's";
    UInt32Enum number = player.deinterlace;
    number.SetValue(0);
    player.deinterlace = number;
    EXPECT_EQ(0u, RawKey("Player").NumberOf(L"Deinterlace"));
    EXPECT_TRUE(player.RebootNeeded());
}

}  // namespace
