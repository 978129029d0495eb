// The settings of one section, or the members of one row, with their labels, descriptions and
// marks.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "field.h"

struct PageContent {
    /// In bold letters on top, with a line below; nothing where it is empty.
    std::wstring heading;
    std::wstring explanation;
    /// Those of them that are sections, or not shown to the level's users, are left out.
    std::vector<Value*> values;
    int level = 3;
};

/// A child window, which scrolls what it has no room for.
class Page {
 public:
    /// usedLetters are the dialog's own mnemonics. changed is called when the user has changed
    /// something.
    Page(HWND parent, const PageContent& content, const std::wstring& usedLetters,
         std::function<void()> changed);
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;
    ~Page();

    HWND Window() const { return window_; }
    /// From the controls to the values. The first field that cannot be stored gets the focus, and
    /// the answer says why; else it is empty.
    std::wstring Store();
    /// What is shown, and no other value, is what it is by default.
    void Reset();
    void FocusFirst() const;
    /// What it needs at a width, in order not to scroll.
    int HeightAt(int width) const;

 private:
    struct Row {
        Value* value = nullptr;
        HWND label = nullptr;
        std::unique_ptr<Field> field;
        HWND description = nullptr;
        HWND mark = nullptr;
    };
    struct Columns {
        int control = 0;
        int controlWidth = 0;
        int mark = 0;
        int markWidth = 0;
    };

    static LRESULT CALLBACK Dispatch(HWND window, UINT message, WPARAM word, LPARAM argument);
    LRESULT Handle(UINT message, WPARAM word, LPARAM argument);
    LRESULT Coloured(HDC device, HWND control, LRESULT otherwise) const;
    void OnCommand(HWND control, UINT code);
    void OnNotify(const NMHDR& notice);

    void AddHeading(const PageContent& content);
    void AddRow(Value& value, FieldPlace place);
    void AddTip(HWND control, const std::wstring& text) const;

    void Layout();
    Columns ColumnsAt(int width) const;
    /// Gives the height of all. Moves the controls where top, the place of the upper end, is given;
    /// extra is what each large field may have more than it needs.
    int Arrange(int width, const int* top, int extra) const;
    int ArrangeRow(const Row& row, const Columns& columns, int width, int y, int extra,
                   bool isMoving) const;
    int LargeFields() const;

    void Scroll(int position);
    void OnScroll(int request);
    void Reveal(HWND control);

    HWND window_;
    HWND tips_;
    HWND heading_ = nullptr;
    HWND explanation_ = nullptr;
    std::vector<Row> rows_;
    std::function<void()> changed_;
    int scrolled_ = 0;
    int contentHeight_ = 0;
    bool isLayingOut_ = false;
};
