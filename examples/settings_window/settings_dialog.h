// The window for a whole tree of settings.
//
//     EditSettings<Player>("Player", L"Player settings");
#pragma once

#include <windows.h>

// Behind windows.h, which it needs.
#include <commctrl.h>
#include <kitbag/settings.h>

#include <functional>
#include <memory>
#include <string>

#include "page_dialog.h"

/// What became of the changes.
enum class Applied { AtOnce, AfterRestart, AfterReboot, NotSaved };

/// Edits any tree of values: sections on the left, the chosen one's settings on the right.
class SettingsDialog final : public PageDialog {
 public:
    // Controls beside OK, Cancel and the note.
    static constexpr int kSections = 101;
    static constexpr int kLevel = 102;
    static constexpr int kDefaults = 103;
    static constexpr int kApply = 104;

    /// edited is a copy; apply takes it over into what it was copied from.
    SettingsDialog(const std::wstring& title, const Value& edited, std::function<Applied()> apply);

 protected:
    void OnInit() override;
    void FocusFirst() override;
    SIZE FirstSize() const override;
    void OnSize(const SIZE& client) override;
    void OnCommand(int id, UINT code) override;
    bool OnNotify(const NMHDR& notice) override;

 private:
    void AddLevels();
    void AddSections();
    /// With the sections inside it. Gives the wanted one's item, or 0.
    LRESULT AddSection(const Value& section, HTREEITEM parent, const Value* wanted);
    void ShowSection(const Value& section);
    void ShowChanged(bool isChanged);
    /// False where something typed in is refused.
    bool ApplyChanges();
    void ChangeLevel();

    const Value& edited_;
    std::function<Applied()> apply_;
    int level_;
    /// Of what was applied since the window was opened.
    Applied applied_ = Applied::AtOnce;
    const Value* section_ = nullptr;
    HWND sections_ = nullptr;
    HWND levelLabel_ = nullptr;
    HWND levels_ = nullptr;
    HWND defaults_ = nullptr;
    HWND ok_ = nullptr;
    HWND cancel_ = nullptr;
    HWND applyButton_ = nullptr;
};

/// Shows the settings that are declared as Settings and kept in a section of the registry.
template <class Settings>
void EditSettings(const char* section, const std::wstring& title) {
    Settings settings(section);
    const auto edited = settings.Edit();
    SettingsDialog dialog(title, *edited, [&] {
        settings = *edited;
        // Settings do not report that the registry refuses them: a look at what is stored does.
        if (!Settings(section).SameAs(*edited)) return Applied::NotSaved;
        if (settings.RebootNeeded()) return Applied::AfterReboot;
        return settings.RestartNeeded() ? Applied::AfterRestart : Applied::AtOnce;
    });
    dialog.Run(nullptr);
}
