// CpuFeatures: the word by which a kernel chooses among its code variants at run time.
//
// Each bit group stands for one instruction-set extension. Kernels read kSse41 and kAvx2; SSE2 is the
// baseline every x86 build assumes, and the other bits are filled so that the word means the same
// everywhere.
#pragma once

#include <cstdint>

namespace Tw::Image {

using CpuFeatures = uint32_t;

namespace CpuFeature {
inline constexpr CpuFeatures kMmx = 1;
inline constexpr CpuFeatures kSse = 38;
inline constexpr CpuFeatures kSse2 = 64;
inline constexpr CpuFeatures kSse3 = 128;
inline constexpr CpuFeatures kSsse3 = 256;
inline constexpr CpuFeatures kSse41 = 1024;
inline constexpr CpuFeatures kSse42 = 6144;
inline constexpr CpuFeatures kBmi1 = 8192;
inline constexpr CpuFeatures kAes = 16384;
inline constexpr CpuFeatures kFma = 32768;
inline constexpr CpuFeatures kF16c = 131072;
inline constexpr CpuFeatures kAvx = 1048576;
inline constexpr CpuFeatures kAvx2 = 2097152;
}  // namespace CpuFeature

// Asks the processor afresh at every call: no lock, no cache, no state. AVX bits are set only when the
// operating system saves the wide registers.
CpuFeatures cpuFeatures();

}  // namespace Tw::Image
