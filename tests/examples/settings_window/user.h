// What a user does with the settings window: everything goes through messages to its controls.
#pragma once

#include <examples/settings_window/settings_dialog.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>

namespace kitbag::test {

inline constexpr wchar_t kTitle[] = L"Settings under test";

/// Waits for a condition; a hang fails the test, and so ends the window it waits for.
inline void WaitFor(const char* what, const std::function<bool()>& holds) {
    constexpr DWORD kHang = 60000;
    const DWORD start = ::GetTickCount();
    while (!holds()) {
        if (::GetTickCount() - start > kHang) {
            ADD_FAILURE() << "hangs: " << what;
            std::abort();
        }
        ::Sleep(5);
    }
}

/// A dialog of this process.
inline HWND FindDialog(const std::wstring& title) {
    HWND found = nullptr;
    DWORD process = 0;
    while ((found = ::FindWindowExW(nullptr, found, L"#32770", title.c_str()))) {
        ::GetWindowThreadProcessId(found, &process);
        if (process == ::GetCurrentProcessId() && ::IsWindowVisible(found)) return found;
    }
    return nullptr;
}

/// A dialog that is open, as a user sees it.
class OpenDialog {
 public:
    explicit OpenDialog(const std::wstring& title) {
        WaitFor("a dialog opens", [&] { return (window_ = FindDialog(title)) != nullptr; });
    }

    HWND Item(int id) const { return ::GetDlgItem(window_, id); }
    /// The check box or button of this text, or the control behind this label; null where it is not
    /// to be seen.
    HWND Control(const std::wstring& label) const { return Labelled(window_, label); }
    std::wstring Note() const { return TextIn(Item(PageDialog::kNote)); }

    void Type(const std::wstring& label, const std::wstring& text) const {
        const HWND edit = Control(label);
        EXPECT_TRUE(edit) << "no control " << std::string(label.begin(), label.end());
        ::SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    }
    std::wstring Typed(const std::wstring& label) const { return TextIn(Control(label)); }
    void Click(HWND button) const {
        EXPECT_TRUE(::IsWindowEnabled(button));
        ::SendMessageW(button, BM_CLICK, 0, 0);
    }
    void Click(const std::wstring& label) const { Click(Control(label)); }
    void Click(int id) const { Click(Item(id)); }
    /// A click that opens a dialog, which is answered later.
    void Open(const std::wstring& label) const {
        EXPECT_TRUE(::IsWindowEnabled(Control(label)));
        ::PostMessageW(Control(label), BM_CLICK, 0, 0);
    }
    /// Ends the dialog with OK or Cancel.
    void Close(int id) const {
        Click(id);
        WaitFor("a dialog closes", [&] { return !::IsWindow(window_); });
    }
    void Choose(HWND list, int index) const {
        ::SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        ::SendMessageW(::GetParent(list), WM_COMMAND,
                       MAKEWPARAM(::GetDlgCtrlID(list), CBN_SELCHANGE),
                       reinterpret_cast<LPARAM>(list));
    }
    void ChooseLevel(int level) const { Choose(Item(SettingsDialog::kLevel), 3 - level); }
    /// What has the keyboard's focus.
    HWND Focus() const {
        GUITHREADINFO thread{};
        thread.cbSize = sizeof thread;
        ::GetGUIThreadInfo(::GetWindowThreadProcessId(window_, nullptr), &thread);
        return thread.hwndFocus;
    }
    /// As the keyboard's message that reaches the focus; waits until the focus is on the label's
    /// control.
    void PressUntilFocused(UINT message, WPARAM key, LPARAM state,
                           const std::wstring& label) const {
        ::PostMessageW(Focus(), message, key, state);
        WaitFor("the focus moves", [&] { return Focus() == Control(label); });
    }
    /// The section with this heading, going down from the first one.
    void ChooseSection(const std::wstring& heading) const {
        const HWND tree = Item(SettingsDialog::kSections);
        LRESULT item = ::SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
        while (item && SectionName(item) != heading)
            item = ::SendMessageW(tree, TVM_GETNEXTITEM, TVGN_NEXTVISIBLE, item);
        EXPECT_TRUE(item) << "no section " << std::string(heading.begin(), heading.end());
        ::SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, item);
    }
    /// "General Sound Picture "
    std::wstring Sections() const {
        const HWND tree = Item(SettingsDialog::kSections);
        std::wstring names;
        for (LRESULT item = ::SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0); item;
             item = ::SendMessageW(tree, TVM_GETNEXTITEM, TVGN_NEXTVISIBLE, item))
            names += SectionName(item) + L' ';
        return names;
    }
    /// The elements' cells: "ZDF 2 No;arte 1 No;"
    std::wstring Cells(const std::wstring& label) const {
        const HWND view = Control(label);
        const HWND header = reinterpret_cast<HWND>(::SendMessageW(view, LVM_GETHEADER, 0, 0));
        const LRESULT rows = ::SendMessageW(view, LVM_GETITEMCOUNT, 0, 0);
        const LRESULT columns = ::SendMessageW(header, HDM_GETITEMCOUNT, 0, 0);
        std::wstring cells;
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column)
                cells += Cell(view, row, column) + (column + 1 < columns ? L' ' : L';');
        return cells;
    }
    void SelectElement(const std::wstring& label, int index) const {
        LVITEMW state{};
        state.stateMask = state.state = LVIS_SELECTED;
        ::SendMessageW(Control(label), LVM_SETITEMSTATE, static_cast<WPARAM>(index),
                       reinterpret_cast<LPARAM>(&state));
    }

 private:
    static HWND Labelled(HWND parent, const std::wstring& text) {
        for (HWND child = nullptr; (child = ::FindWindowExW(parent, child, nullptr, nullptr));) {
            std::wstring label = TextIn(child);
            std::erase(label, L'&');
            if (const HWND below = Labelled(child, text)) return below;
            if (label != text) continue;
            const bool isControl = ::GetWindowLongPtrW(child, GWL_STYLE) & WS_TABSTOP;
            return isControl ? child : ::GetWindow(child, GW_HWNDNEXT);
        }
        return nullptr;
    }
    std::wstring SectionName(LRESULT section) const {
        wchar_t name[64] = {};
        TVITEMW item{};
        item.mask = TVIF_TEXT;
        item.hItem = reinterpret_cast<HTREEITEM>(section);
        item.pszText = name;
        item.cchTextMax = static_cast<int>(std::size(name));
        ::SendMessageW(Item(SettingsDialog::kSections), TVM_GETITEMW, 0,
                       reinterpret_cast<LPARAM>(&item));
        return name;
    }
    static std::wstring Cell(HWND view, int row, int column) {
        wchar_t text[64] = {};
        LVITEMW item{};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = static_cast<int>(std::size(text));
        ::SendMessageW(view, LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                       reinterpret_cast<LPARAM>(&item));
        return text;
    }

    HWND window_ = nullptr;
};

/// A thread that shows the window until it is closed.
class WindowThread {
 public:
    explicit WindowThread(std::function<void()> show) : thread_(std::move(show)) {}
    WindowThread(const WindowThread&) = delete;
    WindowThread& operator=(const WindowThread&) = delete;
    ~WindowThread() {
        if (const HWND window = FindDialog(kTitle)) ::PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        thread_.join();
    }

 private:
    std::thread thread_;
};

}  // namespace kitbag::test
