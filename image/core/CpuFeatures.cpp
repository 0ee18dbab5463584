#include "image/core/CpuFeatures.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace Tw::Image {

#if defined(__x86_64__) || defined(__i386__)

namespace {

bool osSavesWideRegisters(unsigned ecx1) {
    constexpr unsigned kOsxsave = 1u << 27;
    if (!(ecx1 & kOsxsave)) return false;
    unsigned low, high;
    __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    constexpr unsigned kSseAndAvxState = 0x6;
    return (low & kSseAndAvxState) == kSseAndAvxState;
}

}  // namespace

CpuFeatures cpuFeatures() {
    unsigned eax, ebx, ecx, edx;
    if (!__get_cpuid(1, &eax, &ebx, &ecx, &edx)) return 0;
    CpuFeatures word = 0;
    const auto add = [&word](bool present, CpuFeatures bits) {
        if (present) word |= bits;
    };
    add(edx & bit_MMX, CpuFeature::kMmx);
    add(edx & bit_SSE, CpuFeature::kSse);
    add(edx & bit_SSE2, CpuFeature::kSse2);
    add(ecx & bit_SSE3, CpuFeature::kSse3);
    add(ecx & bit_SSSE3, CpuFeature::kSsse3);
    add(ecx & bit_SSE4_1, CpuFeature::kSse41);
    add(ecx & bit_SSE4_2, CpuFeature::kSse42);
    add(ecx & bit_AES, CpuFeature::kAes);
    add(ecx & bit_F16C, CpuFeature::kF16c);
    const bool wide = osSavesWideRegisters(ecx);
    add(wide && (ecx & bit_AVX), CpuFeature::kAvx);
    add(wide && (ecx & bit_FMA), CpuFeature::kFma);
    unsigned eax7, ebx7, ecx7, edx7;
    if (__get_cpuid_count(7, 0, &eax7, &ebx7, &ecx7, &edx7)) {
        add(ebx7 & bit_BMI, CpuFeature::kBmi1);
        add(wide && (ebx7 & bit_AVX2), CpuFeature::kAvx2);
    }
    return word;
}

#else

CpuFeatures cpuFeatures() {
    return 0;
}

#endif

}  // namespace Tw::Image
