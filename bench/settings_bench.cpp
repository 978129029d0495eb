// Settings that are declared with the layer: what a cached read costs against the class below.

#include <bench/benches.h>
#include <kitbag/settings.h>

namespace kitbag::bench {

namespace {

struct Player : Section<Player> {
    using Section::Section;
    Setting<UInt32Value> volume{*this, "Volume", 70, {.range = {0, 100}}};
};

Result CachedRead() {
    static const Player player("Bench");
    static const UInt32Value value("Bench", "Volume", true);
    static const Setting<UInt32Value>* volatile library = &player.volume;
    static const UInt32Value* volatile reference = &value;
    return Measure(Comparison{"Setting<UInt32Value>, cached read",
                              [](int count) {
                                  for (int i = 0; i < count; ++i) Keep<unsigned long>(*library);
                              },
                              "UInt32Value::GetValue, cached",
                              [](int count) {
                                  for (int i = 0; i < count; ++i) Keep(reference->GetValue());
                              },
                              1.05});
}

}  // namespace

std::vector<Result> MeasureSettings() { return {CachedRead()}; }

}  // namespace kitbag::bench
