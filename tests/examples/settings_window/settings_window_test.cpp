// The settings window, with the settings of the example's player.

#include <examples/settings_window/player.h>
#include <tests/examples/settings_window/user.h>
#include <tests/support/private_registry.h>

#include <string>

namespace {

using namespace kitbag::test;

class SettingsWindow : public testing::Test {
 protected:
    WindowThread shown_{[] { EditSettings<Player>("Player", kTitle); }};
    OpenDialog window_{kTitle};
};

/// What is stored of a channel.
std::wstring ChannelIn(const std::string& key) {
    const RawKey row("Player\\Television\\Channels\\" + key);
    return row.TextOf(L"Name") + L' ' + std::to_wstring(row.NumberOf(L"Frequency"));
}

TEST_F(SettingsWindow, WritesWhatIsSetWhenItIsApplied) {
    window_.Type(L"Title", L"Küche 日本");
    window_.Click(L"Continue films where they were left");
    window_.ChooseSection(L"Sound");
    window_.Type(L"Volume", L"55");
    window_.ChooseSection(L"Picture");
    window_.Choose(window_.Control(L"Deinterlace"), 1);
    EXPECT_FALSE(RawKey::Exists("Player")) << "nothing is written before";
    window_.Click(SettingsDialog::kApply);
    EXPECT_EQ(L"Küche 日本", RawKey("Player").TextOf(L"Title"));
    EXPECT_EQ(0u, RawKey("Player").NumberOf(L"Resume"));
    EXPECT_EQ(55u, RawKey("Player\\Sound").NumberOf(L"Volume"));
    EXPECT_EQ(1u, RawKey("Player\\Picture").NumberOf(L"Deinterlace"));
    EXPECT_EQ(L"", window_.Note());
    EXPECT_FALSE(::IsWindowEnabled(window_.Item(SettingsDialog::kApply)))
        << "there is nothing more to apply";
    window_.Close(IDOK);
}

TEST_F(SettingsWindow, LeavesAllAsItWasWhenItIsCancelled) {
    window_.Type(L"Title", L"Kitchen");
    window_.ChooseSection(L"Television");
    window_.Open(L"New...");
    const OpenDialog row(L"Channels - new");
    row.Type(L"Name", L"arte");
    row.Close(IDOK);
    window_.Close(IDCANCEL);
    EXPECT_FALSE(RawKey::Exists("Player"));
}

TEST_F(SettingsWindow, StoresEveryClassOfValueAsItIsTypedIn) {
    window_.ChooseLevel(0);
    window_.ChooseSection(L"Sound");
    window_.Type(L"Delay (ms)", L"-20");
    window_.ChooseSection(L"Recording");
    window_.Type(L"Folder", L"C:\\windows");
    window_.ChooseSection(L"Service");
    window_.Type(L"Remote code", L"00 ff1E");
    window_.Type(L"Renderer", L"{00000001-0002-0003-0400-000000000000}");
    window_.Close(IDOK);
    const Player player("Player");
    EXPECT_EQ(-20, player.sound.delay.Get());
    EXPECT_EQ("C:\\windows", player.recording.folder.Get());
    EXPECT_EQ((std::vector<unsigned char>{0x00, 0xFF, 0x1E}), player.service.remoteCode.Get());
    EXPECT_EQ((GUID{1, 2, 3, {4}}), player.service.renderer.Get());
}

TEST_F(SettingsWindow, KeepsTheUserAtWhatItRefuses) {
    const struct {
        const wchar_t *section, *label, *typed, *note;
    } refused[] = {
        {L"Sound", L"Volume", L"101", L"Volume: takes a number from 0 to 100."},
        {L"Sound", L"Volume", L"", L"Volume: takes a number from 0 to 100."},
        {L"Sound", L"Delay (ms)", L"5x", L"Delay (ms): takes a number from -500 to 500."},
        {L"Recording", L"Folder", L"C:\\none such", L"Folder: there is no such folder."},
        {L"Recording", L"Program that cuts", L"C:\\windows",
         L"Program that cuts: there is no such file."},
        {L"Service", L"Remote code", L"123",
         L"Remote code: takes bytes of two hexadecimal digits, such as 1F 2E."},
        {L"Service", L"Renderer", L"none",
         L"Renderer: takes an identifier such as {00000000-0000-0000-0000-000000000000}."},
    };
    window_.ChooseLevel(0);
    for (const auto& [section, label, typed, note] : refused) {
        window_.ChooseSection(section);
        const std::wstring before = window_.Typed(label);
        window_.Type(label, typed);
        window_.ChooseSection(L"General");
        EXPECT_EQ(std::wstring(L" ") + note, window_.Note());
        EXPECT_EQ(typed, window_.Typed(label)) << "the section stays";
        window_.Type(label, before);
    }
    window_.Close(IDOK);
    EXPECT_FALSE(RawKey::Exists("Player"));
}

TEST_F(SettingsWindow, ShowsWhatUsersOfTheChosenLevelSee) {
    EXPECT_EQ(L"General Sound Picture Television Recording ", window_.Sections());
    window_.ChooseSection(L"Sound");
    const struct {
        int level;
        bool isPassthroughShown, isDelayShown;
    } rows[] = {{3, false, false}, {2, true, false}, {1, true, true}, {0, true, true}};
    for (const auto& [level, isPassthroughShown, isDelayShown] : rows) {
        SCOPED_TRACE(level);
        window_.ChooseLevel(level);
        EXPECT_EQ(isPassthroughShown, window_.Control(L"Dolby passthrough") != nullptr);
        EXPECT_EQ(isDelayShown, window_.Control(L"Delay (ms)") != nullptr);
    }
    EXPECT_EQ(L"General Sound Picture Television Recording Service ", window_.Sections());
    window_.ChooseSection(L"Service");
    EXPECT_TRUE(window_.Control(L"Trace the driver")) << "a hidden value, at level 0";
    window_.ChooseLevel(3);
    EXPECT_TRUE(window_.Control(L"Title")) << "of the first section, for the chosen one is gone";
}

TEST_F(SettingsWindow, SaysThatARestartIsNeededUntilItIsClosed) {
    window_.ChooseLevel(0);
    window_.ChooseSection(L"Sound");
    window_.Click(L"Dolby passthrough");
    window_.Click(SettingsDialog::kApply);
    const std::wstring restart = L" Saved. Some changes take effect when the program is restarted.";
    EXPECT_EQ(restart, window_.Note());
    window_.Type(L"Volume", L"20");
    window_.Click(SettingsDialog::kApply);
    EXPECT_EQ(restart, window_.Note());
    window_.ChooseSection(L"Picture");
    window_.Click(L"Use the hardware overlay");
    window_.Click(SettingsDialog::kApply);
    EXPECT_EQ(L" Saved. Some changes take effect when the computer is restarted.", window_.Note());
}

TEST_F(SettingsWindow, GivesTheShownSettingsAloneTheirDefaults) {
    window_.Type(L"Title", L"Kitchen");
    window_.ChooseLevel(1);
    window_.ChooseSection(L"Sound");
    window_.Type(L"Volume", L"20");
    window_.Type(L"Delay (ms)", L"30");
    window_.ChooseLevel(3);
    window_.Click(SettingsDialog::kDefaults);
    EXPECT_EQ(L"70", window_.Typed(L"Volume"));
    window_.Close(IDOK);
    const Player player("Player");
    EXPECT_EQ(70u, player.sound.volume.Get());
    EXPECT_EQ(30, player.sound.delay.Get());
    EXPECT_EQ(L"Kitchen", player.title.Get());
}

TEST_F(SettingsWindow, EditsTheRowsOfATable) {
    window_.ChooseSection(L"Television");
    for (const wchar_t* name : {L"arte", L"ZDF", L"KiKA"}) {
        window_.Open(L"New...");
        const OpenDialog row(L"Channels - new");
        row.Type(L"Name", name);
        row.Close(IDOK);
    }
    EXPECT_EQ(L"arte 506000 No;ZDF 506000 No;KiKA 506000 No;", window_.Cells(L"Channels"));
    window_.Click(L"Up");
    window_.Open(L"Edit...");
    const OpenDialog row(L"Channels - edit");
    row.Type(L"Name", L"arte");
    row.Type(L"Frequency (kHz)", L"602000");
    row.Click(IDOK);
    EXPECT_EQ(L" There is one of that name already.", row.Note());
    row.Type(L"Name", L"Kinder");
    row.Close(IDOK);
    window_.SelectElement(L"Channels", 0);
    window_.Click(L"Remove");
    window_.Click(L"Down");
    EXPECT_EQ(L"ZDF 506000 No;Kinder 602000 No;", window_.Cells(L"Channels"));
    window_.Click(SettingsDialog::kApply);
    EXPECT_EQ(L"ZDF 506000", ChannelIn("00000000"));
    EXPECT_EQ(L"Kinder 602000", ChannelIn("00000001"));
    EXPECT_FALSE(RawKey::Exists("Player\\Television\\Channels\\00000002"));
}

TEST_F(SettingsWindow, EditsTheEntriesOfAList) {
    for (const wchar_t* file : {L"C:\\a.mpg", L"C:\\b.mpg"}) {
        window_.Open(L"New...");
        const OpenDialog entry(L"Recent files - new");
        entry.Type(L"Entry", file);
        entry.Close(IDOK);
    }
    window_.Click(L"Up");
    EXPECT_EQ(L"C:\\b.mpg;C:\\a.mpg;", window_.Cells(L"Recent files"));
    window_.Close(IDOK);
    const Player player("Player");
    ASSERT_EQ(2, player.recent.size());
    EXPECT_EQ("C:\\b.mpg", player.recent[0].GetValue());
}

TEST_F(SettingsWindow, IsReachedByTheKeyboard) {
    window_.PressUntilFocused(WM_KEYDOWN, VK_TAB, 0, L"Title");
    window_.PressUntilFocused(WM_SYSCHAR, L'c', KF_ALTDOWN << 16,
                              L"Continue films where they were left");
    EXPECT_FALSE(RawKey::Exists("Player"));
    ::PostMessageW(window_.Focus(), WM_KEYDOWN, VK_RETURN, 0);
    WaitFor("Enter closes the window", [] { return !FindDialog(kTitle); });
    EXPECT_EQ(0u, RawKey("Player").NumberOf(L"Resume")) << "a letter checks its box";
}

TEST(SettingsWindowOfPlainValues, ScrollsToWhatTheFocusReaches) {
    WindowThread shown([] {
        // More than there is room for, and none of them declared with the layer.
        UInt32Value numbers[30];
        ValueCollection many;
        for (UInt32Value& number : numbers) {
            number.SetMinimumUserInterfaceLevel(Value::ValueAction(3));
            many.DeclareValue(number, "Number " + std::to_string(&number - numbers));
        }
        SettingsDialog(kTitle, many, [] { return Applied::AtOnce; }).Run(nullptr);
    });
    const OpenDialog window(kTitle);
    const HWND last = window.Control(L"Number 29");
    RECT page{}, before{}, after{};
    ::GetWindowRect(::GetParent(last), &page);
    ::GetWindowRect(last, &before);
    ::SendMessageW(::GetAncestor(last, GA_ROOT), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(last),
                   TRUE);
    ::GetWindowRect(last, &after);
    EXPECT_GT(before.top, page.bottom);
    EXPECT_LT(after.bottom, page.bottom);
    window.Type(L"Number 29", L"-1");
    window.Click(IDOK);
    EXPECT_EQ(L" Number 29: takes a number from 0 to 4294967295.", window.Note());
}

}  // namespace
