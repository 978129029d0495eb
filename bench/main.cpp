#include <bench/benches.h>
#include <tests/support/private_registry.h>

int main() {
    using namespace kitbag::bench;
    const kitbag::test::PrivateRegistry registry;
    std::vector<Result> results;
    for (const auto measure :
         {MeasureRegistry, MeasureFrame, MeasureValues, MeasureFiles, MeasureRuntime})
        for (const Result& result : measure()) results.push_back(result);
    PrintHeading();
    return Print(results) ? 0 : 1;
}
