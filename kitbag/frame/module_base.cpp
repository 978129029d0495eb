#include <kitbag/frame/module_base.h>

#include <atomic>

namespace kitbag {

HMODULE ModuleBase() {
    static std::atomic<HMODULE> cached = nullptr;
    if (HMODULE known = cached.load(std::memory_order_relaxed)) return known;

    // Not the handle that the entry was given: the module record holds it from the entry on, and
    // static objects, which are constructed before, may ask for it too.
    MEMORY_BASIC_INFORMATION region;
    static_assert(sizeof region == 28);
    if (!::VirtualQuery(reinterpret_cast<const void*>(&ModuleBase), &region, sizeof region))
        return nullptr;
    const auto base = static_cast<HMODULE>(region.AllocationBase);
    cached.store(base, std::memory_order_relaxed);
    return base;
}

}  // namespace kitbag
