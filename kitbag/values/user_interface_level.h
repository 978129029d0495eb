// The user's level, and which settings it shows.
//
// Levels are 0 to 3. The smaller number is the more detailed view: a value of minimum level L is
// shown to users at level L or below it, one of level 3 to everybody.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/values/visitor.h>

/// The user's level: "User experience level" in section "Screen", brought into 0 to 3; 3 where
/// nothing is stored. It is read once: a change takes effect in the next process. Any thread may
/// ask.
KITBAG_PLAIN int KB_GetUserInterfaceLevel();

/// True when b is at most a: a value of minimum level a is shown to users at level b.
KITBAG_PLAIN bool KB_CompareUserInterfaceLevels(int a, int b);

/// True when a value of this minimum level is shown to the user.
KITBAG_PLAIN bool KB_ShowUserInterfaceLevel(int level);

/// The less detailed of two levels, which is the larger number.
KITBAG_PLAIN int KB_LowestInterfaceLevel(int a, int b);

/// The more detailed of two levels, which is the smaller number.
KITBAG_PLAIN int KB_HighestInterfaceLevel(int a, int b);

/// True when the value is shown to the user. At level 0 every value is, a hidden one included; at
/// the other levels HiddenAction hides. False for null.
KITBAG_PLAIN bool KB_UILevelShowValue(const Value* value);
