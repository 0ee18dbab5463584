// The baseline of the per-pixel benchmarks: copying a frame, which any effect that reads one frame and
// writes one costs at least, so the ratio to it says how much an effect's arithmetic adds.
#pragma once

#include <benchmark/benchmark.h>

#include <cstring>

#include "image/core/ImageBuffer.h"

namespace Tw::Bench {

inline void timePlainCopy(benchmark::State& state, const Image::ImageBuffer& in) {
    Image::ImageBuffer out;
    out.allocate(in.rect, in.pixelFormat());
    const auto bytes = static_cast<std::size_t>(in.rowStride()) * static_cast<std::size_t>(in.rect.height());
    for (auto _ : state) {
        std::memcpy(out.pixels(), in.pixels(), bytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

}  // namespace Tw::Bench
