#include <bench/benches.h>
#include <tests/support/private_registry.h>

int main() {
    using namespace kitbag::bench;
    const kitbag::test::PrivateRegistry registry;
    PrintHeading();
    bool allHeld = true;
    for (const auto measure : {MeasureRegistry, MeasureFrame, MeasureValues, MeasureChecksums,
                               MeasureFiles, MeasureRuntime, MeasureSettings})
        allHeld = Print(measure()) && allHeld;
    return allHeld ? 0 : 1;
}
