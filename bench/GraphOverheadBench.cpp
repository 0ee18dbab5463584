// What the graph costs beyond the pixels: building, reducing and rendering a chain of three per-pixel
// nodes for a 1 x 1 output. Effects build their chains several times per frame, so this must stay far
// below a frame's budget (goal: well under 50 microseconds).
#include <benchmark/benchmark.h>

#include "tests/graph/TestFilters.h"

namespace Tw::Test {
namespace {

void chainOfThreeForOnePixel(benchmark::State& state, bool reduce) {
    BareHost host;
    host.threadCount = static_cast<uint32_t>(state.range(0));
    ImageBuffer source = patternImage(nullptr, {0, 0, 1, 1});
    ImageBuffer output;
    output.allocate({0, 0, 1, 1}, Image::fourCC("ae32"));
    for (auto _ : state) {
        Layer layer(&source);
        // Different kinds of node, so that reduction cannot fold the chain away.
        OffsetFilter first(layer, 0.125f);
        BoxFilter second(first, 1);
        OffsetFilter third(second, 0.25f);
        if (reduce) {
            Image::prepareGraph<Host>(third, host, output);
        } else {
            Image::renderGraph<Host>(third, host, output);
        }
        benchmark::DoNotOptimize(output.pixels());
    }
}

void BM_ChainOfThreeOnePixel_Prepared(benchmark::State& state) {
    chainOfThreeForOnePixel(state, true);
}
void BM_ChainOfThreeOnePixel_RenderOnly(benchmark::State& state) {
    chainOfThreeForOnePixel(state, false);
}

BENCHMARK(BM_ChainOfThreeOnePixel_Prepared)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ChainOfThreeOnePixel_RenderOnly)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace Tw::Test

BENCHMARK_MAIN();
