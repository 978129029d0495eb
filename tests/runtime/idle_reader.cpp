// Exits with the last input's tick, as this process sees it.

#include <kitbag/runtime/idle_monitor.h>

int main() { return static_cast<int>(KB_GetLastUserInputTime()); }
