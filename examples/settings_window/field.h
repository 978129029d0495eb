// What a page of settings shows of one value.
#pragma once

#include <kitbag/settings.h>
#include <windows.h>

#include <string>

#include "controls.h"
#include "mnemonics.h"

/// Where fields are made, and for whom.
struct FieldPlace {
    HWND page;
    /// The user's level.
    int level;
    Mnemonics& mnemonics;
};

/// The controls of one value. They are children of the page, which destroys them.
class Field {
 public:
    Field() = default;
    Field(const Field&) = delete;
    Field& operator=(const Field&) = delete;
    virtual ~Field() = default;

    /// From the value to the controls.
    virtual void Show() = 0;
    /// From the controls to the value. Where that refuses what was typed in, it keeps what it has,
    /// and the answer says what it takes; else the answer is empty.
    virtual std::wstring Store() = 0;
    /// What a user reaches first.
    virtual HWND FirstControl() const = 0;
    virtual void Place(const Area& area) = 0;
    /// The least that it needs.
    virtual int Height() const;

    /// True where the label is a part of the control.
    virtual bool IsItsOwnLabel() const { return false; }
    /// True for a field that takes the page's whole width, and what is left of its height.
    virtual bool IsLarge() const { return false; }

    /// A control's notice; true where the user has changed the value with it.
    virtual bool OnCommand(HWND control, UINT code);
    virtual bool OnNotify(const NMHDR& notice);
};

/// True where a value, or a section, is shown to users of the level.
/// (KB_UILevelShowValue answers for the user's stored level; the window lets the user try others.)
bool IsShown(const Value& value, int level);
/// True for a value that is made of others.
bool IsContainer(const Value& value);
/// A value's datum, as a cell of a table shows it.
std::wstring DisplayText(const Value& value);
std::wstring HexadecimalText(const ByteArrayValue& value);
std::wstring WideTextOf(const TStringValue& value);
