#include <tests/tools/kitbag/tool.h>

namespace {

using namespace kitbag::test;

struct Watch : ToolTest {};

TEST_F(Watch, ShowsChangesAsTheyComeAndOutlivesTheSection) {
    const Running watch(KitbagCommand(L"watch Audio"), Folder());
    watch.WaitFor(
        "watching HKEY_LOCAL_MACHINE\\Software\\Tarnwick\\Vidmoor\\Configuration\\Audio, which "
        "does "
        "not exist yet; Ctrl+C ends it\n");
    RawKey("Video").Set(L"Volume", 1);
    RawKey("Audio").Set(L"Volume", 70);
    watch.WaitFor("  [Audio] created\n");
    watch.WaitFor("  [Audio] Volume created: dword 70 (0x46)\n");
    RawKey("Audio").Set(L"Volume", 71);
    watch.WaitFor("  [Audio] Volume: dword 70 (0x46) -> dword 71 (0x47)\n");
    RawKey("Audio\\Zones").Set(L"Kitchen", L"on");
    watch.WaitFor("  [Audio\\Zones] Kitchen created: string \"on\"\n");
    ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, kRoot);
    watch.WaitFor("  [Audio] Volume deleted, was dword 71 (0x47)\n");
    watch.WaitFor("  [Audio] deleted\n");
    RawKey("Audio").Set(L"Mute", 1);
    watch.WaitFor("  [Audio] Mute created: dword 1 (0x1)\n");
    EXPECT_THAT(watch.Output(), testing::Not(testing::HasSubstr("Video")));
}

}  // namespace
