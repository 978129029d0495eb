#include <kitbag/registry/stored_values.h>
#include <kitbag/values/user_interface_level.h>
#include <kitbag/values/value.h>

#include <algorithm>
#include <atomic>

namespace {

constexpr int kMostDetailed = 0;
constexpr int kLeastDetailed = 3;
constexpr int kNotRead = 4;

}  // namespace

int KB_GetUserInterfaceLevel() {
    static std::atomic<int> cached = kNotRead;
    int level = cached.load(std::memory_order_relaxed);
    if (level != kNotRead) return level;
    KB_GetIntA("Screen", "User experience level", &level);
    level = std::clamp(level, kMostDetailed, kLeastDetailed);
    cached.store(level, std::memory_order_relaxed);
    return level;
}

bool KB_CompareUserInterfaceLevels(int a, int b) { return b <= a; }

bool KB_ShowUserInterfaceLevel(int level) {
    return KB_CompareUserInterfaceLevels(level, KB_GetUserInterfaceLevel());
}

int KB_LowestInterfaceLevel(int a, int b) { return std::max(a, b); }
int KB_HighestInterfaceLevel(int a, int b) { return std::min(a, b); }

bool KB_UILevelShowValue(const Value* value) {
    if (!value) return false;
    const int level = KB_GetUserInterfaceLevel();
    if (level == kMostDetailed) return true;
    return !value->HasValueAction(Value::HiddenAction) &&
           KB_CompareUserInterfaceLevels(value->GetMinimumUserInterfaceLevel(), level);
}
