// A dialog that an object handles; the system gives it tab order, mnemonics, Enter and Escape.
#pragma once

#include <windows.h>

#include <string>

#include "controls.h"

class Dialog {
 public:
    explicit Dialog(std::wstring title) : title_(std::move(title)) {}
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;
    virtual ~Dialog() = default;

    /// Waits until it is closed; gives what End was given. The owner cannot be used meanwhile.
    INT_PTR Run(HWND owner);

 protected:
    HWND Window() const { return window_; }
    void End(INT_PTR result);

    /// Makes the controls.
    virtual void OnInit() = 0;
    /// Once the controls have their places.
    virtual void FocusFirst() = 0;
    /// The size of the inner area at first, which is the smallest as well.
    virtual SIZE FirstSize() const = 0;
    virtual void OnSize(const SIZE& client) = 0;
    virtual void OnCommand(int id, UINT code) = 0;
    /// The answer to the control.
    virtual bool OnNotify(const NMHDR& notice);
    /// True for a static control that stands out.
    virtual bool IsNote(HWND control) const = 0;

 private:
    static INT_PTR CALLBACK Dispatch(HWND window, UINT message, WPARAM word, LPARAM argument);
    INT_PTR Handle(UINT message, WPARAM word, LPARAM argument);
    void Start();
    void PlaceAtFirst() const;
    SIZE OuterSize() const;

    std::wstring title_;
    HWND window_ = nullptr;
    bool isStarted_ = false;
};
